#pragma once

#include "support/speech-scores/CaptionTrace.h"

#include <QStringList>

#include <functional>

namespace lumaphone::test {

/// How restless caption lines were.
struct Restlessness
{
    qsizetype opened = 0; ///< lines
    qsizetype finished = 0; ///< lines that ended as final ones
    qsizetype erased = 0; ///< words that were shown and taken back, or stay in a line that was given up
    qsizetype final = 0; ///< words of finished lines

    qsizetype givenUp() const { return opened - finished; }
    /// Normalized erasure.
    double erasure() const;
    double openedPerFinished() const;
    Restlessness &operator+=(const Restlessness &other);
};

/// A word is taken back when the text that follows no longer begins with all that stood up to it. `words`
/// says what the words of a text are.
Restlessness restlessness(
    const std::vector<CaptionHistory> &lines, const std::function<QStringList(const QString &)> &words);

/// When somebody spoke.
struct SpokenStretch
{
    TraceTime begin;
    TraceTime end;
};

/// How late the texts of one stretch came. A value that cannot be told is missing: see captionDelays().
struct CaptionDelay
{
    bool hasText = false;
    std::optional<double> first; ///< seconds from the beginning of speech to its first text
    std::optional<double> final; ///< seconds from the end of speech to its last final text
};

/// The delays of consecutive stretches. A change of a line belongs to the stretch after whose beginning it
/// came. That speaks for the truth only where a pause of 1.5 s or more parts the stretches and the text of
/// the one before was final by then: otherwise there is no first text, and no final one for the stretch
/// before.
std::vector<CaptionDelay> captionDelays(
    const std::vector<CaptionHistory> &lines, const std::vector<SpokenStretch> &stretches);

} // namespace lumaphone::test
