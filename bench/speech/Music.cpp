#include "bench/speech/Music.h"

#include "bench/speech/Chance.h"
#include "bench/speech/Noises.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace lumaphone::bench {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;

/// Key, scale and speed of a passage.
class Style
{
public:
    explicit Style(std::mt19937 &chance)
        : m_tonicHz(between(49, 92, chance))
        , m_isMinor(oneOf(0, 1, chance) == 1)
        , m_beat(60 / between(66, 168, chance))
    {
    }

    /// Seconds.
    double beat() const { return m_beat; }
    /// The seventh and all that follow begin an octave higher again.
    double pitchHz(int step) const
    {
        static constexpr std::array major {0, 2, 4, 5, 7, 9, 11};
        static constexpr std::array minor {0, 2, 3, 5, 7, 8, 10};
        const int octave = step / 7;
        const int semitones = (m_isMinor ? minor : major)[static_cast<std::size_t>(step % 7)] + 12 * octave;
        return m_tonicHz * std::pow(2, semitones / 12.0);
    }

private:
    double m_tonicHz;
    bool m_isMinor;
    double m_beat;
};

/// The roots of four bars' chords.
std::array<int, 4> progression(std::mt19937 &chance)
{
    static constexpr std::array<std::array<int, 4>, 6> usual {
        {{0, 3, 4, 0}, {0, 5, 3, 4}, {0, 4, 5, 3}, {1, 4, 0, 0}, {5, 3, 0, 4}, {0, 2, 3, 4}}};
    return usual[static_cast<std::size_t>(oneOf(0, 5, chance))];
}

/// A string: noise that circles in a line as long as a wave and is smoothed at every turn.
Sound pluck(double pitchHz, double seconds, double brightness, std::mt19937 &chance)
{
    Sound line = bandNoise(static_cast<std::size_t>(soundRateHz / pitchHz) + 1, 2000, 6000, chance);
    Sound sound(static_cast<std::size_t>(seconds * soundRateHz));
    std::size_t at = 0;
    for (double &sample : sound) {
        const std::size_t next = (at + 1) % line.size();
        sample = line[at];
        line[at] = 0.998 * (brightness * line[at] + (1 - brightness) * line[next]);
        at = next;
    }
    return sound;
}

/// Harmonics of a pitch, with a soft beginning and end.
Sound pipe(double pitchHz, double seconds, double vibratoHz, double vibratoDepth, int harmonics)
{
    Sound sound(static_cast<std::size_t>(seconds * soundRateHz));
    double phase = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double time = static_cast<double>(i) / soundRateHz;
        phase
            += fullTurn * pitchHz * (1 + vibratoDepth * std::sin(fullTurn * vibratoHz * time)) / soundRateHz;
        for (int harmonic = 1; harmonic <= harmonics && harmonic * pitchHz < soundRateHz / 2; ++harmonic) {
            sound[i] += std::sin(phase * harmonic) / (harmonic * harmonics);
        }
        sound[i] *= std::min({1.0, time / 0.04, (seconds - time) / 0.06});
    }
    return sound;
}

/// A drum's skin, whose pitch falls.
Sound skin(double fromHz, double toHz, double seconds)
{
    Sound sound(static_cast<std::size_t>(seconds * soundRateHz));
    double phase = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(sound.size());
        phase += fullTurn * (toHz + (fromHz - toHz) * std::exp(-8 * part)) / soundRateHz;
        sound[i] = std::sin(phase) * std::exp(-5 * part);
    }
    return sound;
}

Sound cymbal(double seconds, std::mt19937 &chance)
{
    Sound sound = bandNoise(static_cast<std::size_t>(seconds * soundRateHz), 6500, 3000, chance);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        sound[i] *= std::exp(-6 * static_cast<double>(i) / static_cast<double>(sound.size()));
    }
    return sound;
}

Sound emptySound(double seconds)
{
    return Sound(static_cast<std::size_t>(seconds * soundRateHz));
}

