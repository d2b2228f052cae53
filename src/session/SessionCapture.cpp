#include "session/SessionCapture.h"

#include "capture/SystemAudioCaptureError.h"
#include "session/SessionTexts.h"

#include <utility>

namespace lumaphone {

namespace {

QCoro::Task<> stopAndDrop(std::shared_ptr<LumaphoneLiveAudioPipeline> pipeline)
{
    co_await pipeline->stop();
}

SystemAudioCaptureError permissionDenied(LumaphoneAudioInputSource source)
{
    using Case = SystemAudioCaptureError::Case;
    return SystemAudioCaptureError(source == LumaphoneAudioInputSource::microphone
            ? Case::microphonePermissionDenied
            : Case::screenAudioPermissionDenied);
}

} // namespace

SessionCapture::SessionCapture(
    CaptureAccess access, std::shared_ptr<MainQueue> mainQueue, SessionCapturePlan plan)
    : m_access(std::move(access))
    , m_mainQueue(std::move(mainQueue))
    , m_plan(std::move(plan))
{
}

SessionCapture::~SessionCapture()
{
    if (const auto running = pipeline()) {
        stopAndDrop(running);
    }
}

void SessionCapture::requestSystemAudioAccess()
{
    const auto sayStatus = [self = QPointer(this)](const QString &status) {
        // Looked at once: a compiler takes it for two pointers otherwise.
        if (auto *const alive = self.data()) {
            emit alive->said(status);
        }
    };
    m_access.request(LumaphoneAudioInputSource::systemAudio, sayStatus);
}

void SessionCapture::begin()
{
    enter(Starting {});
    QMetaObject::invokeMethod(
        this, [this, attempt = m_attempts.begin()] { start(this, attempt); }, Qt::QueuedConnection);
}

void SessionCapture::end()
{
    const auto dropped = pipeline();
    m_attempts.begin();
    if (dropped) {
        stopAndDrop(dropped);
    }
    enter(Idle {});
}

SessionCapture *SessionCapture::wanting(const QPointer<SessionCapture> &self, int attempt)
{
    SessionCapture *capture = self.data();
    return capture && capture->m_attempts.isLatest(attempt) && !capture->isIdle() ? capture : nullptr;
}

QCoro::Task<> SessionCapture::start(QPointer<SessionCapture> self, int attempt)
{
    std::exception_ptr failure;
    try {
        auto *capture = wanting(self, attempt);
        if (!capture) {
            co_return;
        }
        const LumaphoneAudioInputSource source = capture->m_plan.source();
        const auto sayStatus = [self, attempt](const QString &status) {
            if (auto *stillWanting = wanting(self, attempt)) {
                emit stillWanting->said(status);
            }
        };
        const CaptureAccess access = capture->m_access;
        const bool isGranted = co_await access.request(source, sayStatus);
        capture = wanting(self, attempt);
        if (!capture) {
            co_return;
        }
        if (!isGranted) {
            throw permissionDenied(source);
        }
        if (!capture->m_plan.isReady()) {
            emit capture->foundNotReady();
            co_return;
        }
        const auto pipeline = capture->m_plan.makePipeline(source, capture->eventHandler(attempt));
        capture->enter(Starting {pipeline});
        emit capture->said(texts::preparing(source));
        co_await pipeline->start();
        capture = wanting(self, attempt);
        if (capture) {
            capture->enter(Running {pipeline});
            emit capture->began();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (auto *capture = failure ? wanting(self, attempt) : nullptr) {
        emit capture->failed(failure);
    }
}

SystemAudioPipelineEventHandler SessionCapture::eventHandler(int attempt)
{
    return [queue = m_mainQueue, self = QPointer(this), attempt](const SystemAudioPipelineEvent &event) {
        queue->post([self, attempt, event] {
            if (auto *capture = wanting(self, attempt)) {
                emit capture->reported(event);
            }
        });
    };
}

std::shared_ptr<LumaphoneLiveAudioPipeline> SessionCapture::pipeline() const
{
    if (const auto *starting = std::get_if<Starting>(&m_state)) {
        return starting->pipeline;
    }
    if (const auto *running = std::get_if<Running>(&m_state)) {
        return running->pipeline;
    }
    return nullptr;
}

void SessionCapture::enter(State state)
{
    const bool wasRunning = isRunning();
    const bool wasStarting = isStarting();
    m_state = std::move(state);
    if (wasStarting != isStarting()) {
        emit isStartingChanged();
    }
    if (wasRunning != isRunning()) {
        emit isRunningChanged();
    }
}

} // namespace lumaphone
