#pragma once

#include "session/LumaphoneCaptionLine.h"
#include "support/CountedUuids.h"

#include <QTimeZone>

namespace lumaphone::test {

/// A caption line with the n-th identity, opened n seconds after a fixed moment.
inline LumaphoneCaptionLine captionLine(uint number, const QString &sourceText, bool isFinal = true)
{
    return {
        .id = countedUuid(number),
        .sourceText = sourceText,
        .sourceLanguage = AppleSystemSpeechLanguage::japanese,
        .translatedText = QStringLiteral("譯文 %1").arg(sourceText),
        .createdAt = QDateTime(QDate(2026, 3, 1), QTime(9, 30), QTimeZone::utc()).addSecs(number),
        .isFinal = isFinal,
        .revision = 1,
    };
}

} // namespace lumaphone::test
