#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "platform/SpeechFramework.h"

#include <QString>

#include <memory>

namespace lumaphone {

/// One language that a transcriber listens for.
struct AppleSystemSpeechTranscriberEntry
{
    AppleSystemSpeechLanguage language; ///< never `automatic`
    QString locale; ///< the framework's equivalent of the language's locale
    std::shared_ptr<SpeechModule> transcriber;
};

} // namespace lumaphone
