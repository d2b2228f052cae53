#pragma once

#include "base/MainQueue.h"
#include "platform/ScreenAudioCapture.h"
#include "platform/sound/PulseOptions.h"

#include <memory>

namespace lumaphone {

/// What the computer plays, from a server that speaks the PulseAudio protocol. The dummy output of a server
/// without hardware counts, it plays silence. This program plays no sound, so its own need not be excluded.
class PulseScreenAudioCapture final : public ScreenAudioCapture
{
public:
    explicit PulseScreenAudioCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options = {});

    bool preflightAccess() override;
    /// There is nobody to ask on a Linux desktop.
    void requestAccess() override { }
    /// The first output where the server names no default.
    QCoro::Task<std::optional<SoundDevice>> defaultOutput() override;
    std::unique_ptr<SoundRecorder> makeRecorder(const SoundFormat &format) override;

private:
    std::shared_ptr<MainQueue> m_mainQueue;
    const PulseOptions m_options;
};

} // namespace lumaphone
