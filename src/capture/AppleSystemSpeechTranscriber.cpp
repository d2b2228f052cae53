#include "capture/AppleSystemSpeechTranscriber.h"

#include "base/SerialQueue.h"
#include "base/Text.h"
#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/SingleAudioBufferInputProvider.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

using Error = AppleSystemSpeechTranscriberError;

/// Unwinds a start() that was overtaken by a stop() or by another start().
struct AppleSystemSpeechTranscriber::Superseded
{
};

namespace {

QCoro::Task<> releaseInTurn(std::shared_ptr<SpeechFramework> framework, std::vector<QString> locales)
{
    for (const QString &locale : locales) {
        try {
            co_await framework->release(locale);
        } catch (...) {
            // The framework keeps the reservation; nobody is left to be told.
        }
    }
}

void reportFailure(const std::weak_ptr<AppleSystemSpeechTranscriber> &weakTranscriber,
    const std::weak_ptr<AppleSystemSpeechTranscriberDelegate> &weakDelegate, std::exception_ptr error)
{
    const auto transcriber = weakTranscriber.lock();
    const auto delegate = weakDelegate.lock();
    if (transcriber && delegate) {
        delegate->didFail(*transcriber, std::move(error));
    }
}

QString displayNames(const std::vector<AppleSystemSpeechTranscriberEntry> &entries)
{
    std::vector<AppleSystemSpeechLanguage> languages;
    std::transform(entries.begin(), entries.end(), std::back_inserter(languages),
        [](const AppleSystemSpeechTranscriberEntry &entry) { return entry.language; });
    return displayNames(languages);
}

} // namespace

std::shared_ptr<AppleSystemSpeechTranscriber> AppleSystemSpeechTranscriber::create(
    std::shared_ptr<SpeechFramework> framework, std::shared_ptr<MainQueue> mainQueue,
    std::shared_ptr<DetachedTasks> detachedTasks)
{
    return std::shared_ptr<AppleSystemSpeechTranscriber>(new AppleSystemSpeechTranscriber(
        std::move(framework), std::move(mainQueue), std::move(detachedTasks)));
}

AppleSystemSpeechTranscriber::AppleSystemSpeechTranscriber(std::shared_ptr<SpeechFramework> framework,
    std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks)
    : m_framework(std::move(framework))
    , m_mainQueue(std::move(mainQueue))
    , m_detachedTasks(std::move(detachedTasks))
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
    const auto self = shared_from_this();
    const int attempt = ++m_attempt;
    try {
        const bool authorized = co_await requestAuthorization();
        throwIfSuperseded(attempt);
        if (!authorized) {
            throw Error::notAuthorized();
        }
        endSession();
        std::erase(languages, AppleSystemSpeechLanguage::automatic);
        if (languages.empty()) {
            throw Error::recognizerUnavailable();
        }
        run(co_await prepareTranscribers(std::move(languages), attempt));
    } catch (const Superseded &) {
        co_return;
    }
}

void AppleSystemSpeechTranscriber::stop()
{
    ++m_attempt;
    endSession();
}

QCoro::Task<bool> AppleSystemSpeechTranscriber::requestAuthorization()
{
    if (m_framework->authorizationStatus() == SpeechAuthorization::authorized) {
        co_return true;
    }
    const SpeechAuthorization answer = co_await m_framework->requestAuthorization();
    co_return answer == SpeechAuthorization::authorized;
}

QCoro::Task<AppleSystemSpeechTranscriber::PreparedSession> AppleSystemSpeechTranscriber::prepareTranscribers(
    std::vector<AppleSystemSpeechLanguage> languages, int attempt)
{
    if (languages.size() == 1) {
        std::exception_ptr error;
        try {
            co_return co_await prepare(std::move(languages), LanguageFallback::notAllowed, attempt);
        } catch (const Superseded &) {
            throw;
        } catch (...) {
            error = std::current_exception();
        }
        endSession();
        std::rethrow_exception(error);
    }
    auto together = co_await tryToPrepare(languages, LanguageFallback::allowed, attempt);
    if (together) {
        co_return std::move(*together);
    }
    for (const AppleSystemSpeechLanguage language : languages) {
        std::vector<AppleSystemSpeechLanguage> one(1, language);
        auto alone = co_await tryToPrepare(std::move(one), LanguageFallback::notAllowed, attempt);
        if (alone) {
            co_return std::move(*alone);
        }
    }
    throw Error::automaticLanguagesUnavailable();
}

