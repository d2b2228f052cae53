#pragma once

#include <QSocketNotifier>

#include <functional>

namespace lumaphone {

/// Turns the first Ctrl-C, SIGTERM or hang-up into a call on the main thread. The second one ends the process
/// at once, as it would have without this. One object per process.
class TerminationSignals
{
public:
    explicit TerminationSignals(std::function<void()> onTermination);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

private:
    std::function<void()> m_onTermination;
    int m_pipe[2] = {-1, -1};
    QSocketNotifier m_notifier;
};

} // namespace lumaphone
