#include "speech/hosted/SoundOutbox.h"

#include <algorithm>

namespace lumaphone {

void SoundOutbox::append(std::span<const std::int16_t> samples)
{
    m_samples.insert(m_samples.end(), samples.begin(), samples.end());
}

std::optional<SoundOutbox::Piece> SoundOutbox::next(std::size_t limit)
{
    const std::size_t count = std::min(limit, unsent());
    if (count == 0) {
        return std::nullopt;
    }
    const auto first = m_samples.begin() + static_cast<std::ptrdiff_t>(m_sent);
    Piece piece {sentPosition(), {first, first + static_cast<std::ptrdiff_t>(count)}};
    m_sent += count;
    return piece;
}

void SoundOutbox::settle(std::int64_t position)
{
    const std::int64_t surplus
        = std::clamp<std::int64_t>(position - m_position, 0, static_cast<std::int64_t>(m_sent));
    m_samples.erase(m_samples.begin(), m_samples.begin() + surplus);
    m_position += surplus;
    m_sent -= static_cast<std::size_t>(surplus);
}

void SoundOutbox::rewind()
{
    m_sent = 0;
}

} // namespace lumaphone
