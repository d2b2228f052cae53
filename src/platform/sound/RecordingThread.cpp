#include "platform/sound/RecordingThread.h"

#include "platform/CaptureServiceError.h"

#include <mutex>
#include <utility>
#include <vector>

namespace lumaphone {

/// Where the recording stands, and who waits to hear of it.
struct RecordingThread::State
{
    mutable std::mutex mutex;
    bool hasStarted = false;
    bool hasEnded = false;
    std::exception_ptr error;
    std::vector<Completion<>> waitForStart;

    void start()
    {
        const std::lock_guard lock(mutex);
        hasStarted = true;
        for (const auto &waiting : std::exchange(waitForStart, {})) {
            waiting.resolve();
        }
    }

    /// Whether it had started.
    bool fail(const std::exception_ptr &reason)
    {
        const std::lock_guard lock(mutex);
        hasEnded = true;
        error = reason;
        for (const auto &waiting : std::exchange(waitForStart, {})) {
            waiting.fail(reason);
        }
        return hasStarted;
    }
};

RecordingThread::RecordingThread(std::shared_ptr<MainQueue> mainQueue, Work work, FailureHandler onFailure)
    : m_mainQueue(std::move(mainQueue))
    , m_state(std::make_shared<State>())
    , m_thread([state = m_state, work = std::move(work), onFailure = std::move(onFailure)](
                   const std::stop_token &stop) {
        nameCurrentThread("sound-capture");
        std::exception_ptr error;
        try {
            work(stop, [&state] { state->start(); });
            error = std::make_exception_ptr(CaptureServiceError(QStringLiteral("聲音擷取已結束。")));
        } catch (...) {
            error = std::current_exception();
        }
        const bool hadStarted = state->fail(error);
        if (hadStarted && !stop.stop_requested()) {
            onFailure(error);
        }
    })
{
}

RecordingThread::~RecordingThread() = default;

Completion<> RecordingThread::started()
{
    Completion<> completion(m_mainQueue);
    const std::lock_guard lock(m_state->mutex);
    if (m_state->hasEnded) {
        completion.fail(m_state->error);
    } else if (m_state->hasStarted) {
        completion.resolve();
    } else {
        m_state->waitForStart.push_back(completion);
    }
    return completion;
}

bool RecordingThread::hasEnded() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->hasEnded;
}

} // namespace lumaphone
