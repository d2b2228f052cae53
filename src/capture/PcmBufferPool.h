#pragma once

#include "platform/PcmBuffer.h"

#include <array>
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
    std::array<std::shared_ptr<PcmBuffer>, slotCount> m_slots;
    std::size_t m_cursor = 0;
};

} // namespace lumaphone
