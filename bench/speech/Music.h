#pragma once

#include "bench/speech/QuietSounds.h"

namespace lumaphone::bench {

// Passages of music without singing, each in a key and at a speed of its own.

/// Broken and struck chords on strings.
Sound pluckedChords(double seconds, std::mt19937 &chance);
Sound drums(double seconds, std::mt19937 &chance);
/// A tune with vibrato, as on an organ or a flute: the sound that is most like a voice.
Sound organMelody(double seconds, std::mt19937 &chance);
Sound walkingBass(double seconds, std::mt19937 &chance);
/// All of them together, in one key and at one speed.
Sound band(double seconds, std::mt19937 &chance);

} // namespace lumaphone::bench
