#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumaphone {

using Bytes = std::vector<std::uint8_t>;

/// What arrived is not what the other side may send.
class WireError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Appends values, little-endian. A text is its length in bytes and its bytes, UTF-8.
class WireWriter
{
public:
    explicit WireWriter(Bytes &bytes)
        : m_bytes(bytes)
    {
    }

    void u8(std::uint8_t value) { m_bytes.push_back(value); }
    void u32(std::uint32_t value);
    void i64(std::int64_t value);
    void text(const std::string &text);
    void samples(std::span<const std::int16_t> samples);

private:
    Bytes &m_bytes;
};

/// Takes values back in the same order. Throws WireError where there is not enough.
class WireReader
{
public:
    explicit WireReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    std::uint8_t u8();
    std::uint32_t u32();
    std::int64_t i64();
    std::string text();
    /// All that is left, as 16-bit samples.
    std::vector<std::int16_t> samples();
    /// Nothing may be left.
    void end() const;

private:
    std::span<const std::uint8_t> take(std::size_t count);

    std::span<const std::uint8_t> m_bytes;
};

} // namespace lumaphone
