#include "capture/MicrophoneLivePipeline.h"

#include "capture/SystemAudioCaptureError.h"

#include <utility>

namespace lumaphone {

std::shared_ptr<MicrophoneLivePipeline> MicrophoneLivePipeline::create(
    AppleSystemSpeechLanguage sourceLanguage, std::shared_ptr<MicrophoneCapture> capture,
    const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent)
{
    return std::shared_ptr<MicrophoneLivePipeline>(
        new MicrophoneLivePipeline(sourceLanguage, std::move(capture), services, std::move(onEvent)));
}

MicrophoneLivePipeline::MicrophoneLivePipeline(AppleSystemSpeechLanguage sourceLanguage,
    std::shared_ptr<MicrophoneCapture> capture, const LivePipelineServices &services,
    SystemAudioPipelineEventHandler onEvent)
    : m_sourceLanguage(sourceLanguage)
    , m_capture(std::move(capture))
    , m_feed(services, std::move(onEvent))
    , m_recorder(m_capture->makeRecorder())
{
}

MicrophoneLivePipeline::~MicrophoneLivePipeline()
{
    m_recorder->stop();
    m_feed.transcriber().stop();
}

QCoro::Task<bool> MicrophoneLivePipeline::requestMicrophoneAccessIfNeeded(
    std::shared_ptr<MicrophoneCapture> capture)
{
    switch (capture->authorizationStatus()) {
    case CaptureAuthorization::authorized:
        co_return true;
    case CaptureAuthorization::notDetermined:
        co_return co_await capture->requestAccess();
    case CaptureAuthorization::denied:
    case CaptureAuthorization::restricted:
        co_return false;
    }
    Q_UNREACHABLE();
}

QCoro::Task<> MicrophoneLivePipeline::start()
{
    return m_attempts.start(shared_from_this(), &MicrophoneLivePipeline::run);
}

QCoro::Task<> MicrophoneLivePipeline::run(int attempt)
{
    const bool granted = co_await requestMicrophoneAccessIfNeeded(m_capture);
    if (!granted) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::microphonePermissionDenied);
    }
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    co_await m_feed.transcriber().start(recognitionCandidates(m_sourceLanguage));
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    const std::optional<SoundDevice> microphone = co_await m_capture->defaultInput();
    if (!microphone) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::microphoneUnavailable);
    }
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    co_await m_recorder->start(
        *microphone, m_sampleQueue, m_feed.receiver(QStringLiteral("麥克風擷取已停止：")));
}

QCoro::Task<> MicrophoneLivePipeline::stop()
{
    m_attempts.begin();
    m_recorder->stop();
    m_feed.transcriber().stop();
    co_return;
}

} // namespace lumaphone
