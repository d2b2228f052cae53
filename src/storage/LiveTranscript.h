#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "storage/SavedTranscriptLine.h"

#include <QDateTime>
#include <QList>
#include <QUuid>

#include <optional>

namespace lumaphone {

/// A live session as it is handed to the library.
struct LiveTranscript
{
    QList<SavedTranscriptLine> lines; ///< every caption line, as it stands
    std::optional<QDateTime> startedAt;
    std::optional<QDateTime> endedAt;
    AppleSystemSpeechLanguage sourceLanguage = AppleSystemSpeechLanguage::automatic; ///< as chosen
    std::optional<AppleSystemSpeechLanguage> detectedLanguage;
    QList<LumaphoneGlossaryTerm> matchedTerms;
    std::optional<QUuid> savedTranscriptID; ///< when the session was saved before
};

} // namespace lumaphone
