#pragma once

#include "session/LumaphoneCaptionLine.h"
#include "session/LumaphoneSessionDraft.h"
#include "storage/LiveTranscript.h"

#include <QList>

namespace lumaphone {

/// Caption lines as the library takes them, one for one.
QList<SavedTranscriptLine> savedTranscriptLines(const QList<LumaphoneCaptionLine> &lines);

/// Those of `terms` that occur in the recognised texts or in their translations, in list order.
QList<LumaphoneGlossaryTerm> matchedGlossaryTerms(
    const QList<LumaphoneGlossaryTerm> &terms, const QList<LumaphoneCaptionLine> &lines);

/// A session that was interrupted, as it is handed to the library; `terms` are the ones in use.
LiveTranscript liveTranscript(const LumaphoneSessionDraft &draft, const QList<LumaphoneGlossaryTerm> &terms);

} // namespace lumaphone
