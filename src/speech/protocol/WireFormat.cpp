#include "speech/protocol/WireFormat.h"

namespace lumaphone {

void WireWriter::u32(std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8) {
        u8(static_cast<std::uint8_t>(value >> shift));
    }
}

void WireWriter::i64(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    u32(static_cast<std::uint32_t>(bits));
    u32(static_cast<std::uint32_t>(bits >> 32));
}

void WireWriter::text(const std::string &text)
{
    u32(static_cast<std::uint32_t>(text.size()));
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
}

void WireWriter::samples(std::span<const std::int16_t> samples)
{
    for (const std::int16_t sample : samples) {
        const auto bits = static_cast<std::uint16_t>(sample);
        u8(static_cast<std::uint8_t>(bits));
        u8(static_cast<std::uint8_t>(bits >> 8));
    }
}

std::span<const std::uint8_t> WireReader::take(std::size_t count)
{
    if (count > m_bytes.size()) {
        throw WireError("a message ends too early");
    }
    const auto taken = m_bytes.first(count);
    m_bytes = m_bytes.subspan(count);
    return taken;
}

std::uint8_t WireReader::u8()
{
    return take(1).front();
}

std::uint32_t WireReader::u32()
{
    std::uint32_t value = 0;
    int shift = 0;
    for (const std::uint8_t byte : take(4)) {
        value |= static_cast<std::uint32_t>(byte) << shift;
        shift += 8;
    }
    return value;
}

std::int64_t WireReader::i64()
{
    const std::uint64_t low = u32();
    return static_cast<std::int64_t>(low | static_cast<std::uint64_t>(u32()) << 32);
}

std::string WireReader::text()
{
    const auto bytes = take(u32());
    return {bytes.begin(), bytes.end()};
}

std::vector<std::int16_t> WireReader::samples()
{
    if (m_bytes.size() % 2 != 0) {
        throw WireError("half a sample");
    }
    const auto bytes = take(m_bytes.size());
    std::vector<std::int16_t> samples(bytes.size() / 2);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    }
    return samples;
}

void WireReader::end() const
{
    if (!m_bytes.empty()) {
        throw WireError("a message is too long");
    }
}

} // namespace lumaphone
