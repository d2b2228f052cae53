#pragma once

#include "base/MainQueue.h"
#include "platform/MicrophoneCapture.h"
#include "platform/sound/PulseOptions.h"

#include <memory>

namespace lumaphone {

/// Microphones of a server that speaks the PulseAudio protocol.
class PulseMicrophoneCapture final : public MicrophoneCapture
{
public:
    explicit PulseMicrophoneCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options = {});

    CaptureAuthorization authorizationStatus() override;
    /// There is nobody to ask on a Linux desktop: says whether the right is there.
    QCoro::Task<bool> requestAccess() override;
    QCoro::Task<std::optional<SoundDevice>> defaultInput() override;
    std::unique_ptr<SoundRecorder> makeRecorder() override;

private:
    std::shared_ptr<MainQueue> m_mainQueue;
    const PulseOptions m_options;
};

} // namespace lumaphone
