#pragma once

#include "platform/PcmBuffer.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace lumaphone {

/// A ring of reusable buffers, handed out slot after slot. One thread at a time.
class PcmBufferPool
{
public:
    /// More than the inputs that may wait for an analyzer, so that a buffer comes round again only after 47
    /// newer ones were handed out.
    static constexpr std::size_t slotCount = 48;

    /// An empty buffer from the next slot with room for `frameCount` frames, which must fit 32 bits without
    /// a sign. The slot's buffer is replaced when it is too small, or when somebody still reads it. None
    /// without memory.
    std::shared_ptr<PcmBuffer> reusablePCMBuffer(std::int64_t frameCount);
    /// Empties all slots and goes back to the first.
    void resetReusablePCMBuffers();

private:
    struct Slot
    {
        std::shared_ptr<PcmBuffer> buffer;
        /// Cleared by whoever drops the last reference, perhaps on another thread: what was read from the
        /// buffer there happened before it is written again here.
        std::shared_ptr<std::atomic<bool>> isLent;
    };

    static std::shared_ptr<PcmBuffer> lend(const Slot &slot);

    std::array<Slot, slotCount> m_slots;
    std::size_t m_cursor = 0;
};

} // namespace lumaphone
