#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QHash>
#include <QList>

#include <optional>

namespace lumaphone {

/// Hears of every change of a session's lines, after it happened, so that a view need not compare lists.
/// Main thread; throws nothing.
class CaptionLineListener
{
public:
    virtual ~CaptionLineListener() = default;
    virtual void captionLineInserted(qsizetype index) = 0;
    virtual void captionLineChanged(qsizetype index) = 0;
    /// The whole list was replaced or emptied.
    virtual void captionLinesReset() = 0;
};

/// A session's caption lines, oldest first. Finding a line by identity, and the newest line by text, stays
/// quick however long the session is.
class CaptionLineList
{
public:
    const QList<LumaphoneCaptionLine> &lines() const { return m_lines; }
    bool isEmpty() const { return m_lines.isEmpty(); }

    /// The first line with that identity.
    std::optional<qsizetype> firstIndexOf(const QUuid &id) const;
    /// The newest line with that source text, under canonical equivalence.
    std::optional<qsizetype> newestIndexOf(const QString &sourceText) const;

    void append(LumaphoneCaptionLine line);
    /// The identity must stay the same.
    void replace(qsizetype index, LumaphoneCaptionLine line);
    void reset(QList<LumaphoneCaptionLine> lines);

    /// At most one listener; it must outlive the list or be taken away with nullptr.
    void setListener(CaptionLineListener *listener) { m_listener = listener; }

private:
    QList<LumaphoneCaptionLine> m_lines;
    QHash<QUuid, qsizetype> m_firstIndexes;
    CaptionLineListener *m_listener = nullptr;
};

} // namespace lumaphone
