#pragma once

#include "bench/speech/QuietSounds.h"

namespace lumaphone::bench {

inline constexpr double soundRateHz = 16000;

// Passages of sounds that are no music.

Sound whiteNoise(double seconds, std::mt19937 &chance);
Sound pinkNoise(double seconds, std::mt19937 &chance);
Sound brownNoise(double seconds, std::mt19937 &chance);
/// In through the nose and out through the mouth, close to a microphone.
Sound breath(double seconds, std::mt19937 &chance);
/// Somebody types, and clicks now and then.
Sound keysAndButtons(double seconds, std::mt19937 &chance);
/// Many hands that begin together and tire one by one.
Sound applause(double seconds, std::mt19937 &chance);

/// Noise in a band around a frequency, through a resonance of this width.
Sound bandNoise(std::size_t samples, double frequencyHz, double widthHz, std::mt19937 &chance);
/// Adds a sound to another one from a moment on; what lies behind its end is lost.
void mix(Sound &into, const Sound &sound, double atSecond, double level);

} // namespace lumaphone::bench
