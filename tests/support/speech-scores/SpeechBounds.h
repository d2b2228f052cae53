#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace lumaphone::test {

struct SampleRange
{
    std::size_t begin = 0;
    std::size_t end = 0; ///< behind the last one

    std::size_t size() const { return end - begin; }
};

/// Where speech begins and ends in a recording of 16 kHz, to 10 ms, by its energy: the threshold lies between
/// the recording's background and its loudest syllable, nearer to the background. Faint sounds at both edges,
/// such as an "h", may lie outside. None in silence.
std::optional<SampleRange> speechBounds(std::span<const std::int16_t> samples);

} // namespace lumaphone::test
