#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace lumaphone::test {

using TraceTime = std::chrono::steady_clock::time_point;

/// A text that a caption line had from this moment on.
struct CaptionChange
{
    TraceTime at;
    QString text;
    bool isFinal = false;
};

/// A caption line from its first text to its last; never without one.
struct CaptionHistory
{
    QString id;
    std::vector<CaptionChange> changes;

    TraceTime appeared() const { return changes.front().at; }
    QString text() const { return changes.back().text; }
    /// Whether it ended as a final line. One that did not was given up and stays as it is.
    bool isFinished() const { return changes.back().isFinal; }
};

/// The JSON Lines of a running program, each with the moment at which it arrived.
class CaptionTrace
{
public:
    /// Throws json::DecodingError for what the program does not write.
    void add(const QByteArray &line, TraceTime at);

    /// In the order in which they appeared.
    const std::vector<CaptionHistory> &lines() const { return m_lines; }
    /// When this status was first told.
    std::optional<TraceTime> statusTime(const QString &status) const;
    /// The failure that was told first.
    const std::optional<QString> &failure() const { return m_failure; }

    /// The final texts of the lines that appeared in [from, to), joined by blanks.
    QString finalText(TraceTime from = TraceTime::min(), TraceTime to = TraceTime::max()) const;

private:
    struct Status
    {
        TraceTime at;
        QString text;
    };

    std::vector<CaptionHistory> m_lines;
    std::vector<Status> m_statuses;
    std::optional<QString> m_failure;
};

} // namespace lumaphone::test
