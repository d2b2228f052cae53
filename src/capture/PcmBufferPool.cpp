#include "capture/PcmBufferPool.h"

#include <QtGlobal>

#include <limits>
#include <new>

namespace lumaphone {

std::shared_ptr<PcmBuffer> PcmBufferPool::reusablePCMBuffer(std::int64_t frameCount)
{
    if (frameCount < 0 || frameCount > std::numeric_limits<std::uint32_t>::max()) {
        qFatal("PcmBufferPool: no buffer can hold %lld frames", static_cast<long long>(frameCount));
    }
    const auto capacity = static_cast<std::size_t>(frameCount);
    std::shared_ptr<PcmBuffer> &slot = m_slots[m_cursor];
    m_cursor = (m_cursor + 1) % slotCount;
    if (slot && slot.use_count() == 1 && slot->frameCapacity() >= capacity) {
        slot->setFrameLength(0);
        return slot;
    }
    try {
        slot = std::make_shared<PcmBuffer>(capacity);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
    return slot;
}

void PcmBufferPool::resetReusablePCMBuffers()
{
    m_slots.fill(nullptr);
    m_cursor = 0;
}

} // namespace lumaphone
