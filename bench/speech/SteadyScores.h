#pragma once

#include "bench/speech/PlayedSession.h"
#include "bench/speech/ProcessUse.h"
#include "bench/speech/WordCount.h"

#include <optional>
#include <vector>

namespace lumaphone::bench {

/// While somebody speaks without a pause.
struct SteadyScores
{
    WordCount words;
    double cpuShare = 0; ///< of one processor
    ProcessMemory program;
    std::optional<ProcessMemory> host;
};

SteadyScores steadyScores(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, double minutes);

/// From the start command until the program listens, in seconds: several starts after one that does not
/// count.
std::vector<double> startTimes(
    const SoundServer &server, const ProgramUnderTest &program, AppleSystemSpeechLanguage language);

} // namespace lumaphone::bench
