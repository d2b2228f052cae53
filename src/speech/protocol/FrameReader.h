#pragma once

#include "speech/protocol/WireFormat.h"

#include <optional>

namespace lumaphone {

/// Cuts a stream of bytes into frames: four bytes of length, little-endian, then as many bytes of content,
/// the first of which tells the message's kind.
class FrameReader
{
public:
    /// No content is longer. Longer ones, and empty ones, are errors.
    static constexpr std::size_t maximumContent = std::size_t {1} << 20;

    void append(std::span<const std::uint8_t> bytes);
    /// The content of the next complete frame. None while it has not all arrived. Throws WireError; after
    /// that the stream is of no use.
    std::optional<Bytes> next();

private:
    Bytes m_pending;
    std::size_t m_taken = 0; ///< bytes of m_pending that were given out
};

/// The frame around a content.
Bytes framed(const Bytes &content);

} // namespace lumaphone
