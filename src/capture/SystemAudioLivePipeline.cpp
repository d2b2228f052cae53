#include "capture/SystemAudioLivePipeline.h"

#include "capture/SystemAudioCaptureError.h"

#include <chrono>
#include <utility>

namespace lumaphone {

using namespace std::chrono_literals;

namespace {

constexpr auto permissionPollInterval = 250ms;
constexpr int permissionPolls = 24;

constexpr SoundFormat captureFormat {.sampleRateHz = 16000, .channelCount = 1};

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
    , m_recorder(m_capture->makeRecorder(captureFormat))
{
}

SystemAudioLivePipeline::~SystemAudioLivePipeline()
{
    m_feed.transcriber().stop();
    m_recorder->stop();
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
    return m_attempts.start(shared_from_this(), &SystemAudioLivePipeline::run);
}

QCoro::Task<> SystemAudioLivePipeline::run(int attempt)
{
    const bool granted = co_await requestScreenCaptureAccessIfNeeded(m_capture, m_clock);
    if (!granted) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::screenAudioPermissionDenied);
    }
    const std::optional<SoundDevice> output = co_await m_capture->defaultOutput();
    if (!output) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::noDisplay);
    }
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    co_await m_feed.transcriber().start(recognitionCandidates(m_sourceLanguage));
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    co_await m_recorder->start(
        *output, m_sampleQueue, m_feed.receiver(QStringLiteral("系統音訊擷取已停止：")));
}

QCoro::Task<> SystemAudioLivePipeline::stop()
{
    m_attempts.begin();
    m_feed.transcriber().stop();
    m_recorder->stop();
    co_return;
}

} // namespace lumaphone
