#include "support/speech-scores/SampleClock.h"

#include <algorithm>

namespace lumaphone::test {

TraceTime SampleClock::timeOf(std::size_t sample) const
{
    const auto nearby = static_cast<std::size_t>(m_rateHz);
    auto piece = std::lower_bound(m_pieces.begin(), m_pieces.end(), sample - std::min(sample, nearby),
        [](const Piece &each, std::size_t wanted) { return each.samples < wanted; });
    if (piece == m_pieces.end()) {
        --piece;
    }
    TraceTime earliest = TraceTime::max();
    do {
        const std::chrono::duration<double> later(
            (static_cast<double>(piece->samples) - static_cast<double>(sample)) / m_rateHz);
        earliest = std::min(earliest, piece->at - std::chrono::duration_cast<TraceTime::duration>(later));
        ++piece;
    } while (piece != m_pieces.end() && piece->samples <= sample + nearby);
    return earliest;
}

} // namespace lumaphone::test
