#pragma once

#include "capture/AudioConverter.h"
#include "capture/PcmBufferPool.h"
#include "platform/AudioSampleBuffer.h"

#include <memory>
#include <optional>

namespace lumaphone {

/// Makes buffers for the analyzer of the sound of one source after another. One thread at a time.
class AnalysisBufferMaker
{
public:
    /// The sample as the analyzer wants it. None if it cannot be converted, or nothing has come out yet.
    std::shared_ptr<PcmBuffer> pcmBuffer(const AudioSampleBuffer &sample);
    /// The sound is complete: the little that the resampler holds back, to know what follows it. None if
    /// there is nothing.
    std::shared_ptr<PcmBuffer> remainingSound();
    /// Back to the beginning, with all buffers let go.
    void resetReusablePCMBuffers();

private:
    AudioConverter *audioConverter(const AudioStreamDescription &source);

    std::unique_ptr<AudioConverter> m_audioBufferConverter;
    std::optional<AudioStreamDescription> m_audioBufferConverterSourceFormat;
    PcmBufferPool m_reusablePCMBuffers;
};

} // namespace lumaphone
