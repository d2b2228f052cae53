#include "capture/AppleSystemSpeechTranscriber.h"

#include "capture/AppleSystemSpeechTranscriberError.h"

#include <utility>

namespace lumaphone {

std::shared_ptr<AppleSystemSpeechTranscriber> AppleSystemSpeechTranscriber::create(
    std::shared_ptr<SpeechFramework> framework, std::shared_ptr<MainQueue> mainQueue,
    std::shared_ptr<DetachedTasks> detachedTasks)
{
    return std::shared_ptr<AppleSystemSpeechTranscriber>(new AppleSystemSpeechTranscriber(
        std::move(framework), std::move(mainQueue), std::move(detachedTasks)));
}

AppleSystemSpeechTranscriber::AppleSystemSpeechTranscriber(std::shared_ptr<SpeechFramework> framework,
    std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks)
    : m_preparation(std::move(framework), std::move(mainQueue), detachedTasks)
    , m_tasks(std::move(detachedTasks))
{
}

AppleSystemSpeechTranscriber::~AppleSystemSpeechTranscriber()
{
    endSession();
}

void AppleSystemSpeechTranscriber::setDelegate(std::weak_ptr<AppleSystemSpeechTranscriberDelegate> delegate)
{
    m_delegate = std::move(delegate);
}

QCoro::Task<> AppleSystemSpeechTranscriber::start(std::vector<AppleSystemSpeechLanguage> languages)
{
    using Error = AppleSystemSpeechTranscriberError;
    const auto self = shared_from_this();
    const int attempt = m_preparation.begin();
    try {
        const bool authorized = co_await m_preparation.requestAuthorization();
        m_preparation.throwIfSuperseded(attempt);
        if (!authorized) {
            throw Error::notAuthorized();
        }
        endSession();
        std::erase(languages, AppleSystemSpeechLanguage::automatic);
        if (languages.empty()) {
            throw Error::recognizerUnavailable();
        }
        const PreparedSpeech speech
            = co_await m_preparation.prepareTranscribers(std::move(languages), attempt);
        run(speech);
    } catch (const SpeechPreparation::Superseded &) {
        co_return;
    }
}

void AppleSystemSpeechTranscriber::stop()
{
    m_preparation.begin();
    endSession();
}

void AppleSystemSpeechTranscriber::run(const PreparedSpeech &speech)
{
    const auto input = std::make_shared<AnalyzerInputStream>(pendingInputs);
    const auto end = std::make_shared<AnalysisEnd>(1 + static_cast<int>(speech.entries.size()));
    m_input.begin(input, speech.analyzer, end);
    m_tasks.begin(speech.analyzer, speech.entries, input, end, {weak_from_this(), m_delegate});
}

void AppleSystemSpeechTranscriber::endSession()
{
    m_input.end();
    m_tasks.end();
    m_preparation.letGo();
}

void AppleSystemSpeechTranscriber::append(const AudioSampleBuffer &sample)
{
    m_input.append(sample);
}

std::chrono::milliseconds AppleSystemSpeechTranscriber::waitingSound()
{
    return m_input.waitingSound();
}

bool AppleSystemSpeechTranscriber::waitForRoom(const std::stop_token &stop)
{
    return m_input.waitForRoom(stop);
}

void AppleSystemSpeechTranscriber::finishInput(std::function<void()> ended)
{
    m_input.finishInput(std::move(ended));
}

} // namespace lumaphone
