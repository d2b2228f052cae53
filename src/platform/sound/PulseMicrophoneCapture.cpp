#include "platform/sound/PulseMicrophoneCapture.h"

#include "base/Completion.h"
#include "platform/sound/PulseConnection.h"
#include "platform/sound/PulseRecorder.h"
#include "platform/sound/SoundAccess.h"
#include "platform/sound/ThreadedSoundRecorder.h"

#include <utility>

namespace lumaphone {

namespace {

std::optional<PulseSource> microphoneNamed(PulseConnection &connection, const std::string &name)
{
    std::optional<PulseSource> source;
    if (!name.empty()) {
        source = connection.source(name);
    }
    const bool isMicrophone = source && source->name == name && !source->isMonitor();
    return isMicrophone ? source : std::nullopt;
}

std::optional<SoundDevice> findDefaultInput(const PulseOptions &options)
{
    PulseConnection connection(options, {});
    const std::optional<PulseSource> source = microphoneNamed(connection, connection.defaultSourceName());
    if (!source) {
        return std::nullopt;
    }
    return SoundDevice {QString::fromStdString(source->name), QString::fromStdString(source->description)};
}

/// The type nearest to a device's own that loses nothing.
SampleType sampleTypeFor(pa_sample_format_t format)
{
    switch (format) {
    case PA_SAMPLE_U8:
    case PA_SAMPLE_ALAW:
    case PA_SAMPLE_ULAW:
    case PA_SAMPLE_S16LE:
    case PA_SAMPLE_S16BE:
        return SampleType::int16;
    default:
        return SampleType::float32;
    }
}

void recordMicrophone(const PulseOptions &options, const SoundDevice &microphone, CaptureDelivery &delivery,
    const std::stop_token &stop, const std::function<void()> &hasStarted)
{
    PulseConnection connection(options, stop);
    const std::optional<PulseSource> source = microphoneNamed(connection, microphone.id.toStdString());
    if (!source) {
        throw CaptureServiceError(QStringLiteral("找不到麥克風「%1」。").arg(microphone.name));
    }
    const SampleType type = sampleTypeFor(source->sampleSpec.format);
    pa_sample_spec sampleSpec = source->sampleSpec;
    sampleSpec.format = type == SampleType::int16 ? PA_SAMPLE_S16NE : PA_SAMPLE_FLOAT32NE;
    delivery.prepare({static_cast<double>(sampleSpec.rate), sampleSpec.channels, type, true});
    PulseRecorder recorder(connection, *source, sampleSpec,
        [&delivery](const std::byte *data, std::size_t bytes) { delivery.append(data, bytes); });
    recorder.start();
    hasStarted();
    connection.waitUntil([&recorder] { return recorder.hasEnded(); });
    connection.throwIfLost();
    throw CaptureServiceError(QStringLiteral("麥克風「%1」已中斷連線。").arg(microphone.name));
}

} // namespace

PulseMicrophoneCapture::PulseMicrophoneCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
{
}

CaptureAuthorization PulseMicrophoneCapture::authorizationStatus()
{
    return mayUseSound(m_options) ? CaptureAuthorization::authorized : CaptureAuthorization::denied;
}

QCoro::Task<bool> PulseMicrophoneCapture::requestAccess()
{
    co_return authorizationStatus() == CaptureAuthorization::authorized;
}

QCoro::Task<std::optional<SoundDevice>> PulseMicrophoneCapture::defaultInput()
{
    return runInBackground(
        m_mainQueue, "sound-inputs", [options = m_options] { return findDefaultInput(options); });
}

std::unique_ptr<SoundRecorder> PulseMicrophoneCapture::makeRecorder()
{
    return std::make_unique<ThreadedSoundRecorder>(m_mainQueue,
        [options = m_options](const SoundDevice &microphone, CaptureDelivery &delivery,
            const std::stop_token &stop, const std::function<void()> &hasStarted) {
            recordMicrophone(options, microphone, delivery, stop, hasStarted);
        });
}

} // namespace lumaphone
