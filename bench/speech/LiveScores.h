#pragma once

#include "bench/speech/PanelScores.h"
#include "bench/speech/PlayedSession.h"
#include "bench/speech/WordCount.h"
#include "support/speech-scores/CaptionMeasures.h"

#include <QStringList>

#include <vector>

namespace lumaphone::bench {

/// What the program made of sound while it was played.
struct LiveScores
{
    std::vector<double> firstDelays; ///< seconds after speech begins
    std::vector<double> finalDelays; ///< seconds after speech ends
    std::size_t recordings = 0;
    std::size_t missed = 0; ///< recordings without any text
    std::size_t disturbed = 0; ///< recordings that the sound server did not play well; without delays
    QStringList delayTexts; ///< a line for each recording, to be read
    test::Restlessness restlessness;
    PanelScores newestCaption; ///< on the panel as it opens
    PanelScores readingPage; ///< on the panel of somebody who reads readLines
    test::Restlessness restlessnessAsWritten; ///< case and marks make other words

    static constexpr int readLines = 3;

    void add(const QString &recording, const test::CaptionDelay &delay, bool isWhole);
};

/// A part of a session.
struct SessionPart
{
    test::TraceTime begin = test::TraceTime::min();
    test::TraceTime end = test::TraceTime::max();

    bool contains(test::TraceTime at) const { return at >= begin && at < end; }
};

/// Of a session that has played the list: what began in this part of it.
LiveScores liveScores(const PlayedSession &session, const Playlist &playlist,
    AppleSystemSpeechLanguage language, SessionPart part = {});

/// Of a session that has played the list: errors are counted where all that was heard differs from all that
/// was said, whenever it came.
SetCounts playedWords(
    const PlayedSession &session, const Playlist &playlist, AppleSystemSpeechLanguage language);

} // namespace lumaphone::bench
