#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

namespace lumaphone {

/// The language to translate a text from: the recognised one, except that a text attributed to Mandarin whose
/// letters are at least 72 % ASCII Latin is English.
AppleSystemSpeechLanguage effectiveTranslationLanguage(
    const QString &text, AppleSystemSpeechLanguage recognized);

} // namespace lumaphone
