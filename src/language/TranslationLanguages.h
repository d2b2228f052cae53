#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

namespace lumaphone {

/// What everything is translated into, Traditional Chinese, as translation services and catalogues name it:
/// "zh-Hant".
QString translationTargetIdentifier();

/// A language to translate from as they name it, such as "ja". `automatic` counts as Japanese.
QString translationSourceIdentifier(AppleSystemSpeechLanguage language);

/// Whether text in a language is anything but its own translation.
bool needsTranslation(AppleSystemSpeechLanguage language);

} // namespace lumaphone
