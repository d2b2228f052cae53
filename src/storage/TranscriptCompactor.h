#pragma once

#include "storage/SavedTranscriptLine.h"

#include <QList>
#include <QString>

#include <functional>

namespace lumaphone {

/// Whether `incoming` is a revision of `current`: the same utterance, recognised again.
using RevisionQuestion = std::function<bool(const QString &current, const QString &incoming)>;

/// Merges adjacent lines that are growing versions of one utterance. Takes time in proportion to the text.
class TranscriptCompactor
{
public:
    explicit TranscriptCompactor(RevisionQuestion isRevision);

    /// Lines with trimmed texts and without blank ones, as the session or a file holds them, merged. A
    /// pending translation becomes the source text of a Mandarin line, and none of any other.
    QList<SavedTranscriptLine> compactSavedLines(const QList<SavedTranscriptLine> &lines) const;

    /// Whether two adjacent lines are one utterance.
    bool shouldMergeAdjacent(const SavedTranscriptLine &previous, const SavedTranscriptLine &incoming) const;

private:
    RevisionQuestion m_isRevision;
};

} // namespace lumaphone