QCoro::Task<std::optional<AppleSystemSpeechTranscriber::PreparedSession>>
AppleSystemSpeechTranscriber::tryToPrepare(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    try {
        co_return std::optional(co_await prepare(std::move(languages), fallback, attempt));
    } catch (const Superseded &) {
        throw;
    } catch (...) {
        endSession();
    }
    co_return std::optional<PreparedSession>();
}

QCoro::Task<AppleSystemSpeechTranscriber::PreparedSession> AppleSystemSpeechTranscriber::prepare(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    PreparedSession session;
    session.entries = co_await makeTranscriberEntries(std::move(languages), fallback, attempt);
    session.analyzer = co_await prepareAnalyzer(session.entries, attempt);
    co_return session;
}

QCoro::Task<std::vector<AppleSystemSpeechTranscriberEntry>>
AppleSystemSpeechTranscriber::makeTranscriberEntries(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    constexpr SpeechModuleOptions options {.reportsVolatileResults = true, .reportsFastResults = true};
    std::vector<Entry> entries;
    for (const AppleSystemSpeechLanguage language : languages) {
        const std::optional<QString> locale
            = co_await m_framework->supportedLocale(localeIdentifier(language));
        throwIfSuperseded(attempt);
        if (!locale) {
            if (fallback == LanguageFallback::allowed) {
                continue;
            }
            throw Error::recognizerUnavailable();
        }
        std::exception_ptr failure;
        try {
            co_await reserve(*locale, attempt);
        } catch (...) {
            failure = std::current_exception();
        }
        throwIfSuperseded(attempt);
        if (failure) {
            if (fallback == LanguageFallback::allowed) {
                continue;
            }
            throw Error::assetUnavailable(displayName(language), failure);
        }
        entries.push_back({language, *locale, m_framework->makeTranscriber(*locale, options)});
    }
    if (entries.empty()) {
        throw Error::recognizerUnavailable();
    }
    co_return entries;
}

QCoro::Task<> AppleSystemSpeechTranscriber::reserve(QString locale, int attempt)
{
    co_await m_framework->reserve(locale);
    if (attempt == m_attempt) {
        m_reservedLocales.push_back(locale);
    } else {
        // Whoever overtook this attempt could not know of the reservation.
        releaseReservations({locale});
    }
}

QCoro::Task<std::shared_ptr<SpeechAnalyzer>> AppleSystemSpeechTranscriber::prepareAnalyzer(
    std::vector<Entry> entries, int attempt)
{
    std::vector<std::shared_ptr<SpeechModule>> modules;
    std::transform(entries.begin(), entries.end(), std::back_inserter(modules),
        [](const Entry &entry) { return entry.transcriber; });
    std::shared_ptr<SpeechAnalyzer> analyzer;
    std::exception_ptr failure;
    try {
        analyzer = m_framework->makeAnalyzer(std::move(modules));
        m_preparedAnalyzer = analyzer;
        co_await analyzer->prepareToAnalyze(PcmBuffer::sampleRateHz);
    } catch (...) {
        failure = std::current_exception();
    }
    throwIfSuperseded(attempt);
    m_preparedAnalyzer = nullptr;
    if (failure) {
        throw Error::assetUnavailable(displayNames(entries), failure);
    }
    co_return analyzer;
}

void AppleSystemSpeechTranscriber::throwIfSuperseded(int attempt) const
{
    if (attempt != m_attempt) {
        throw Superseded();
    }
}

void AppleSystemSpeechTranscriber::run(PreparedSession session)
{
    m_analyzer = std::move(session.analyzer);
    for (const Entry &entry : session.entries) {
        m_transcribers.push_back(entry.transcriber);
    }
    const auto input = std::make_shared<AnalyzerInputStream>(pendingInputs);
    {
        const std::lock_guard lock(m_conversionLock);
        m_inputContinuation = input;
        m_listeningAnalyzer = m_analyzer;
        m_analysisEnd = std::make_shared<AnalysisEnd>(1 + static_cast<int>(session.entries.size()));
    }
    startAnalyzeTask(input);
    for (const Entry &entry : session.entries) {
        startResultTask(entry);
    }
}

