#include "capture/SystemAudioLivePipeline.h"

#include "base/LocalizedError.h"
#include "capture/SystemAudioCaptureError.h"

#include <chrono>
#include <utility>

namespace lumaphone {

using namespace std::chrono_literals;

namespace {

constexpr auto permissionPollInterval = 250ms;
constexpr int permissionPolls = 24;

// A stream cannot be without a picture: the picture is as small and as rare as it can be.
constexpr ScreenStreamConfiguration streamConfiguration {
    .widthPixels = 2,
    .heightPixels = 2,
    .minimumFrameInterval = 1s,
    .queueDepth = 3,
    .showsCursor = false,
    .capturesAudio = true,
    .excludesCurrentProcessAudio = true,
    .sampleRateHz = 16000,
    .channelCount = 1,
};

void removeOutput(ScreenAudioStream &stream, ScreenAudioStreamOutput &output, SampleBufferType type)
{
    try {
        stream.removeStreamOutput(output, type);
    } catch (...) {
        // It was never added, and the stream ends anyway.
    }
}

QCoro::Task<> stopCapture(std::shared_ptr<ScreenAudioStream> stream)
{
    try {
        co_await stream->stopCapture();
    } catch (...) {
        // It was not running any more.
    }
}

} // namespace

std::shared_ptr<SystemAudioLivePipeline> SystemAudioLivePipeline::create(
    AppleSystemSpeechLanguage sourceLanguage, std::shared_ptr<ScreenAudioCapture> capture,
    std::shared_ptr<Clock> clock, const LivePipelineServices &services,
    SystemAudioPipelineEventHandler onEvent)
{
    return std::shared_ptr<SystemAudioLivePipeline>(new SystemAudioLivePipeline(
        sourceLanguage, std::move(capture), std::move(clock), services, std::move(onEvent)));
}

SystemAudioLivePipeline::SystemAudioLivePipeline(AppleSystemSpeechLanguage sourceLanguage,
    std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock,
    const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent)
    : m_sourceLanguage(sourceLanguage)
    , m_capture(std::move(capture))
    , m_clock(std::move(clock))
    , m_feed(services, std::move(onEvent))
{
}

SystemAudioLivePipeline::~SystemAudioLivePipeline()
{
    m_feed.transcriber().stop();
    m_stream = nullptr;
}

QCoro::Task<bool> SystemAudioLivePipeline::requestScreenCaptureAccessIfNeeded(
    std::shared_ptr<ScreenAudioCapture> capture, std::shared_ptr<Clock> clock)
{
    if (capture->preflightAccess()) {
        co_return true;
    }
    capture->requestAccess();
    for (int poll = 0; poll < permissionPolls; ++poll) {
        if (capture->preflightAccess()) {
            co_return true;
        }
        try {
            co_await clock->sleepFor(permissionPollInterval);
        } catch (...) {
            // A sleep that failed counts as slept.
        }
    }
    co_return false;
}

QCoro::Task<> SystemAudioLivePipeline::start()
{
    const auto self = shared_from_this();
    const int attempt = ++m_attempt;
    try {
        co_await run(attempt);
    } catch (...) {
        if (attempt == m_attempt) {
            throw;
        }
    }
}

QCoro::Task<> SystemAudioLivePipeline::run(int attempt)
{
    const bool granted = co_await requestScreenCaptureAccessIfNeeded(m_capture, m_clock);
    if (!granted) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::screenAudioPermissionDenied);
    }
    const ShareableContent content = co_await m_capture->shareableContent(false, true);
    if (content.displays.empty()) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::noDisplay);
    }
    if (attempt != m_attempt) {
        co_return;
    }
    co_await m_feed.transcriber().start(recognitionCandidates(m_sourceLanguage));
    if (attempt != m_attempt) {
        co_return;
    }
    const CaptureContentFilter filter {content.displays.front()};
    const std::shared_ptr<ScreenAudioStream> stream
        = m_capture->makeStream(filter, streamConfiguration, *this);
    m_stream = stream;
    stream->addStreamOutput(*this, SampleBufferType::Screen, m_sampleQueue);
    stream->addStreamOutput(*this, SampleBufferType::Audio, m_sampleQueue);
    co_await stream->startCapture();
    if (attempt != m_attempt) {
        co_await stopCapture(stream);
    }
}

QCoro::Task<> SystemAudioLivePipeline::stop()
{
    const auto self = shared_from_this();
    ++m_attempt;
    m_feed.transcriber().stop();
    const auto stream = std::exchange(m_stream, nullptr);
    if (!stream) {
        co_return;
    }
    removeOutput(*stream, *this, SampleBufferType::Screen);
    removeOutput(*stream, *this, SampleBufferType::Audio);
    co_await stopCapture(stream);
}

void SystemAudioLivePipeline::didOutputSampleBuffer(const AudioSampleBuffer &buffer, SampleBufferType type)
{
    if (type == SampleBufferType::Audio) {
        m_feed.handle(buffer);
        m_feed.watchPace();
    }
}

void SystemAudioLivePipeline::didStopWithError(std::exception_ptr error)
{
    m_feed.fail(QStringLiteral("系統音訊擷取已停止：") + localizedDescription(error));
}

} // namespace lumaphone
