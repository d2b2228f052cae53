#include "platform/sound/PulseMicrophoneCapture.h"

#include "base/Completion.h"
#include "platform/sound/PulseMicrophoneInput.h"
#include "platform/sound/PulseMicrophoneOutput.h"
#include "platform/sound/PulseMicrophoneSession.h"
#include "platform/sound/PulseSourceDirectory.h"
#include "platform/sound/SoundAccess.h"

#include <utility>

namespace lumaphone {

PulseMicrophoneCapture::PulseMicrophoneCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
    , m_directory(std::make_shared<Directory>())
{
}

PulseMicrophoneCapture::~PulseMicrophoneCapture() = default;

CaptureAuthorization PulseMicrophoneCapture::authorizationStatus()
{
    return mayUseSound(m_options) ? CaptureAuthorization::Authorized : CaptureAuthorization::Denied;
}

QCoro::Task<bool> PulseMicrophoneCapture::requestAccess()
{
    co_return authorizationStatus() == CaptureAuthorization::Authorized;
}

QCoro::Task<std::optional<MicrophoneDevice>> PulseMicrophoneCapture::defaultDevice()
{
    const std::shared_ptr<Directory> known = m_directory;
    const Directory found = co_await runInBackground(m_mainQueue, "sound-inputs",
        [options = m_options] { return Directory(std::make_shared<PulseSourceDirectory>(options)); });
    *known = found;
    const std::optional<PulseSource> &source = found->defaultMicrophone();
    if (!source) {
        co_return std::nullopt;
    }
    co_return MicrophoneDevice {
        QString::fromStdString(source->name), QString::fromStdString(source->description)};
}

std::shared_ptr<MicrophoneInput> PulseMicrophoneCapture::makeInput(const MicrophoneDevice &device)
{
    auto input = std::make_shared<PulseMicrophoneInput>(device, *m_directory);
    if (!input->isPresent()) {
        throw CaptureServiceError(QStringLiteral("麥克風「%1」已經不在了。").arg(device.name));
    }
    return input;
}

std::shared_ptr<MicrophoneOutput> PulseMicrophoneCapture::makeOutput()
{
    return std::make_shared<PulseMicrophoneOutput>();
}

std::unique_ptr<MicrophoneSession> PulseMicrophoneCapture::makeSession()
{
    return std::make_unique<PulseMicrophoneSession>(m_mainQueue, m_options);
}

} // namespace lumaphone
