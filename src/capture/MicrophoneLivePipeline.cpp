#include "capture/MicrophoneLivePipeline.h"

#include "base/LocalizedError.h"
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
    , m_captureSession(m_capture->makeSession())
{
}

MicrophoneLivePipeline::~MicrophoneLivePipeline()
{
    endCapture();
    m_feed.transcriber().stop();
}

QCoro::Task<bool> MicrophoneLivePipeline::requestMicrophoneAccessIfNeeded(
    std::shared_ptr<MicrophoneCapture> capture)
{
    switch (capture->authorizationStatus()) {
    case CaptureAuthorization::Authorized:
        co_return true;
    case CaptureAuthorization::NotDetermined:
        co_return co_await capture->requestAccess();
    case CaptureAuthorization::Denied:
    case CaptureAuthorization::Restricted:
        co_return false;
    }
    Q_UNREACHABLE();
}

QCoro::Task<> MicrophoneLivePipeline::start()
{
    const auto self = shared_from_this();
    const int attempt = ++m_attempt;
    m_isWanted = true;
    try {
        co_await run(attempt);
    } catch (...) {
        if (attempt == m_attempt) {
            throw;
        }
    }
}

QCoro::Task<> MicrophoneLivePipeline::run(int attempt)
{
    const SystemAudioCaptureError unavailable(SystemAudioCaptureError::Case::microphoneUnavailable);
    const bool granted = co_await requestMicrophoneAccessIfNeeded(m_capture);
    if (!granted) {
        throw SystemAudioCaptureError(SystemAudioCaptureError::Case::microphonePermissionDenied);
    }
    if (attempt != m_attempt) {
        co_return;
    }
    co_await m_feed.transcriber().start(recognitionCandidates(m_sourceLanguage));
    if (attempt != m_attempt) {
        co_return;
    }
    const std::optional<MicrophoneDevice> device = co_await m_capture->defaultDevice();
    if (!device) {
        throw unavailable;
    }
    if (attempt != m_attempt) {
        co_return;
    }
    const auto input = m_capture->makeInput(*device);
    if (!m_captureSession->canAddInput(*input)) {
        throw unavailable;
    }
    const auto output = m_capture->makeOutput();
    output->setSampleBufferDelegate(this, &m_sampleQueue);
    if (!m_captureSession->canAddOutput(*output)) {
        throw unavailable;
    }
    detachOutput();
    m_audioOutput = output;
    replaceInputAndOutput(input, output);
    co_await m_captureSession->startRunning();
    if (attempt != m_attempt && !m_isWanted) {
        endCapture();
    }
}

QCoro::Task<> MicrophoneLivePipeline::stop()
{
    ++m_attempt;
    m_isWanted = false;
    endCapture();
    m_feed.transcriber().stop();
    co_return;
}

void MicrophoneLivePipeline::replaceInputAndOutput(
    const std::shared_ptr<MicrophoneInput> &input, const std::shared_ptr<MicrophoneOutput> &output)
{
    m_captureSession->beginConfiguration();
    removeInputsAndOutputs();
    m_captureSession->addInput(input);
    m_captureSession->addOutput(output);
    m_captureSession->commitConfiguration();
}

void MicrophoneLivePipeline::removeInputsAndOutputs()
{
    for (const auto &input : m_captureSession->inputs()) {
        m_captureSession->removeInput(input);
    }
    for (const auto &output : m_captureSession->outputs()) {
        m_captureSession->removeOutput(output);
    }
}

void MicrophoneLivePipeline::detachOutput()
{
    if (m_audioOutput) {
        m_audioOutput->setSampleBufferDelegate(nullptr, nullptr);
    }
}

void MicrophoneLivePipeline::endCapture()
{
    detachOutput();
    if (m_captureSession->isRunning()) {
        m_captureSession->stopRunning();
    }
    removeInputsAndOutputs();
}

void MicrophoneLivePipeline::didOutputSampleBuffer(const AudioSampleBuffer &buffer)
{
    m_feed.handle(buffer);
    m_feed.watchPace();
}

void MicrophoneLivePipeline::didStopWithError(std::exception_ptr error)
{
    m_feed.fail(QStringLiteral("麥克風擷取已停止：") + localizedDescription(error));
}

} // namespace lumaphone
