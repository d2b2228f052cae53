#pragma once

#include "base/Completion.h"

#include <exception>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>

namespace lumaphone {

/// A thread that opens a recording, keeps it running and closes it. Made and asked on the main thread.
class RecordingThread
{
public:
    /// Records until `stop` is requested or an error, which it throws. Calls `hasStarted` when sound flows.
    using Work = std::function<void(const std::stop_token &stop, const std::function<void()> &hasStarted)>;
    using FailureHandler = std::function<void(std::exception_ptr error)>;

    /// `onFailure` is called on this thread, at most once, when a started recording ends by itself.
    RecordingThread(std::shared_ptr<MainQueue> mainQueue, Work work, FailureHandler onFailure);
    /// Stops the recording and returns when the device is free, which no server can delay.
    ~RecordingThread();
    RecordingThread(const RecordingThread &) = delete;
    RecordingThread &operator=(const RecordingThread &) = delete;

    /// Resolved when sound flows; fails with the reason if it never will.
    Completion<> started();
    bool hasEnded() const;

private:
    struct State;

    std::shared_ptr<MainQueue> m_mainQueue;
    std::shared_ptr<State> m_state;
    std::jthread m_thread;
};

} // namespace lumaphone
