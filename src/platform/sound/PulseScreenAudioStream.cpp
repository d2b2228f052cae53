#include "platform/sound/PulseScreenAudioStream.h"

#include "platform/sound/PulseMonitorFollower.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

PulseScreenAudioStream::PulseScreenAudioStream(std::shared_ptr<MainQueue> mainQueue, PulseOptions options,
    CaptureDisplay display, const ScreenStreamConfiguration &configuration,
    ScreenAudioStreamDelegate &delegate)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
    , m_display(std::move(display))
    , m_configuration(configuration)
    , m_delegate(delegate)
{
}

PulseScreenAudioStream::~PulseScreenAudioStream()
{
    m_recording.reset();
    m_delivery->detach();
}

void PulseScreenAudioStream::addStreamOutput(
    ScreenAudioStreamOutput &output, SampleBufferType type, SerialQueue &queue)
{
    const Output added {&output, type};
    const bool isTaken = std::any_of(m_outputs.begin(), m_outputs.end(), [&](const Output &other) {
        return other == added || (type == SampleBufferType::Audio && other.type == type);
    });
    if (isTaken) {
        throw CaptureServiceError(QStringLiteral("這個擷取已經有聲音的接收者。"));
    }
    m_outputs.push_back(added);
    if (type == SampleBufferType::Audio) {
        m_delivery->attach(queue, [&output](const AudioSampleBuffer &buffer) {
            output.didOutputSampleBuffer(buffer, SampleBufferType::Audio);
        });
    }
}

void PulseScreenAudioStream::removeStreamOutput(ScreenAudioStreamOutput &output, SampleBufferType type)
{
    const auto found = std::find(m_outputs.begin(), m_outputs.end(), Output {&output, type});
    if (found == m_outputs.end()) {
        throw CaptureServiceError(QStringLiteral("這個接收者不屬於這個擷取。"));
    }
    m_outputs.erase(found);
    if (type == SampleBufferType::Audio) {
        m_delivery->detach();
    }
}

QCoro::Task<> PulseScreenAudioStream::startCapture()
{
    if (m_recording && !m_recording->hasEnded()) {
        throw CaptureServiceError(QStringLiteral("聲音擷取已經在進行中。"));
    }
    m_recording = std::make_unique<RecordingThread>(m_mainQueue, work(),
        [&delegate = m_delegate](std::exception_ptr error) { delegate.didStopWithError(std::move(error)); });
    const Completion<> started = m_recording->started();
    co_await started; // the stream may be gone afterwards
}

QCoro::Task<> PulseScreenAudioStream::stopCapture()
{
    m_outputs.clear();
    m_delivery->detach();
    const std::unique_ptr<RecordingThread> recording = std::move(m_recording);
    if (!recording) {
        co_return;
    }
    recording->requestStop();
    const Completion<> ended = recording->ended();
    co_await ended;
}

RecordingThread::Work PulseScreenAudioStream::work() const
{
    return [options = m_options, sinkName = m_display.id.toStdString(), configuration = m_configuration,
               delivery = m_delivery](const std::stop_token &stop, const std::function<void()> &hasStarted) {
        const pa_sample_spec sampleSpec {PA_SAMPLE_S16NE,
            static_cast<std::uint32_t>(configuration.sampleRateHz),
            static_cast<std::uint8_t>(configuration.channelCount)};
        if (!configuration.capturesAudio || !pa_sample_spec_valid(&sampleSpec)) {
            throw CaptureServiceError(QStringLiteral("擷取的設定裡沒有可以錄製的聲音。"));
        }
        delivery->prepare({static_cast<double>(configuration.sampleRateHz), configuration.channelCount,
            SampleType::Int16, true});
        PulseMonitorFollower follower(options, stop, sampleSpec,
            [delivery](const std::byte *data, std::size_t bytes) { delivery->append(data, bytes); });
        follower.start(sinkName);
        hasStarted();
        follower.follow();
    };
}

} // namespace lumaphone
