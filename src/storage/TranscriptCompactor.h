#pragma once

#include "storage/RevisionQuestion.h"
#include "storage/SavedTranscriptLine.h"

#include <QList>

namespace lumaphone {

/// Merges adjacent lines that are growing versions of one utterance. Takes time in proportion to the text.
class TranscriptCompactor
{
public:
    explicit TranscriptCompactor(RevisionQuestion areRevisions);

    /// Lines with trimmed texts and without blank ones, as the session or a file holds them, merged. A
    /// pending translation becomes the source text where that needs none, and nothing elsewhere.
    QList<SavedTranscriptLine> compactSavedLines(const QList<SavedTranscriptLine> &lines) const;

private:
    RevisionQuestion m_areRevisions;
};

} // namespace lumaphone
