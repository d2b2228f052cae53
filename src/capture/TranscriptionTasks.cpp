#include "capture/TranscriptionTasks.h"

#include "base/SerialQueue.h"
#include "base/Text.h"

#include <utility>

namespace lumaphone {

namespace {

std::jthread analyzeTask(std::shared_ptr<SpeechAnalyzer> analyzer, std::shared_ptr<AnalyzerInputStream> input,
    std::shared_ptr<AnalysisEnd> end, TranscriptionReceiver receiver)
{
    return std::jthread([analyzer = std::move(analyzer), input = std::move(input), end = std::move(end),
                            receiver = std::move(receiver)](const std::stop_token &stop) {
        nameCurrentThread("speech-analysis");
        try {
            analyzer->start(*input, stop);
        } catch (...) {
            end->giveUp();
            receiver.didFail(std::current_exception());
        }
        // Nobody takes input any more: a source that waits for room must not wait for ever.
        input->finish();
        end->taskEnded();
    });
}

std::jthread resultTask(
    AppleSystemSpeechTranscriberEntry entry, std::shared_ptr<AnalysisEnd> end, TranscriptionReceiver receiver)
{
    return std::jthread([entry = std::move(entry), end = std::move(end), receiver = std::move(receiver)](
                            const std::stop_token &stop) {
        nameCurrentThread("speech-results");
        try {
            while (const auto result = entry.transcriber->nextResult(stop)) {
                const QString trimmedText = text::trimmed(result->text);
                if (!trimmedText.isEmpty()) {
                    receiver.didRecognize(trimmedText, entry.language, result->isFinal);
                }
            }
        } catch (...) {
            end->giveUp();
            receiver.didFail(std::current_exception());
        }
        end->taskEnded();
    });
}

} // namespace

void TranscriptionReceiver::didRecognize(
    const QString &text, AppleSystemSpeechLanguage language, bool isFinal) const
{
    const auto transcriberThere = transcriber.lock();
    const auto delegateThere = delegate.lock();
    if (transcriberThere && delegateThere) {
        delegateThere->didRecognize(*transcriberThere, text, language, isFinal);
    }
}

void TranscriptionReceiver::didFail(std::exception_ptr error) const
{
    const auto transcriberThere = transcriber.lock();
    const auto delegateThere = delegate.lock();
    if (transcriberThere && delegateThere) {
        delegateThere->didFail(*transcriberThere, std::move(error));
    }
}

TranscriptionTasks::TranscriptionTasks(std::shared_ptr<DetachedTasks> detachedTasks)
    : m_detachedTasks(std::move(detachedTasks))
{
}

void TranscriptionTasks::begin(std::shared_ptr<SpeechAnalyzer> analyzer,
    const std::vector<AppleSystemSpeechTranscriberEntry> &entries, std::shared_ptr<AnalyzerInputStream> input,
    const std::shared_ptr<AnalysisEnd> &end, const TranscriptionReceiver &receiver)
{
    m_analyzer = std::move(analyzer);
    m_analyzeTask = analyzeTask(m_analyzer, std::move(input), end, receiver);
    for (const AppleSystemSpeechTranscriberEntry &entry : entries) {
        m_transcribers.push_back(entry.transcriber);
        m_resultTasks.push_back(resultTask(entry, end, receiver));
    }
}

void TranscriptionTasks::end()
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

} // namespace lumaphone
