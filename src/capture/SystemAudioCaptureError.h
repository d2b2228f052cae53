#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// Why a capture cannot start. Raised by the pipelines and by the permission step before them.
class SystemAudioCaptureError : public LocalizedError
{
public:
    enum class Case {
        noDisplay,
        screenAudioPermissionDenied,
        microphonePermissionDenied,
        microphoneUnavailable,
        speechPermissionDenied, ///< raised by nothing so far
        speechRecognizerUnavailable, ///< raised by nothing so far
    };

    explicit SystemAudioCaptureError(Case errorCase);
    Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace lumaphone
