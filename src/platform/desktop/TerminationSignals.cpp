#include "platform/desktop/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace lumaphone {

namespace {

constexpr std::array watchedSignals {SIGINT, SIGTERM, SIGHUP};
std::atomic<int> writingEnd {-1};
std::atomic<int> received {0};

// Runs in a signal handler: only async-signal-safe calls.
void notify(int signalNumber)
{
    const int savedErrno = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(writingEnd.load(), &byte, 1);
    // Who asks twice is in a hurry; who asks again is not heard.
    if (++received > 1) {
        ::signal(signalNumber, SIG_DFL);
    }
    errno = savedErrno;
}

int openPipe(int (&ends)[2])
{
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        qFatal("Cannot make a pipe for signals");
    }
    return ends[0];
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onTermination)
    : m_onTermination(std::move(onTermination))
    , m_notifier(openPipe(m_pipe), QSocketNotifier::Read)
{
    writingEnd = m_pipe[1];
    received = 0;
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
        char byte = 0;
        if (::read(m_pipe[0], &byte, 1) == 1) {
            m_onTermination();
        }
    });
    for (const int signalNumber : watchedSignals) {
        // What the parent had switched off, such as a hang-up under nohup, stays off.
        if (::signal(signalNumber, notify) == SIG_IGN) {
            ::signal(signalNumber, SIG_IGN);
        }
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int signalNumber : watchedSignals) {
        ::signal(signalNumber, SIG_DFL);
    }
    writingEnd = -1;
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

} // namespace lumaphone
