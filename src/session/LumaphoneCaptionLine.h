#pragma once

#include "base/Json.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "storage/PendingTranslation.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>

namespace lumaphone {

/// One caption line: an utterance and its translation.
struct LumaphoneCaptionLine
{
    QUuid id; ///< stays the same through all revisions
    QString sourceText; ///< trimmed
    AppleSystemSpeechLanguage sourceLanguage = AppleSystemSpeechLanguage::automatic;
    QString translatedText; ///< pendingTranslationPlaceholder until a translation arrives
    QDateTime createdAt; ///< when the line was opened
    bool isFinal = false; ///< the utterance is complete, or the session was stopped
    std::int64_t revision = 1; ///< 1 when opened, one more after every change

    /// All seven fields; texts compare under canonical equivalence.
    friend bool operator==(const LumaphoneCaptionLine &a, const LumaphoneCaptionLine &b);
};

/// Whether the line shows that its translation has not arrived.
bool isPending(const LumaphoneCaptionLine &line);

/// Counts one more change. An overflow ends the program.
void countRevision(LumaphoneCaptionLine &line);

/// An object with the seven fields' names as keys; the date is ISO 8601.
json::Value toJson(const LumaphoneCaptionLine &line);
/// All seven keys are required. Throws json::DecodingError.
LumaphoneCaptionLine captionLineFromJson(const json::Value &value);

} // namespace lumaphone
