#pragma once

#include "base/Json.h"
#include "language/AppleSystemSpeechLanguage.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace lumaphone {

/// One line of a saved transcript.
struct SavedTranscriptLine
{
    QUuid id; ///< the caption line's
    QString sourceText;
    QString translatedText; ///< empty when there is none
    AppleSystemSpeechLanguage sourceLanguage = AppleSystemSpeechLanguage::automatic;
    QDateTime createdAt; ///< when the line was opened
    bool isFinal = false; ///< the recogniser finished the line

    bool operator==(const SavedTranscriptLine &) const = default;
};

json::Value toJson(const SavedTranscriptLine &line);
/// All keys are required. Throws json::DecodingError.
SavedTranscriptLine savedTranscriptLineFromJson(const json::Value &value);

} // namespace lumaphone
