#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace lumaphone {

/// Sound on its way from a recorder to a consumer, in buffers of one length that are made once and used over
/// and over. When the consumer falls behind, the oldest waiting buffer gives way. Not thread-safe.
class CaptureBufferPool
{
public:
    /// At least three buffers: one being filled, one being read, one waiting.
    CaptureBufferPool(std::size_t bytesPerBuffer, std::size_t bufferCount);

    /// Adds sound, or silence if `data` is null.
    void append(const std::byte *data, std::size_t bytes);
    bool hasFullBuffer() const { return m_fullCount > 0; }
    /// The oldest full buffer. It stays untouched until release(); one may be out at a time.
    std::optional<std::span<const std::byte>> take();
    void release();
    /// Drops all sound that nobody has taken.
    void clear();

    std::size_t droppedBuffers() const { return m_dropped; }

private:
    std::span<std::byte> storage(std::size_t buffer);
    void finishBuffer();
    std::size_t takeOldest();

    const std::size_t m_bytesPerBuffer;
    std::vector<std::byte> m_storage;
    std::vector<std::size_t> m_free;
    std::vector<std::size_t> m_full; ///< a ring of buffer numbers, oldest at m_firstFull
    std::size_t m_firstFull = 0;
    std::size_t m_fullCount = 0;
    std::size_t m_filling = 0;
    std::size_t m_filledBytes = 0;
    std::optional<std::size_t> m_taken;
    std::size_t m_dropped = 0;
};

} // namespace lumaphone
