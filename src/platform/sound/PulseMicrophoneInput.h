#pragma once

#include "platform/MicrophoneCapture.h"
#include "platform/sound/PulseSourceDirectory.h"

#include <memory>
#include <utility>

namespace lumaphone {

/// A microphone by name. Nothing is recorded, nor the device touched, before a session runs.
class PulseMicrophoneInput final : public MicrophoneInput
{
public:
    PulseMicrophoneInput(MicrophoneDevice device, std::shared_ptr<const PulseSourceDirectory> directory)
        : m_device(std::move(device))
        , m_directory(std::move(directory))
    {
    }

    const MicrophoneDevice &device() const { return m_device; }
    bool isPresent() const { return m_directory && m_directory->hasMicrophone(m_device.id.toStdString()); }

private:
    const MicrophoneDevice m_device;
    const std::shared_ptr<const PulseSourceDirectory> m_directory;
};

} // namespace lumaphone
