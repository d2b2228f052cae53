#include "platform/sound/PulseScreenAudioCapture.h"

#include "base/Completion.h"
#include "platform/sound/PulseConnection.h"
#include "platform/sound/PulseMonitorFollower.h"
#include "platform/sound/SoundAccess.h"
#include "platform/sound/ThreadedSoundRecorder.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

std::optional<SoundDevice> findDefaultOutput(const PulseOptions &options)
{
    PulseConnection connection(options, {});
    const std::string defaultName = connection.defaultSinkName();
    const std::vector<PulseSink> sinks = connection.sinks();
    if (sinks.empty()) {
        return std::nullopt;
    }
    const auto named = std::find_if(
        sinks.begin(), sinks.end(), [&](const PulseSink &sink) { return sink.name == defaultName; });
    const PulseSink &sink = named == sinks.end() ? sinks.front() : *named;
    return SoundDevice {QString::fromStdString(sink.name), QString::fromStdString(sink.description)};
}

void recordOutput(const PulseOptions &options, const SoundFormat &format, const SoundDevice &output,
    CaptureDelivery &delivery, const std::stop_token &stop, const std::function<void()> &hasStarted)
{
    const pa_sample_spec sampleSpec {PA_SAMPLE_S16NE, static_cast<std::uint32_t>(format.sampleRateHz),
        static_cast<std::uint8_t>(format.channelCount)};
    if (!pa_sample_spec_valid(&sampleSpec)) {
        throw CaptureServiceError(QStringLiteral("擷取的設定裡沒有可以錄製的聲音。"));
    }
    delivery.prepare(
        {static_cast<double>(format.sampleRateHz), format.channelCount, SampleType::int16, true});
    PulseMonitorFollower follower(
        options, stop, sampleSpec,
        [&delivery](const std::byte *data, std::size_t bytes) { delivery.append(data, bytes); },
        [&delivery](const std::optional<QString> &name) { delivery.await(name); });
    follower.start(output.id.toStdString());
    hasStarted();
    follower.follow();
}

} // namespace

PulseScreenAudioCapture::PulseScreenAudioCapture(std::shared_ptr<MainQueue> mainQueue, PulseOptions options)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
{
}

bool PulseScreenAudioCapture::preflightAccess()
{
    return mayUseSound(m_options);
}

QCoro::Task<std::optional<SoundDevice>> PulseScreenAudioCapture::defaultOutput()
{
    return runInBackground(
        m_mainQueue, "sound-outputs", [options = m_options] { return findDefaultOutput(options); });
}

std::unique_ptr<SoundRecorder> PulseScreenAudioCapture::makeRecorder(const SoundFormat &format)
{
    return std::make_unique<ThreadedSoundRecorder>(m_mainQueue,
        [options = m_options, format](const SoundDevice &output, CaptureDelivery &delivery,
            const std::stop_token &stop, const std::function<void()> &hasStarted) {
            recordOutput(options, format, output, delivery, stop, hasStarted);
        });
}

} // namespace lumaphone
