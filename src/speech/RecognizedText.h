#pragma once

#include "speech/SpokenLanguage.h"

namespace lumaphone {

/// Whether a network's event leaves room for speech. Music and silence do not.
bool mayBeSpeech(const QString &event, const QString &language);

/// A decoded text as it is shown: without a network's marks ("<|BGM|>") and pictures of events, without stray
/// blanks. Empty if nothing but punctuation is left. Mandarin keeps the script in which it came.
QString cleanRecognizedText(const QString &text, SpokenLanguage language);

} // namespace lumaphone
