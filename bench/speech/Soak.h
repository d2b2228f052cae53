#pragma once

#include "bench/speech/PlayedSession.h"
#include "bench/speech/TextTable.h"

namespace lumaphone::bench {

/// Plays the recordings in an order by chance, with pauses of 0.2 to 3 s, and compares the first five minutes
/// with the last ones.
TextTable soak(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, double minutes, unsigned seed);

} // namespace lumaphone::bench
