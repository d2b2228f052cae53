#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

#include <exception>

namespace lumaphone {

class AppleSystemSpeechTranscriber;

/// Receives what a transcriber recognises, on the transcriber's background tasks, several at a time. Must not
/// throw. Calls may still come after a stop(), until the tasks that end behind it have noticed.
class AppleSystemSpeechTranscriberDelegate
{
public:
    virtual ~AppleSystemSpeechTranscriberDelegate() = default;
    /// `text` is trimmed and never empty; `language` is never `automatic`. The transcriber may be destroyed
    /// when the call returns.
    virtual void didRecognize(AppleSystemSpeechTranscriber &transcriber, const QString &text,
        AppleSystemSpeechLanguage language, bool isFinal)
        = 0;
    /// Recognition has ended with an error.
    virtual void didFail(AppleSystemSpeechTranscriber &transcriber, std::exception_ptr error) = 0;
};

} // namespace lumaphone
