#pragma once

#include "platform/SoundRecorder.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace lumaphone {

enum class CaptureAuthorization { notDetermined, restricted, denied, authorized };

/// The service that records microphones. Main thread. Its recorders may outlive it.
class MicrophoneCapture
{
public:
    virtual ~MicrophoneCapture() = default;
    /// Whether this process may record microphones, without asking anybody. Throws nothing.
    virtual CaptureAuthorization authorizationStatus() = 0;
    /// Asks the user and returns the answer. Throws nothing.
    virtual QCoro::Task<bool> requestAccess() = 0;
    /// The current default input, or none. What records an output is not a microphone. Throws
    /// CaptureServiceError if the service does not answer.
    virtual QCoro::Task<std::optional<SoundDevice>> defaultInput() = 0;
    /// Records a microphone in its own rate and channels, and never leaves it. Never null; records nothing
    /// yet.
    virtual std::unique_ptr<SoundRecorder> makeRecorder() = 0;
};

} // namespace lumaphone