void AppleSystemSpeechTranscriber::startAnalyzeTask(std::shared_ptr<AnalyzerInputStream> input)
{
    m_analyzeTask
        = std::jthread([weakSelf = weak_from_this(), weakDelegate = m_delegate, analyzer = m_analyzer,
                           input = std::move(input), end = m_analysisEnd](const std::stop_token &stop) {
              nameCurrentThread("speech-analysis");
              try {
                  analyzer->start(*input, stop);
              } catch (...) {
                  end->giveUp();
                  reportFailure(weakSelf, weakDelegate, std::current_exception());
              }
              // Nobody takes input any more: a source that waits for room must not wait for ever.
              input->finish();
              end->taskEnded();
          });
}

void AppleSystemSpeechTranscriber::startResultTask(const Entry &entry)
{
    m_resultTasks.emplace_back([weakSelf = weak_from_this(), weakDelegate = m_delegate, entry,
                                   end = m_analysisEnd](const std::stop_token &stop) {
        nameCurrentThread("speech-results");
        try {
            while (const auto result = entry.transcriber->nextResult(stop)) {
                const QString trimmedText = text::trimmed(result->text);
                if (trimmedText.isEmpty()) {
                    continue;
                }
                const auto self = weakSelf.lock();
                const auto delegate = weakDelegate.lock();
                if (self && delegate) {
                    delegate->didRecognize(*self, trimmedText, entry.language, result->isFinal);
                }
            }
        } catch (...) {
            end->giveUp();
            reportFailure(weakSelf, weakDelegate, std::current_exception());
        }
        end->taskEnded();
    });
}

void AppleSystemSpeechTranscriber::endSession()
{
    {
        const std::lock_guard lock(m_conversionLock);
        if (m_inputContinuation) {
            m_inputContinuation->finish();
            m_inputContinuation = nullptr;
        }
        m_listeningAnalyzer = nullptr;
        if (m_analysisEnd) {
            m_analysisEnd->giveUp();
            m_analysisEnd = nullptr;
        }
        resetReusablePCMBuffers();
    }
    endPreparation();
    endTasks();
    if (!m_reservedLocales.empty()) {
        releaseReservations(std::exchange(m_reservedLocales, {}));
    }
}

// The networks that load for a session nobody wants any more are let go. That start() ends as superseded.
void AppleSystemSpeechTranscriber::endPreparation()
{
    if (m_preparedAnalyzer) {
        m_detachedTasks->run("speech-ending",
            [analyzer = std::exchange(m_preparedAnalyzer, nullptr)] { analyzer->cancelAndFinishNow(); });
    }
}

// A recogniser may take its time to notice that it was cancelled. The tasks are joined behind the call.
void AppleSystemSpeechTranscriber::endTasks()
{
    m_transcribers.clear();
    if (!m_analyzer) {
        return;
    }
    auto tasks = std::make_shared<std::vector<std::jthread>>(std::exchange(m_resultTasks, {}));
    tasks->push_back(std::move(m_analyzeTask));
    for (std::jthread &task : *tasks) {
        task.request_stop();
        if (task.get_id() == std::this_thread::get_id()) {
            // The last owner let go while this task was calling the delegate: it ends by itself.
            task.detach();
        }
    }
    m_detachedTasks->run("speech-ending", [analyzer = std::exchange(m_analyzer, nullptr), tasks] {
        try {
            analyzer->cancelAndFinishNow();
        } catch (...) {
            // The session is over; the tasks end through their stop tokens.
        }
        tasks->clear();
    });
}

void AppleSystemSpeechTranscriber::releaseReservations(std::vector<QString> locales)
{
    auto release = [framework = m_framework, locales = std::move(locales)] {
        releaseInTurn(framework, locales);
    };
    if (m_mainQueue->isCurrent()) {
        release();
    } else {
        m_mainQueue->post(std::move(release));
    }
}

