#pragma once

#include "platform/SoundRecorder.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace lumaphone {

/// The service that records what the computer plays. Main thread. Its recorders may outlive it.
class ScreenAudioCapture
{
public:
    virtual ~ScreenAudioCapture() = default;
    /// Whether this process may record the computer's sound, without asking anybody. Throws nothing.
    virtual bool preflightAccess() = 0;
    /// Asks the user for that right and returns at once; the answer shows in preflightAccess().
    /// Throws nothing.
    virtual void requestAccess() = 0;
    /// The output that is heard now, or none if there is no output at all. Throws CaptureServiceError if the
    /// service does not answer.
    virtual QCoro::Task<std::optional<SoundDevice>> defaultOutput() = 0;
    /// Records outputs, beginning with the one it is given and going along when another becomes the default.
    /// The sound of this program itself is not recorded. Never null; records nothing yet.
    virtual std::unique_ptr<SoundRecorder> makeRecorder(const SoundFormat &format) = 0;
};

} // namespace lumaphone
