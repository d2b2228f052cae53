#pragma once

#include "support/speech-scores/CaptionTrace.h"

#include <cstddef>
#include <vector>

namespace lumaphone::test {

/// Tells when the samples of a recording were heard, from the moments at which its pieces arrived. A piece
/// cannot arrive before it has been heard, but a busy machine may let it wait.
class SampleClock
{
public:
    explicit SampleClock(double rateHz)
        : m_rateHz(rateHz)
    {
    }

    /// With this piece there are `samples` samples. Pieces come in order.
    void arrived(std::size_t samples, TraceTime at) { m_pieces.push_back({samples, at}); }
    /// By the promptest of the pieces within a second. There must have been one.
    TraceTime timeOf(std::size_t sample) const;

private:
    struct Piece
    {
        std::size_t samples;
        TraceTime at;
    };

    double m_rateHz;
    std::vector<Piece> m_pieces;
};

} // namespace lumaphone::test
