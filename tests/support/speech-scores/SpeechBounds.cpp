#include "support/speech-scores/SpeechBounds.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumaphone::test {

namespace {

constexpr std::size_t frameSize = 160; ///< 10 ms
/// Below it nothing was recorded, only played: digital silence and what resampling makes of it.
constexpr double silenceDb = -80;
/// A shorter sound is a click.
constexpr std::size_t shortestRun = 3;
constexpr std::size_t syllableFrames = 10;

/// Of each frame, in dB below full scale.
std::vector<double> levelsOf(std::span<const std::int16_t> samples)
{
    std::vector<double> levels;
    for (std::size_t at = 0; at + frameSize <= samples.size(); at += frameSize) {
        double energy = 0;
        for (const std::int16_t sample : samples.subspan(at, frameSize)) {
            energy += double(sample) * sample;
        }
        levels.push_back(10 * std::log10(energy / frameSize / (32768.0 * 32768.0) + 1e-12));
    }
    return levels;
}

/// The level that a tenth of the frames with sound do not reach.
double backgroundOf(std::vector<double> levels)
{
    std::erase_if(levels, [](double level) { return level < silenceDb; });
    const auto tenth = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 10);
    std::nth_element(levels.begin(), tenth, levels.end());
    return *tenth;
}

/// The highest level that lasts as long as a syllable.
double loudestOf(const std::vector<double> &levels)
{
    double loudest = silenceDb;
    for (std::size_t i = 0; i + syllableFrames <= levels.size(); ++i) {
        const auto from = levels.begin() + static_cast<std::ptrdiff_t>(i);
        loudest = std::max(loudest, *std::min_element(from, from + syllableFrames));
    }
    return loudest;
}

} // namespace

std::optional<SampleRange> speechBounds(std::span<const std::int16_t> samples)
{
    const std::vector<double> levels = levelsOf(samples);
    const double loudest = loudestOf(levels);
    if (loudest <= silenceDb) {
        return std::nullopt;
    }
    const double background = std::min(backgroundOf(levels), loudest);
    const double threshold = background + 0.4 * (loudest - background);
    std::optional<SampleRange> bounds;
    std::size_t run = 0;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        run = levels[i] >= threshold ? run + 1 : 0;
        if (run >= shortestRun) {
            if (!bounds) {
                bounds = SampleRange {(i + 1 - run) * frameSize, 0};
            }
            bounds->end = (i + 1) * frameSize;
        }
    }
    return bounds;
}

} // namespace lumaphone::test
