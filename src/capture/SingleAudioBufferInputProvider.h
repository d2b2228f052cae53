#pragma once

#include "capture/AudioConverter.h"
#include "platform/AudioSampleBuffer.h"

#include <mutex>

namespace lumaphone {

/// Offers one buffer to a converter exactly once. Any thread.
class SingleAudioBufferInputProvider
{
public:
    explicit SingleAudioBufferInputProvider(const AudioSampleBuffer &buffer)
        : m_buffer(buffer)
    {
    }

    /// The buffer with "have data" the first time; afterwards nothing, with "no data now".
    const AudioSampleBuffer *provideInput(AudioConverterInputStatus &status);

private:
    const AudioSampleBuffer &m_buffer;
    bool m_didProvideInput = false;
    std::mutex m_lock;
};

} // namespace lumaphone
