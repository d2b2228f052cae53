#pragma once

#include "base/MainQueue.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/StartAttempts.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "session/CaptureAccess.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <exception>
#include <functional>
#include <memory>
#include <variant>

namespace lumaphone {

/// What a capture asks of its session, each when it comes to it. Main thread.
struct SessionCapturePlan
{
    std::function<LumaphoneAudioInputSource()> source;
    /// Whether there is anything to start for, once access is granted.
    std::function<bool()> isReady;
    /// The handler may be called on any thread.
    std::function<std::shared_ptr<LumaphoneLiveAudioPipeline>(
        LumaphoneAudioInputSource source, SystemAudioPipelineEventHandler onEvent)>
        makePipeline;
};

/// Brings a session to capture, from the question for access to the running pipeline, and back. What belongs
/// to a beginning that was ended, also what its pipeline still reports, is void. Main thread.
class SessionCapture final : public QObject
{
    Q_OBJECT

public:
    SessionCapture(CaptureAccess access, std::shared_ptr<MainQueue> mainQueue, SessionCapturePlan plan);
    /// As end(), but tells nobody.
    ~SessionCapture() override;

    bool isIdle() const { return std::holds_alternative<Idle>(m_state); }
    /// From begin() until the pipeline captures or begin() has failed.
    bool isStarting() const { return std::holds_alternative<Starting>(m_state); }
    bool isRunning() const { return std::holds_alternative<Running>(m_state); }

    /// Asks for the right to capture the computer's sound, unless it is there. Returns at once; every step is
    /// said.
    void requestSystemAudioAccess();
    /// Returns at once; only while idle.
    void begin();
    /// Idle at once; the pipeline stops by itself.
    void end();

signals:
    void isStartingChanged();
    void isRunningChanged();
    void said(const QString &status);
    /// After isRunningChanged().
    void began();
    /// The session was not ready, or an error has come. Whoever hears of either is to call end().
    void foundNotReady();
    void failed(const std::exception_ptr &error);
    void reported(const SystemAudioPipelineEvent &event);

private:
    struct Idle
    {
    };
    struct Starting
    {
        std::shared_ptr<LumaphoneLiveAudioPipeline> pipeline; ///< none while access is asked for
    };
    struct Running
    {
        std::shared_ptr<LumaphoneLiveAudioPipeline> pipeline;
    };
    using State = std::variant<Idle, Starting, Running>;

    static QCoro::Task<> start(QPointer<SessionCapture> self, int attempt);
    /// The capture, if it is still there and that attempt has not ended.
    static SessionCapture *wanting(const QPointer<SessionCapture> &self, int attempt);
    /// Brings a pipeline's events to the main thread.
    SystemAudioPipelineEventHandler eventHandler(int attempt);
    std::shared_ptr<LumaphoneLiveAudioPipeline> pipeline() const;
    void enter(State state);

    const CaptureAccess m_access;
    const std::shared_ptr<MainQueue> m_mainQueue;
    const SessionCapturePlan m_plan;
    StartAttempts m_attempts;
    State m_state;
};

} // namespace lumaphone
