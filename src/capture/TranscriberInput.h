#pragma once

#include "capture/AnalysisBufferMaker.h"
#include "capture/AnalysisEnd.h"
#include "platform/SpeechFramework.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace lumaphone {

/// What the capture queue and the thread that begins and ends sessions share: the way of the sound into a
/// running analyzer. While nothing runs there is none.
class TranscriberInput
{
public:
    /// The analyzer takes `input` from now on; `end` notices when it and the reading of its results are over.
    void begin(std::shared_ptr<AnalyzerInputStream> input, std::shared_ptr<const SpeechAnalyzer> analyzer,
        std::shared_ptr<AnalysisEnd> end);
    /// Finishes the stream; there is no good end to report any more.
    void end();

    // Capture queue; see the transcriber.
    void append(const AudioSampleBuffer &sample);
    std::chrono::milliseconds waitingSound();
    bool waitForRoom(const std::stop_token &stop);
    void finishInput(std::function<void()> ended);

private:
    std::mutex m_conversionLock;
    std::shared_ptr<AnalyzerInputStream> m_inputContinuation;
    std::shared_ptr<const SpeechAnalyzer> m_listeningAnalyzer;
    std::shared_ptr<AnalysisEnd> m_analysisEnd;
    AnalysisBufferMaker m_buffers;
};

} // namespace lumaphone
