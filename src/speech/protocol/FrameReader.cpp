#include "speech/protocol/FrameReader.h"

namespace lumaphone {

namespace {

constexpr std::size_t headerSize = 4;

} // namespace

void FrameReader::append(std::span<const std::uint8_t> bytes)
{
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(m_taken));
    m_taken = 0;
    m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
}

std::optional<Bytes> FrameReader::next()
{
    const auto pending = std::span<const std::uint8_t>(m_pending).subspan(m_taken);
    if (pending.size() < headerSize) {
        return std::nullopt;
    }
    const std::size_t length = WireReader(pending.first(headerSize)).u32();
    if (length == 0 || length > maximumContent) {
        throw WireError("a frame of impossible length");
    }
    if (pending.size() < headerSize + length) {
        return std::nullopt;
    }
    const auto content = pending.subspan(headerSize, length);
    m_taken += headerSize + length;
    return Bytes(content.begin(), content.end());
}

Bytes framed(const Bytes &content)
{
    Bytes frame;
    frame.reserve(headerSize + content.size());
    WireWriter(frame).u32(static_cast<std::uint32_t>(content.size()));
    frame.insert(frame.end(), content.begin(), content.end());
    return frame;
}

} // namespace lumaphone
