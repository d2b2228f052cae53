#include "bench/speech/QuietSounds.h"

#include "bench/speech/Chance.h"
#include "bench/speech/Music.h"
#include "bench/speech/Noises.h"

#include <algorithm>
#include <cmath>

namespace lumaphone::bench {

namespace {

constexpr double passageSeconds = 20;

Sound silence(double seconds, std::mt19937 & /*chance*/)
{
    return Sound(static_cast<std::size_t>(seconds * soundRateHz));
}

/// Its loudest sample lies this far below full scale.
double chosenPeak(std::mt19937 &chance)
{
    return std::pow(10, between(-34, -3, chance) / 20);
}

} // namespace

const std::vector<QuietSound> &quietSounds()
{
    static const std::vector<QuietSound> sounds {
        {QStringLiteral("silence"), silence},
        {QStringLiteral("white noise"), whiteNoise},
        {QStringLiteral("pink noise"), pinkNoise},
        {QStringLiteral("brown noise"), brownNoise},
        {QStringLiteral("breath"), breath},
        {QStringLiteral("keys and mouse buttons"), keysAndButtons},
        {QStringLiteral("applause"), applause},
        {QStringLiteral("plucked chords"), pluckedChords},
        {QStringLiteral("drums"), drums},
        {QStringLiteral("organ melody"), organMelody},
        {QStringLiteral("walking bass"), walkingBass},
        {QStringLiteral("band"), band},
    };
    return sounds;
}

std::vector<std::int16_t> quietSamples(const QuietSound &sound, double seconds, unsigned seed)
{
    std::mt19937 chance(seed);
    const auto wanted = static_cast<std::size_t>(seconds * soundRateHz);
    std::vector<std::int16_t> samples;
    samples.reserve(wanted);
    while (samples.size() < wanted) {
        const Sound passage = sound.passage(std::min(passageSeconds, seconds), chance);
        double loudest = 0;
        for (const double sample : passage) {
            loudest = std::max(loudest, std::abs(sample));
        }
        const double factor = loudest > 0 ? chosenPeak(chance) / loudest : 0;
        for (std::size_t i = 0; i < passage.size() && samples.size() < wanted; ++i) {
            samples.push_back(static_cast<std::int16_t>(std::lround(passage[i] * factor * 32767)));
        }
    }
    return samples;
}

} // namespace lumaphone::bench
