#pragma once

#include "app/live/TranscriptSelection.h"

#include <QString>
#include <QStringMatcher>

#include <compare>
#include <optional>
#include <span>
#include <vector>

namespace lumaphone {

/// Where a text occurs in a transcript.
struct TranscriptMatch
{
    int row = 0;
    bool isInTranslation = false;
    int from = 0;
    int to = 0;

    auto operator<=>(const TranscriptMatch &) const = default; // NOLINT(modernize-use-nullptr)
};

/// Every occurrence of a text in the lines of a transcript, whatever its case, and the one that is looked at.
/// Both follow the lines; a change of one line costs no search of the others.
class TranscriptFinder
{
public:
    /// Forgets what was found; an empty pattern is never found.
    void setPattern(const QString &pattern);
    const QString &pattern() const { return m_pattern; }

    /// A row that has not been there, behind all others or between them.
    void rowInserted(int row);
    /// Searches a row, again if it has been searched.
    void searchRow(int row, const QString &source, const QString &translation);

    int count() const { return static_cast<int>(m_matches.size()); }
    /// Of a row, in the order of its text, source first.
    std::span<const TranscriptMatch> in(int row) const;
    /// The one that is looked at.
    std::optional<TranscriptMatch> current() const;
    /// Its number, from one; zero for none.
    int number() const { return m_current ? static_cast<int>(*m_current) + 1 : 0; }

    /// Looks at the first one in that row or behind it; if there is none, at the last.
    void lookNear(int row);
    /// Looks at the next one, or the one before for a negative number, round and round.
    void step(int by);

private:
    using Matches = std::vector<TranscriptMatch>;

    Matches::const_iterator firstIn(int row) const;
    void findIn(const QString &text, int row, bool isInTranslation, Matches &found) const;
    /// Looks at `match`, or, if it is gone, at what stands in its place.
    void lookAt(const TranscriptMatch &match);

    QString m_pattern;
    QStringMatcher m_matcher;
    Matches m_matches; ///< in the order of the transcript
    std::optional<std::size_t> m_current;
};

} // namespace lumaphone
