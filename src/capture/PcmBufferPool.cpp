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
    Slot &slot = m_slots[m_cursor];
    m_cursor = (m_cursor + 1) % slotCount;
    const bool isFree = slot.buffer && !slot.isLent->load(std::memory_order_acquire);
    if (isFree && slot.buffer->frameCapacity() >= capacity) {
        slot.buffer->setFrameLength(0);
        return lend(slot);
    }
    try {
        slot = {std::make_shared<PcmBuffer>(capacity), std::make_shared<std::atomic<bool>>(false)};
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
    return lend(slot);
}

std::shared_ptr<PcmBuffer> PcmBufferPool::lend(const Slot &slot)
{
    slot.isLent->store(true, std::memory_order_relaxed);
    return {slot.buffer.get(), [slot](PcmBuffer * /*kept by the slot*/) {
                slot.isLent->store(false, std::memory_order_release);
            }};
}

void PcmBufferPool::resetReusablePCMBuffers()
{
    m_slots.fill({});
    m_cursor = 0;
}

} // namespace lumaphone
