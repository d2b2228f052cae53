#pragma once

#include "base/Record.h"
#include "session/CaptionLineList.h"

#include <QString>

#include <functional>
#include <optional>

namespace lumaphone {

class Clock;

/// Whether `incoming` is a revision of `current`.
using RevisionDecision = std::function<bool(const QString &current, const QString &incoming)>;

/// Merges recognised texts into caption lines: a text revises the open line, or a line opened a moment ago,
/// or opens a new one. Main thread.
class CaptionLineMerger
{
public:
    /// The clock must outlive the merger.
    CaptionLineMerger(RevisionDecision isRevision, const Clock &clock, UuidGenerator makeUuid);

    const QList<LumaphoneCaptionLine> &captionLines() const { return m_lines.lines(); }
    /// The open line, which later partial results keep revising.
    const std::optional<QUuid> &currentLineID() const { return m_currentLineID; }
    const CaptionLineList &list() const { return m_lines; }
    void setListener(CaptionLineListener *listener) { m_lines.setListener(listener); }

    /// Merges one recognised text, trimmed and not empty.
    void upsertCaptionLine(const QString &sourceText, AppleSystemSpeechLanguage language, bool isFinal);
    /// The line that `text` may revise.
    std::optional<qsizetype> revisionCandidateIndex(const QString &text) const;
    /// Opens a new line.
    void appendCaptionLine(const QString &sourceText, AppleSystemSpeechLanguage language, bool isFinal);
    /// Closes the open line as final, if there is one.
    void finalizeOpenCaptionLine();
    /// Forgets which line is open; the line stays as it is.
    void clearCurrentLine() { m_currentLineID.reset(); }
    /// Gives a line its translation.
    void setTranslation(qsizetype index, const QString &translation);

    /// Replaces all lines. The marker of the open line stays.
    void resetCaptionLines(QList<LumaphoneCaptionLine> lines) { m_lines.reset(std::move(lines)); }

private:
    RevisionDecision m_isRevision;
    const Clock &m_clock;
    UuidGenerator m_makeUuid;
    CaptionLineList m_lines;
    std::optional<QUuid> m_currentLineID;
};

} // namespace lumaphone
