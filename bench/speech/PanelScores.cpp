#include "bench/speech/PanelScores.h"

#include "app/floating/ReadingPage.h"

#include <QUuid>

#include <algorithm>
#include <map>

namespace lumaphone::bench {

namespace {

/// A text that the program told of a line.
struct Event
{
    test::TraceTime at;
    std::size_t line;
    QString text;
    bool isFinal;
};

std::vector<Event> eventsOf(const std::vector<test::CaptionHistory> &lines)
{
    std::vector<Event> events;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        for (const test::CaptionChange &change : lines[line].changes) {
            events.push_back({change.at, line, change.text, change.isFinal});
        }
    }
    std::stable_sort(
        events.begin(), events.end(), [](const Event &a, const Event &b) { return a.at < b.at; });
    return events;
}

/// Looks at the panel and notes what becomes of each row.
class Onlooker
{
public:
    explicit Onlooker(const WordSplitter &words)
        : m_words(words)
    {
    }

    void see(const std::vector<ReadingPage::Row> &rows, std::chrono::nanoseconds now)
    {
        for (auto seen = m_seen.begin(); seen != m_seen.end();) {
            const bool stands = std::any_of(rows.begin(), rows.end(),
                [&seen](const ReadingPage::Row &row) { return row.key == seen->first; });
            if (!stands) {
                noteEnd(seen->second, now);
            }
            seen = stands ? std::next(seen) : m_seen.erase(seen);
        }
        for (const ReadingPage::Row &row : rows) {
            look(m_seen[row.key], row.line, now);
        }
    }

    PanelScores scores() const
    {
        PanelScores scores = m_scores;
        for (const auto &[key, seen] : m_seen) {
            scores.final += seen.isFinished ? seen.words.size() : 0;
        }
        return scores;
    }

private:
    struct Seen
    {
        QStringList words;
        bool isFinished = false;
        std::chrono::nanoseconds finished {0};
    };

    void look(Seen &seen, const ReadingLine &line, std::chrono::nanoseconds now)
    {
        const QStringList words = m_words(line.source);
        const auto kept = std::mismatch(seen.words.begin(), seen.words.end(), words.begin(), words.end());
        m_scores.erased += seen.words.end() - kept.first;
        if (seen.isFinished && words != seen.words) {
            ++m_scores.rewritten;
            m_scores.stood.push_back(std::chrono::duration<double>(now - seen.finished).count());
            seen.finished = now;
        }
        if (line.isFinished && !seen.isFinished) {
            seen.finished = now;
        }
        seen.isFinished = line.isFinished;
        seen.words = words;
    }

    void noteEnd(const Seen &seen, std::chrono::nanoseconds now)
    {
        if (seen.isFinished) {
            m_scores.final += seen.words.size();
            m_scores.stood.push_back(std::chrono::duration<double>(now - seen.finished).count());
        }
    }

    const WordSplitter &m_words;
    std::map<std::size_t, Seen> m_seen;
    PanelScores m_scores;
};

} // namespace

double PanelScores::erasure() const
{
    return static_cast<double>(erased) / static_cast<double>(std::max<qsizetype>(1, final));
}

std::optional<double> PanelScores::shortest() const
{
    const auto least = std::min_element(stood.begin(), stood.end());
    return least == stood.end() ? std::nullopt : std::optional(*least);
}

PanelScores newestCaptionScores(const std::vector<test::CaptionHistory> &lines, const WordSplitter &words)
{
    Onlooker onlooker(words);
    for (const Event &event : eventsOf(lines)) {
        ReadingLine line;
        line.source = event.text;
        line.isFinished = event.isFinal;
        onlooker.see({{event.line, line}}, event.at.time_since_epoch());
    }
    return onlooker.scores();
}

PanelScores readingPageScores(
    const std::vector<test::CaptionHistory> &lines, int lineCount, const WordSplitter &words)
{
    std::vector<QUuid> ids(lines.size());
    std::generate(ids.begin(), ids.end(), &QUuid::createUuid);
    ReadingPage page;
    page.setSize(lineCount);
    // Nothing is translated in these sessions.
    page.setDisplayMode(FloatingCaptionDisplayMode::sourceOnly);
    Onlooker onlooker(words);
    std::optional<ReadingPage::Time> next;
    const auto advance = [&](ReadingPage::Time now) {
        next = page.advance(now);
        onlooker.see(page.rows(), now);
    };
    for (const Event &event : eventsOf(lines)) {
        const ReadingPage::Time now = event.at.time_since_epoch();
        while (next && *next <= now) {
            advance(*next);
        }
        page.update({ids[event.line], event.text, {}, {}, event.isFinal}, now);
        advance(now);
    }
    while (next) {
        advance(*next);
    }
    return onlooker.scores();
}

} // namespace lumaphone::bench
