#pragma once

#include "translation/engine/EngineError.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace lumaphone::engine {

/// Walks through the bytes of a file from front to back and never past their end.
class ByteReader
{
public:
    /// `path` names the file in errors.
    ByteReader(std::span<const std::byte> bytes, const QString &path)
        : m_bytes(bytes)
        , m_path(path)
    {
    }

    std::size_t position() const { return m_position; }
    std::size_t remaining() const { return m_bytes.size() - m_position; }

    /// The next `count` bytes, which belong to `subject`. Throws EngineError (truncated).
    std::span<const std::byte> take(std::uint64_t count, const QString &subject)
    {
        if (count > remaining())
            throw EngineError(EngineError::Case::truncated, m_path, subject);
        const auto taken = m_bytes.subspan(m_position, static_cast<std::size_t>(count));
        m_position += taken.size();
        return taken;
    }

    /// The next number, stored little-endian.
    template<class Number> Number number(const QString &subject)
    {
        Number value;
        std::memcpy(&value, take(sizeof value, subject).data(), sizeof value);
        return value;
    }

private:
    std::span<const std::byte> m_bytes;
    QString m_path;
    std::size_t m_position = 0;
};

} // namespace lumaphone::engine
