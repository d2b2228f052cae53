#include "capture/TranscriberInput.h"

#include <utility>

namespace lumaphone {

void TranscriberInput::begin(std::shared_ptr<AnalyzerInputStream> input,
    std::shared_ptr<const SpeechAnalyzer> analyzer, std::shared_ptr<AnalysisEnd> end)
{
    const std::lock_guard lock(m_conversionLock);
    m_inputContinuation = std::move(input);
    m_listeningAnalyzer = std::move(analyzer);
    m_analysisEnd = std::move(end);
}

void TranscriberInput::end()
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
    m_buffers.resetReusablePCMBuffers();
}

void TranscriberInput::append(const AudioSampleBuffer &sample)
{
    std::shared_ptr<AnalyzerInputStream> input;
    std::shared_ptr<const PcmBuffer> buffer;
    {
        const std::lock_guard lock(m_conversionLock);
        if (!m_inputContinuation) {
            return;
        }
        input = m_inputContinuation;
        buffer = m_buffers.pcmBuffer(sample);
    }
    if (buffer) {
        input->yield({std::move(buffer)});
    }
}

std::chrono::milliseconds TranscriberInput::waitingSound()
{
    const std::lock_guard lock(m_conversionLock);
    return m_listeningAnalyzer ? m_listeningAnalyzer->waitingSound() : std::chrono::milliseconds();
}

bool TranscriberInput::waitForRoom(const std::stop_token &stop)
{
    std::shared_ptr<AnalyzerInputStream> input;
    {
        const std::lock_guard lock(m_conversionLock);
        input = m_inputContinuation;
    }
    return input && input->waitForRoom(stop);
}

void TranscriberInput::finishInput(std::function<void()> ended)
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
        last = m_buffers.remainingSound();
    }
    if (last) {
        input->yield({std::move(last)});
    }
    end->whenEnded(std::move(ended));
    input->finish();
}

} // namespace lumaphone