Sound pluckedChords(double seconds, const Style &style, std::mt19937 &chance)
{
    Sound sound = emptySound(seconds);
    const auto roots = progression(chance);
    const bool isBroken = oneOf(0, 2, chance) > 0;
    const double brightness = between(0.4, 0.6, chance);
    const double spread = isBroken ? style.beat() / 2 : between(0.005, 0.03, chance);
    int bar = 0;
    for (double begin = 0; begin < seconds; begin += 4 * style.beat(), ++bar) {
        const int root = roots[static_cast<std::size_t>(bar % 4)] + 7;
        int note = 0;
        for (double at = begin; at < begin + 4 * style.beat(); ++note) {
            const int step = root + std::array {0, 2, 4, 7}[static_cast<std::size_t>(note % 4)];
            mix(sound, pluck(style.pitchHz(step), 1.5, brightness, chance), at, between(0.5, 1, chance));
            at += isBroken || note % 4 < 3 ? spread : 2 * style.beat() - 3 * spread;
        }
    }
    return sound;
}

Sound drums(double seconds, const Style &style, std::mt19937 &chance)
{
    Sound sound = emptySound(seconds);
    const double skinHz = between(140, 220, chance);
    int half = 0;
    for (double at = 0; at < seconds; at += style.beat() / 2, ++half) {
        mix(sound, cymbal(between(0.04, 0.12, chance), chance), at, between(0.3, 0.7, chance));
        const int beat = half % 8;
        if (beat == 0 || beat == 4 || (beat == 3 && oneOf(0, 2, chance) == 0)) {
            mix(sound, skin(150, 50, 0.25), at, 0.9);
        }
        if (beat == 2 || beat == 6) {
            mix(sound, skin(skinHz * 1.5, skinHz, 0.15), at, 0.4);
            mix(sound, bandNoise(2400, 2500, 3500, chance), at, 0.3);
        }
        if (half % 64 > 59) {
            mix(sound, skin(between(90, 260, chance), 80, 0.3), at + style.beat() / 4, 0.7);
        }
    }
    return sound;
}

Sound organMelody(double seconds, const Style &style, std::mt19937 &chance)
{
    Sound sound = emptySound(seconds);
    const double vibratoHz = between(4.5, 6.5, chance);
    const double depth = between(0, 0.012, chance);
    const int harmonics = oneOf(1, 8, chance);
    int step = 14 + oneOf(0, 6, chance);
    for (double at = 0; at < seconds;) {
        const double length
            = style.beat() * std::array {0.5, 1.0, 1.0, 2.0}[static_cast<std::size_t>(oneOf(0, 3, chance))];
        step = std::clamp(step + oneOf(-2, 2, chance), 12, 24);
        if (oneOf(0, 7, chance) > 0) {
            mix(sound, pipe(style.pitchHz(step), length * 0.95, vibratoHz, depth, harmonics), at,
                between(0.5, 0.9, chance));
        }
        at += length;
    }
    return sound;
}

Sound walkingBass(double seconds, const Style &style, std::mt19937 &chance)
{
    Sound sound = emptySound(seconds);
    const auto roots = progression(chance);
    int beat = 0;
    for (double at = 0; at < seconds; at += style.beat(), ++beat) {
        const int root = roots[static_cast<std::size_t>(beat / 4 % 4)];
        const int step = beat % 4 == 0 ? root : root + oneOf(0, 4, chance);
        mix(sound, pluck(style.pitchHz(step), style.beat() * 1.1, 0.5, chance), at, between(0.7, 1, chance));
    }
    return sound;
}

} // namespace

Sound pluckedChords(double seconds, std::mt19937 &chance)
{
    return pluckedChords(seconds, Style(chance), chance);
}

Sound drums(double seconds, std::mt19937 &chance)
{
    return drums(seconds, Style(chance), chance);
}

Sound organMelody(double seconds, std::mt19937 &chance)
{
    return organMelody(seconds, Style(chance), chance);
}

Sound walkingBass(double seconds, std::mt19937 &chance)
{
    return walkingBass(seconds, Style(chance), chance);
}

Sound band(double seconds, std::mt19937 &chance)
{
    const Style style(chance);
    Sound sound = drums(seconds, style, chance);
    mix(sound, walkingBass(seconds, style, chance), 0, between(0.5, 1.5, chance));
    mix(sound, pluckedChords(seconds, style, chance), 0, between(0.5, 1.5, chance));
    mix(sound, organMelody(seconds, style, chance), 0, between(0.3, 1.5, chance));
    return sound;
}

} // namespace lumaphone::bench
