#pragma once

#include "base/MainQueue.h"
#include "platform/MicrophoneCapture.h"
#include "platform/sound/PulseOptions.h"

#include <memory>

namespace lumaphone {

class PulseSourceDirectory;

/// Microphones of a server that speaks the PulseAudio protocol. A device comes from defaultDevice() of the
/// same object, which looks the server's microphones up; makeInput() goes by what was found, less what has
/// gone.
class PulseMicrophoneCapture final : public MicrophoneCapture
{
public:
    explicit PulseMicrophoneCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options = {});
    ~PulseMicrophoneCapture() override;

    CaptureAuthorization authorizationStatus() override;
    /// There is nobody to ask on a Linux desktop: says whether the right is there.
    QCoro::Task<bool> requestAccess() override;
    QCoro::Task<std::optional<MicrophoneDevice>> defaultDevice() override;
    std::shared_ptr<MicrophoneInput> makeInput(const MicrophoneDevice &device) override;
    std::shared_ptr<MicrophoneOutput> makeOutput() override;
    std::unique_ptr<MicrophoneSession> makeSession() override;

private:
    using Directory = std::shared_ptr<const PulseSourceDirectory>;

    std::shared_ptr<MainQueue> m_mainQueue;
    const PulseOptions m_options;
    std::shared_ptr<Directory> m_directory; ///< outlives this object while it is being looked up
};

} // namespace lumaphone