void AppleSystemSpeechTranscriber::append(const AudioSampleBuffer &sample)
{
    std::shared_ptr<AnalyzerInputStream> input;
    std::shared_ptr<const PcmBuffer> buffer;
    {
        const std::lock_guard lock(m_conversionLock);
        if (!m_inputContinuation) {
            return;
        }
        input = m_inputContinuation;
        buffer = pcmBuffer(sample);
    }
    if (buffer) {
        input->yield({std::move(buffer)});
    }
}

std::chrono::milliseconds AppleSystemSpeechTranscriber::waitingSound()
{
    const std::lock_guard lock(m_conversionLock);
    return m_listeningAnalyzer ? m_listeningAnalyzer->waitingSound() : std::chrono::milliseconds();
}

bool AppleSystemSpeechTranscriber::waitForRoom(const std::stop_token &stop)
{
    std::shared_ptr<AnalyzerInputStream> input;
    {
        const std::lock_guard lock(m_conversionLock);
        input = m_inputContinuation;
    }
    return input && input->waitForRoom(stop);
}

void AppleSystemSpeechTranscriber::finishInput(std::function<void()> ended)
{
    std::shared_ptr<AnalyzerInputStream> input;
    std::shared_ptr<AnalysisEnd> end;
    std::shared_ptr<const PcmBuffer> last;
    {
        const std::lock_guard lock(m_conversionLock);
        if (!m_inputContinuation) {
            return;
        }
        input = std::exchange(m_inputContinuation, nullptr);
        end = m_analysisEnd;
        last = remainingSound();
    }
    if (last) {
        input->yield({std::move(last)});
    }
    end->whenEnded(std::move(ended));
    input->finish();
}

std::shared_ptr<PcmBuffer> AppleSystemSpeechTranscriber::pcmBuffer(const AudioSampleBuffer &sample)
{
    if (sample.frames < 1 || !sample.description) {
        return nullptr;
    }
    AudioConverter *converter = audioConverter(*sample.description);
    if (!converter || !converter->accepts(sample)) {
        return nullptr;
    }
    const auto capacity = converter->outputCapacity(static_cast<std::size_t>(sample.frames));
    const auto output = m_reusablePCMBuffers.reusablePCMBuffer(static_cast<std::int64_t>(capacity));
    if (!output) {
        return nullptr;
    }
    SingleAudioBufferInputProvider provider(sample);
    const auto status = converter->convert(*output,
        [&provider](AudioConverterInputStatus &inputStatus) { return provider.provideInput(inputStatus); });
    return status == AudioConverter::Status::haveData ? output : nullptr;
}

AudioConverter *AppleSystemSpeechTranscriber::audioConverter(const AudioStreamDescription &source)
{
    if (m_audioBufferConverterSourceFormat != source) {
        m_audioBufferConverter = AudioConverter::create(source);
        m_audioBufferConverterSourceFormat = source;
    }
    return m_audioBufferConverter.get();
}

// The resampler always holds back a little sound, to know what follows it.
std::shared_ptr<PcmBuffer> AppleSystemSpeechTranscriber::remainingSound()
{
    const auto converter = std::exchange(m_audioBufferConverter, nullptr);
    m_audioBufferConverterSourceFormat.reset();
    if (!converter) {
        return nullptr;
    }
    const auto output = m_reusablePCMBuffers.reusablePCMBuffer(
        static_cast<std::int64_t>(converter->pendingFrames() + converter->outputCapacity(0)));
    if (!output) {
        return nullptr;
    }
    const auto status = converter->convert(*output, [](AudioConverterInputStatus &inputStatus) {
        inputStatus = AudioConverterInputStatus::endOfStream;
        return nullptr;
    });
    return status == AudioConverter::Status::haveData ? output : nullptr;
}

void AppleSystemSpeechTranscriber::resetReusablePCMBuffers()
{
    m_reusablePCMBuffers.resetReusablePCMBuffers();
    m_audioBufferConverter = nullptr;
    m_audioBufferConverterSourceFormat.reset();
}

} // namespace lumaphone
