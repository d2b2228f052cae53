#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

namespace lumaphone {

struct CaptionTranslation
{
    QString text;
    QString translation;
    AppleSystemSpeechLanguage language; ///< it was translated from
};

} // namespace lumaphone
