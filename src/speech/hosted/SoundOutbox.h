#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace lumaphone {

/// Sound on its way to a process that may die: kept until it is known not to be needed again.
class SoundOutbox
{
public:
    struct Piece
    {
        std::int64_t position = 0;
        std::vector<std::int16_t> samples;
    };

    void append(std::span<const std::int16_t> samples);
    /// The next samples to send, at most `limit`. None when all have been sent.
    std::optional<Piece> next(std::size_t limit);
    /// Samples before `position` are not needed any more. What was not sent stays.
    void settle(std::int64_t position);
    /// Everything that is kept is sent again.
    void rewind();

    /// Positions count all samples that were ever appended.
    std::int64_t sentPosition() const { return m_position + static_cast<std::int64_t>(m_sent); }
    std::size_t unsent() const { return m_samples.size() - m_sent; }

private:
    std::deque<std::int16_t> m_samples;
    std::int64_t m_position = 0; ///< of the first one kept
    std::size_t m_sent = 0;
};

} // namespace lumaphone
