#pragma once

#include <QString>

#include <cstdint>
#include <random>
#include <vector>

namespace lumaphone::bench {

/// Samples of 16 kHz; full scale is 1.
using Sound = std::vector<double>;

/// A kind of sound in which nobody speaks.
struct QuietSound
{
    QString name;
    /// A passage of about that many seconds. Every passage is another one: its pitches, its speed and its
    /// level are left to chance.
    Sound (*passage)(double seconds, std::mt19937 &chance);
};

/// Silence, noises, breath, keys and mouse buttons, applause, and music without singing.
const std::vector<QuietSound> &quietSounds();

/// Passages of one kind, one after the other. The same seed gives the same sound.
std::vector<std::int16_t> quietSamples(const QuietSound &sound, double seconds, unsigned seed);

} // namespace lumaphone::bench
