#include "platform/PcmBuffer.h"

#include <QtGlobal>

namespace lumaphone {

PcmBuffer::PcmBuffer(std::size_t frameCapacity)
    : m_samples(frameCapacity)
{
}

void PcmBuffer::setFrameLength(std::size_t frames)
{
    if (frames > m_samples.size()) {
        qFatal("PcmBuffer: %zu frames exceed the capacity of %zu", frames, m_samples.size());
    }
    m_frameLength = frames;
}

} // namespace lumaphone
