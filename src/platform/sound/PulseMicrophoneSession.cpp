#include "platform/sound/PulseMicrophoneSession.h"

#include "platform/sound/PulseMicrophoneInput.h"
#include "platform/sound/PulseMicrophoneOutput.h"
#include "platform/sound/PulseRecorder.h"

#include <utility>

namespace lumaphone {

namespace {

using Outputs = std::vector<std::shared_ptr<PulseMicrophoneOutput>>;

/// The type nearest to a device's own that loses nothing.
SampleType sampleTypeFor(pa_sample_format_t format)
{
    switch (format) {
    case PA_SAMPLE_U8:
    case PA_SAMPLE_ALAW:
    case PA_SAMPLE_ULAW:
    case PA_SAMPLE_S16LE:
    case PA_SAMPLE_S16BE:
        return SampleType::Int16;
    default:
        return SampleType::Float32;
    }
}

void recordMicrophone(const PulseOptions &options, const MicrophoneDevice &device, const Outputs &outputs,
    const std::stop_token &stop, const std::function<void()> &hasStarted)
{
    PulseConnection connection(options, stop);
    const std::optional<PulseSource> source = connection.source(device.id.toStdString());
    if (!source || source->isMonitor()) {
        throw CaptureServiceError(QStringLiteral("找不到麥克風「%1」。").arg(device.name));
    }
    const SampleType type = sampleTypeFor(source->sampleSpec.format);
    pa_sample_spec sampleSpec = source->sampleSpec;
    sampleSpec.format = type == SampleType::Int16 ? PA_SAMPLE_S16NE : PA_SAMPLE_FLOAT32NE;
    for (const auto &output : outputs) {
        output->delivery()->prepare({static_cast<double>(sampleSpec.rate), sampleSpec.channels, type, true});
    }
    PulseRecorder recorder(
        connection, *source, sampleSpec, [&outputs](const std::byte *data, std::size_t bytes) {
            for (const auto &output : outputs) {
                output->delivery()->append(data, bytes);
            }
        });
    recorder.start();
    hasStarted();
    connection.waitUntil([&recorder] { return recorder.hasEnded(); });
    connection.throwIfLost();
    throw CaptureServiceError(QStringLiteral("麥克風「%1」已中斷連線。").arg(device.name));
}

} // namespace

PulseMicrophoneSession::PulseMicrophoneSession(std::shared_ptr<MainQueue> mainQueue, PulseOptions options)
    : m_mainQueue(std::move(mainQueue))
    , m_options(std::move(options))
{
}

bool PulseMicrophoneSession::canAddInput(const MicrophoneInput &input) const
{
    const auto *microphone = dynamic_cast<const PulseMicrophoneInput *>(&input);
    return microphone && microphone->isPresent();
}

bool PulseMicrophoneSession::canAddOutput(const MicrophoneOutput &output) const
{
    return dynamic_cast<const PulseMicrophoneOutput *>(&output) != nullptr;
}

void PulseMicrophoneSession::beginConfiguration()
{
    m_isConfiguring = true;
}

void PulseMicrophoneSession::commitConfiguration()
{
    m_isConfiguring = false;
    takeEffect();
}

void PulseMicrophoneSession::addInput(std::shared_ptr<MicrophoneInput> input)
{
    m_inputs.push_back(std::move(input));
    m_hasChanged = true;
    takeEffect();
}

void PulseMicrophoneSession::removeInput(const std::shared_ptr<MicrophoneInput> &input)
{
    m_hasChanged |= std::erase(m_inputs, input) > 0;
    takeEffect();
}

void PulseMicrophoneSession::addOutput(std::shared_ptr<MicrophoneOutput> output)
{
    m_outputs.push_back(std::move(output));
    m_hasChanged = true;
    takeEffect();
}

void PulseMicrophoneSession::removeOutput(const std::shared_ptr<MicrophoneOutput> &output)
{
    m_hasChanged |= std::erase(m_outputs, output) > 0;
    takeEffect();
}

void PulseMicrophoneSession::takeEffect()
{
    if (m_hasChanged && !m_isConfiguring) {
        m_recording.reset();
    }
}

QCoro::Task<> PulseMicrophoneSession::startRunning()
{
    if (!isRunning()) {
        m_recording = record();
        m_hasChanged = false;
    }
    const Completion<> started = m_recording->started();
    co_await started; // the session may be gone afterwards
}

bool PulseMicrophoneSession::isRunning() const
{
    return m_recording && !m_recording->hasEnded();
}

void PulseMicrophoneSession::stopRunning()
{
    m_recording.reset();
}

std::unique_ptr<RecordingThread> PulseMicrophoneSession::record() const
{
    Outputs outputs;
    for (const auto &output : m_outputs) {
        if (auto own = std::dynamic_pointer_cast<PulseMicrophoneOutput>(output)) {
            outputs.push_back(std::move(own));
        }
    }
    const auto microphone = m_inputs.empty()
        ? nullptr
        : std::dynamic_pointer_cast<const PulseMicrophoneInput>(m_inputs.front());
    if (!microphone || outputs.empty()) {
        throw CaptureServiceError(QStringLiteral("麥克風的錄音還沒有輸入或接收者。"));
    }
    return std::make_unique<RecordingThread>(
        m_mainQueue,
        [options = m_options, device = microphone->device(), outputs](
            const std::stop_token &stop, const std::function<void()> &hasStarted) {
            recordMicrophone(options, device, outputs, stop, hasStarted);
        },
        [outputs](const std::exception_ptr &error) {
            for (const auto &output : outputs) {
                output->fail(error);
            }
        });
}

} // namespace lumaphone
