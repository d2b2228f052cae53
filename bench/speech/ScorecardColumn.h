#pragma once

#include "bench/speech/FileScores.h"
#include "bench/speech/LiveScores.h"
#include "bench/speech/SteadyScores.h"
#include "bench/speech/TextTable.h"

namespace lumaphone::bench {

struct ScorecardOptions
{
    int rounds = 1; ///< how often the recordings are played
    double steadyMinutes = 0.5; ///< how long somebody speaks without a pause
};

/// A column of the scorecard. What is missing was not measured.
struct ScorecardColumn
{
    QString title;
    FileScores files;
    SetCounts playedWords;
    QString playedText;
    std::optional<LiveScores> live;
    std::optional<SteadyScores> steady;
    std::vector<double> startTimes;
};

/// Measures the program with one engine.
ScorecardColumn measure(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, const ScorecardOptions &options);

TextTable scorecardTable(const std::vector<ScorecardColumn> &columns);

/// "3.5 % (4 of 114)"
QString errorRate(const WordCount &count);
/// "0.61 / 0.93 s": median and 95th percentile, with their number if some are missing.
QString delays(const std::vector<double> &values, std::size_t expected);

} // namespace lumaphone::bench
