#pragma once

#include "base/DetachedTasks.h"
#include "capture/AnalysisEnd.h"
#include "capture/AppleSystemSpeechTranscriberDelegate.h"
#include "capture/AppleSystemSpeechTranscriberEntry.h"
#include "platform/SpeechFramework.h"

#include <exception>
#include <memory>
#include <thread>
#include <vector>

namespace lumaphone {

/// Whom the tasks tell, as long as transcriber and delegate are both there. Any thread.
struct TranscriptionReceiver
{
    std::weak_ptr<AppleSystemSpeechTranscriber> transcriber;
    std::weak_ptr<AppleSystemSpeechTranscriberDelegate> delegate;

    void didRecognize(const QString &text, AppleSystemSpeechLanguage language, bool isFinal) const;
    void didFail(std::exception_ptr error) const;
};

/// The background tasks of one running session: one runs the analyzer, one for each module reads its results.
/// Part of the transcriber; used by one thread at a time, which may be one of the tasks.
class TranscriptionTasks
{
public:
    explicit TranscriptionTasks(std::shared_ptr<DetachedTasks> detachedTasks);

    /// Only while nothing runs.
    void begin(std::shared_ptr<SpeechAnalyzer> analyzer,
        const std::vector<AppleSystemSpeechTranscriberEntry> &entries,
        std::shared_ptr<AnalyzerInputStream> input, const std::shared_ptr<AnalysisEnd> &end,
        const TranscriptionReceiver &receiver);
    /// Cancels the analyzer and the tasks. A recogniser may take its time to notice: the tasks are joined
    /// behind the call.
    void end();

private:
    const std::shared_ptr<DetachedTasks> m_detachedTasks;
    std::shared_ptr<SpeechAnalyzer> m_analyzer;
    std::vector<std::shared_ptr<SpeechModule>> m_transcribers;
    std::jthread m_analyzeTask;
    std::vector<std::jthread> m_resultTasks;
};

} // namespace lumaphone
