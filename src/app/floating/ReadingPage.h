#pragma once

#include "storage/FloatingCaptionDisplayMode.h"

#include <QString>
#include <QUuid>

#include <chrono>
#include <optional>
#include <vector>

namespace lumaphone {

/// A caption line as the panel shows it.
struct ReadingLine
{
    QUuid id;
    QString source;
    QString sourceLanguage; ///< raw value
    QString translation; ///< empty while it is on its way
    bool isFinished = false; ///< nobody will say more of it

    bool operator==(const ReadingLine &) const = default;
};

/// The newest few lines of a session, for somebody who reads them.
///
/// What is finished is not rewritten as long as it stands there: a line that is corrected comes again at the
/// bottom, another translation is taken when nobody sees it. A line leaves when it has stood long enough to
/// be read. Whoever stops the page, or scrolls back, keeps what is there, while new lines wait.
///
/// Time is told, on one clock that does not step back.
class ReadingPage
{
public:
    using Time = std::chrono::nanoseconds;

    struct Row
    {
        std::size_t key = 0; ///< the same as long as the row stands
        ReadingLine line;

        bool operator==(const Row &) const = default;
    };

    /// At least one line.
    void setSize(int lines);
    /// Which texts are shown, and so have to be read.
    void setDisplayMode(FloatingCaptionDisplayMode mode) { m_mode = mode; }

    /// A line has begun or has changed.
    void update(const ReadingLine &line, Time now);
    /// Begins anew, with these lines.
    void reset(const std::vector<ReadingLine> &lines, Time now);
    /// Lets in what has room by now. When the next line will have it; none if none waits for that.
    std::optional<Time> advance(Time now);

    /// Stops the page as it is.
    void hold();
    /// Back to the newest lines.
    void follow(Time now);
    /// Back, or forward if positive, by that many lines; at the end it follows again.
    void scroll(int lines, Time now);
    bool isHeld() const { return m_stop.has_value(); }
    /// Whether there are older lines than those shown.
    bool hasOlder() const;
    /// How many lines have come that are not shown.
    int waiting() const;

    /// From the oldest to the newest.
    std::vector<Row> rows() const;

private:
    struct Entry
    {
        std::size_t key = 0;
        ReadingLine line;
        std::optional<ReadingLine> correction; ///< for when nobody sees it
        bool isStale = false; ///< its translation is that of an earlier text
        bool isSuperseded = false; ///< it comes again further down
        Time arrived {0};
        Time settled {0}; ///< since when it stands as it is
    };
    struct Stop
    {
        std::size_t end; ///< behind the last entry that is shown
        std::vector<Row> rows;
    };

    void append(const ReadingLine &line, Time now);
    void change(Entry &entry, const ReadingLine &line, bool isRead, Time now);
    bool isRead(std::size_t index) const;
    bool showsTranslation() const { return m_mode != FloatingCaptionDisplayMode::sourceOnly; }
    QString shownText(const ReadingLine &line) const;
    Time leavingTime(const Entry &entry, const Entry &next) const;
    std::size_t begin(std::size_t end) const { return end - std::min(end, m_size); }
    std::vector<Row> rowsUntil(std::size_t end) const;
    void tidy();

    std::vector<Entry> m_entries;
    std::size_t m_end = 0; ///< behind the last entry that is shown when the page follows
    std::size_t m_tidied = 0; ///< entries before it have nothing to be tidied
    std::size_t m_nextKey = 0;
    std::size_t m_size = 1;
    FloatingCaptionDisplayMode m_mode = FloatingCaptionDisplayMode::bilingual;
    std::optional<Stop> m_stop;
};

} // namespace lumaphone
