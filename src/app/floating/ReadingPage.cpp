#include "app/floating/ReadingPage.h"

#include "app/floating/ReadingPace.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

void ReadingPage::setSize(int lines)
{
    m_size = static_cast<std::size_t>(std::max(1, lines));
    if (m_stop) {
        m_stop->rows = rowsUntil(m_stop->end);
    }
}

void ReadingPage::update(const ReadingLine &line, Time now)
{
    const auto known = std::find_if(
        m_entries.rbegin(), m_entries.rend(), [&](const Entry &entry) { return entry.line.id == line.id; });
    if (known == m_entries.rend()) {
        append(line, now);
        return;
    }
    const auto index = static_cast<std::size_t>(m_entries.rend() - known - 1);
    Entry &entry = *known;
    if (isRead(index) && entry.line.isFinished && entry.line.source != line.source) {
        entry.isSuperseded = true;
        m_tidied = std::min(m_tidied, index);
        append(line, now);
    } else {
        change(entry, line, isRead(index), now);
        m_tidied = entry.correction ? std::min(m_tidied, index) : m_tidied;
    }
}

void ReadingPage::append(const ReadingLine &line, Time now)
{
    Entry entry;
    entry.key = m_nextKey++;
    entry.line = line;
    entry.arrived = now;
    entry.settled = now;
    m_entries.push_back(std::move(entry));
}

void ReadingPage::change(Entry &entry, const ReadingLine &line, bool isRead, Time now)
{
    const bool isTranslated = !entry.line.translation.isEmpty() && !entry.isStale;
    if (isRead && entry.line.isFinished && isTranslated && !line.translation.isEmpty()
        && entry.line.translation != line.translation) {
        entry.correction = line;
        return;
    }
    const ReadingLine former = std::exchange(entry.line, line);
    // Once finished, it is read as such, and the last translation stays until there is another one.
    entry.line.isFinished |= former.isFinished && isRead;
    entry.isStale = line.translation.isEmpty() && !former.translation.isEmpty();
    if (entry.isStale) {
        entry.line.translation = former.translation;
    }
    if (shownText(entry.line) != shownText(former)) {
        entry.settled = now;
    }
}

void ReadingPage::reset(const std::vector<ReadingLine> &lines, Time now)
{
    m_entries.clear();
    m_stop.reset();
    for (const ReadingLine &line : lines) {
        append(line, now);
    }
    m_end = m_entries.size();
    m_tidied = m_end;
}

std::optional<ReadingPage::Time> ReadingPage::advance(Time now)
{
    if (m_stop) {
        return std::nullopt;
    }
    std::optional<Time> next;
    for (; m_end < m_entries.size(); ++m_end) {
        Entry &coming = m_entries[m_end];
        if (m_end >= m_size) {
            const Time leaving = leavingTime(m_entries[m_end - m_size], coming);
            if (leaving > now) {
                next = leaving;
                break;
            }
        }
        coming.settled = now;
    }
    tidy();
    return next;
}

void ReadingPage::hold()
{
    if (!m_stop) {
        m_stop = Stop {m_end, rows()};
    }
}

void ReadingPage::follow(Time now)
{
    if (!std::exchange(m_stop, std::nullopt)) {
        return;
    }
    m_end = m_entries.size();
    for (std::size_t index = begin(m_end); index < m_end; ++index) {
        m_entries[index].settled = now;
    }
    tidy();
}

void ReadingPage::scroll(int lines, Time now)
{
    const std::size_t end = m_stop ? m_stop->end : m_end;
    if (lines < 0) {
        const std::size_t back = std::min(end, static_cast<std::size_t>(-lines));
        const std::size_t wanted = std::max(end - back, std::min(m_size, m_entries.size()));
        if (wanted < end) {
            m_stop = Stop {wanted, rowsUntil(wanted)};
        }
        return;
    }
    const std::size_t wanted = end + static_cast<std::size_t>(lines);
    if (m_stop && wanted >= m_entries.size()) {
        follow(now);
    } else if (m_stop) {
        m_stop = Stop {wanted, rowsUntil(wanted)};
    }
}

bool ReadingPage::hasOlder() const
{
    return begin(m_stop ? m_stop->end : m_end) > 0;
}

int ReadingPage::waiting() const
{
    return m_stop ? static_cast<int>(m_entries.size() - m_stop->end) : 0;
}

std::vector<ReadingPage::Row> ReadingPage::rows() const
{
    return m_stop ? m_stop->rows : rowsUntil(m_end);
}

std::vector<ReadingPage::Row> ReadingPage::rowsUntil(std::size_t end) const
{
    std::vector<Row> rows;
    for (std::size_t index = begin(end); index < end; ++index) {
        rows.push_back({m_entries[index].key, m_entries[index].line});
    }
    return rows;
}

/// Whether somebody may be reading it: not on a page that is held, which stays whatever its lines become.
bool ReadingPage::isRead(std::size_t index) const
{
    return !m_stop && index >= begin(m_end) && index < m_end;
}

QString ReadingPage::shownText(const ReadingLine &line) const
{
    return showsTranslation() ? line.translation : line.source;
}

ReadingPage::Time ReadingPage::leavingTime(const Entry &entry, const Entry &next) const
{
    using namespace readingpace;
    const bool isAwaited = showsTranslation() && (entry.line.translation.isEmpty() || entry.isStale);
    const Time stays = isAwaited ? mostLag : readingTime(shownText(entry.line));
    return std::min(entry.settled + stays, next.arrived + mostLag);
}

/// Corrects what nobody sees any more.
void ReadingPage::tidy()
{
    while (m_tidied < begin(m_end)) {
        Entry &entry = m_entries[m_tidied];
        if (entry.isSuperseded) {
            m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(m_tidied));
            --m_end;
            continue;
        }
        if (entry.correction) {
            entry.line = *std::exchange(entry.correction, std::nullopt);
        }
        ++m_tidied;
    }
}

} // namespace lumaphone
