#include "platform/sound/PulseMicrophoneOutput.h"

namespace lumaphone {

void PulseMicrophoneOutput::setSampleBufferDelegate(MicrophoneSampleDelegate *delegate, SerialQueue *queue)
{
    {
        const std::lock_guard lock(m_mutex);
        m_delegate = delegate;
    }
    if (delegate && queue) {
        m_delivery->attach(
            *queue, [delegate](const AudioSampleBuffer &buffer) { delegate->didOutputSampleBuffer(buffer); });
    } else {
        m_delivery->detach();
    }
}

void PulseMicrophoneOutput::fail(const std::exception_ptr &error)
{
    const std::lock_guard lock(m_mutex);
    if (m_delegate) {
        m_delegate->didStopWithError(error);
    }
}

} // namespace lumaphone
