#pragma once

#include "bench/speech/ProgramUnderTest.h"
#include "bench/speech/WordCount.h"
#include "support/speech-scores/SpokenRecordings.h"

#include <optional>

namespace lumaphone::bench {

/// What a program makes of files.
struct FileScores
{
    SetCounts words; ///< of the recordings, each read by itself
    QStringList texts; ///< of each recording
    double cpuShare
        = 0; ///< seconds of processor for a second of sound, over all in one file, loading included
    double realTimeFactor = 0; ///< the same for the time that passes
};

FileScores fileScores(const ProgramUnderTest &program, const test::SpokenRecordings &speech);
/// Those of the command pocketsphinx_continuous. None if it is not installed, or for other languages.
std::optional<FileScores> peerScores(const test::SpokenRecordings &speech);

} // namespace lumaphone::bench
