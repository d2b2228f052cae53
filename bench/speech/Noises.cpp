#include "bench/speech/Noises.h"

#include "bench/speech/Chance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace lumaphone::bench {

namespace {

std::size_t samplesIn(double seconds)
{
    return static_cast<std::size_t>(seconds * soundRateHz);
}

Sound noise(std::size_t samples, std::mt19937 &chance)
{
    std::normal_distribution<double> sample(0, 0.2);
    Sound sound(samples);
    std::generate(sound.begin(), sound.end(), [&] { return sample(chance); });
    return sound;
}

/// Loud at once, then fading away.
Sound burst(double seconds, double frequencyHz, double widthHz, std::mt19937 &chance)
{
    Sound sound = bandNoise(samplesIn(seconds), frequencyHz, widthHz, chance);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        sound[i] *= std::exp(-6.0 * static_cast<double>(i) / static_cast<double>(sound.size()));
    }
    return sound;
}

/// A key goes down, and up again a little later and softer.
void strike(Sound &into, double atSecond, std::mt19937 &chance)
{
    const double pitch = between(1500, 4500, chance);
    const double level = between(0.3, 1, chance);
    mix(into, burst(between(0.008, 0.02, chance), pitch, pitch / 2, chance), atSecond, level);
    mix(into, burst(0.03, between(180, 400, chance), 150, chance), atSecond, level / 2);
    const double release = atSecond + between(0.05, 0.12, chance);
    mix(into, burst(0.008, pitch * 1.2, pitch / 2, chance), release, level / 3);
}

} // namespace

Sound whiteNoise(double seconds, std::mt19937 &chance)
{
    return noise(samplesIn(seconds), chance);
}

/// Equal energy in every octave: sums of noises that change half as often as the one before.
Sound pinkNoise(double seconds, std::mt19937 &chance)
{
    std::normal_distribution<double> step(0, 0.1);
    std::array<double, 12> values {};
    Sound sound(samplesIn(seconds));
    for (std::size_t i = 0; i < sound.size(); ++i) {
        double sum = step(chance);
        for (std::size_t octave = 0; octave < values.size(); ++octave) {
            if (i % (std::size_t(1) << octave) == 0) {
                values[octave] = step(chance);
            }
            sum += values[octave];
        }
        sound[i] = sum;
    }
    return sound;
}

/// A walk by chance that is drawn back to the middle.
Sound brownNoise(double seconds, std::mt19937 &chance)
{
    std::normal_distribution<double> step(0, 0.02);
    Sound sound(samplesIn(seconds));
    double value = 0;
    for (double &sample : sound) {
        value = 0.995 * value + step(chance);
        sample = value;
    }
    return sound;
}

Sound breath(double seconds, std::mt19937 &chance)
{
    Sound sound(samplesIn(seconds));
    double at = between(0, 1, chance);
    while (at < seconds) {
        for (const bool isOut : {false, true}) {
            const double length = between(0.8, isOut ? 2.4 : 1.6, chance);
            const double pitch = isOut ? between(500, 1000, chance) : between(1400, 2600, chance);
            Sound air = bandNoise(samplesIn(length), pitch, pitch * 1.2, chance);
            for (std::size_t i = 0; i < air.size(); ++i) {
                const double part = static_cast<double>(i) / static_cast<double>(air.size());
                air[i] *= std::pow(std::sin(std::numbers::pi * part), isOut ? 1.0 : 2.0);
            }
            mix(sound, air, at, isOut ? between(0.5, 1, chance) : between(0.2, 0.6, chance));
            at += length + between(0.05, 0.4, chance);
        }
        at += between(0.3, 1.5, chance);
    }
    mix(sound, noise(sound.size(), chance), 0, 0.004);
    return sound;
}

Sound keysAndButtons(double seconds, std::mt19937 &chance)
{
    Sound sound(samplesIn(seconds));
    const double pace = between(0.09, 0.2, chance);
    double at = between(0, 1, chance);
    while (at < seconds) {
        const double kind = between(0, 1, chance);
        if (kind < 0.06) {
            for (const double click : {0.0, 0.07, 0.18, 0.25}) {
                mix(sound, burst(0.006, 2800, 1500, chance), at + click, 0.6);
            }
            at += between(0.4, 1.5, chance);
        } else if (kind < 0.12) {
            at += between(0.5, 2.5, chance);
        } else {
            strike(sound, at, chance);
            at += pace * between(0.5, 1.8, chance);
        }
    }
    mix(sound, noise(sound.size(), chance), 0, 0.002);
    return sound;
}

Sound applause(double seconds, std::mt19937 &chance)
{
    Sound sound(samplesIn(seconds));
    const int people = oneOf(4, 60, chance);
    for (int person = 0; person < people; ++person) {
        const double pitch = between(700, 2200, chance);
        const double level = std::pow(between(0.2, 1, chance), 2);
        const double end = seconds * between(0.5, 1, chance);
        const double pace = between(0.18, 0.34, chance);
        for (double at = between(0, 1.5, chance); at < end; at += pace * between(0.85, 1.15, chance)) {
            mix(sound, burst(between(0.015, 0.05, chance), pitch, pitch, chance), at, level);
        }
    }
    return sound;
}

Sound bandNoise(std::size_t samples, double frequencyHz, double widthHz, std::mt19937 &chance)
{
    const double radius = std::exp(-std::numbers::pi * widthHz / soundRateHz);
    const double turn = 2 * radius * std::cos(2 * std::numbers::pi * frequencyHz / soundRateHz);
    Sound sound = noise(samples, chance);
    double last = 0;
    double beforeLast = 0;
    for (double &sample : sound) {
        const double value = (1 - radius) * sample + turn * last - radius * radius * beforeLast;
        beforeLast = std::exchange(last, value);
        sample = value;
    }
    return sound;
}

void mix(Sound &into, const Sound &sound, double atSecond, double level)
{
    const auto begin = static_cast<std::size_t>(std::max(0.0, atSecond) * soundRateHz);
    for (std::size_t i = 0; i < sound.size() && begin + i < into.size(); ++i) {
        into[begin + i] += level * sound[i];
    }
}

} // namespace lumaphone::bench
