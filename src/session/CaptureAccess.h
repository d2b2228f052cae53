#pragma once

#include "platform/Clock.h"
#include "platform/MicrophoneCapture.h"
#include "platform/ScreenAudioCapture.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>

namespace lumaphone {

/// Asks for the right to capture a source of sound before a session starts. Main thread.
class CaptureAccess
{
public:
    CaptureAccess(std::shared_ptr<ScreenAudioCapture> screenAudio,
        std::shared_ptr<MicrophoneCapture> microphone, std::shared_ptr<Clock> clock);

    /// Whether access is granted; waits about six seconds for the answer about the computer's sound.
    /// `sayStatus` is given a text for the user with every step.
    QCoro::Task<bool> request(
        LumaphoneAudioInputSource source, std::function<void(const QString &)> sayStatus) const;

private:
    std::shared_ptr<ScreenAudioCapture> m_screenAudio;
    std::shared_ptr<MicrophoneCapture> m_microphone;
    std::shared_ptr<Clock> m_clock;
};

} // namespace lumaphone
