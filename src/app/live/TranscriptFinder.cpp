#include "app/live/TranscriptFinder.h"

#include <algorithm>
#include <iterator>

namespace lumaphone {

void TranscriptFinder::setPattern(const QString &pattern)
{
    m_pattern = pattern;
    // Texts that are recognised and translated are composed; a keyboard may give something else.
    m_matcher = QStringMatcher(pattern.normalized(QString::NormalizationForm_C), Qt::CaseInsensitive);
    m_matches.clear();
    m_current.reset();
}

void TranscriptFinder::rowInserted(int row)
{
    for (auto match = m_matches.begin() + (firstIn(row) - m_matches.cbegin()); match != m_matches.end();
         ++match) {
        ++match->row;
    }
}

void TranscriptFinder::searchRow(int row, const QString &source, const QString &translation)
{
    if (m_pattern.isEmpty()) {
        return;
    }
    Matches found;
    findIn(source, row, false, found);
    findIn(translation, row, true, found);
    const std::span<const TranscriptMatch> former = in(row);
    if (std::equal(found.begin(), found.end(), former.begin(), former.end())) {
        return;
    }
    const std::optional<TranscriptMatch> looked = current();
    const auto place = m_matches.erase(firstIn(row), firstIn(row + 1));
    m_matches.insert(place, found.begin(), found.end());
    if (looked) {
        lookAt(*looked);
    }
}

std::span<const TranscriptMatch> TranscriptFinder::in(int row) const
{
    return {firstIn(row), firstIn(row + 1)};
}

std::optional<TranscriptMatch> TranscriptFinder::current() const
{
    return m_current ? std::optional(m_matches.at(*m_current)) : std::nullopt;
}

void TranscriptFinder::lookNear(int row)
{
    lookAt({.row = row});
}

void TranscriptFinder::step(int by)
{
    if (!m_matches.empty()) {
        const int from = m_current ? static_cast<int>(*m_current) : by > 0 ? -1 : 0;
        m_current = static_cast<std::size_t>(((from + by) % count() + count()) % count());
    }
}

TranscriptFinder::Matches::const_iterator TranscriptFinder::firstIn(int row) const
{
    return std::lower_bound(m_matches.begin(), m_matches.end(), TranscriptMatch {.row = row});
}

void TranscriptFinder::findIn(const QString &text, int row, bool isInTranslation, Matches &found) const
{
    const auto length = static_cast<int>(m_matcher.pattern().size());
    for (qsizetype from = m_matcher.indexIn(text); from >= 0; from = m_matcher.indexIn(text, from + length)) {
        found.push_back({row, isInTranslation, static_cast<int>(from), static_cast<int>(from) + length});
    }
}

void TranscriptFinder::lookAt(const TranscriptMatch &match)
{
    if (m_matches.empty()) {
        m_current.reset();
        return;
    }
    const auto place = std::lower_bound(m_matches.begin(), m_matches.end(), match);
    m_current = std::min(static_cast<std::size_t>(place - m_matches.begin()), m_matches.size() - 1);
}

} // namespace lumaphone
