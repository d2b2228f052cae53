#include "bench/speech/Waiting.h"

#include <QEventLoop>
#include <QTimer>

#include <csignal>
#include <cstdio>

namespace lumaphone::bench {

namespace {

constexpr std::chrono::milliseconds pollInterval(10);

volatile std::sig_atomic_t isInterrupted = 0;

} // namespace

void handleInterruption()
{
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        const auto former = std::signal(signalNumber, [](int) { isInterrupted = 1; });
        // What the parent had switched off, such as a hang-up under nohup, stays off.
        if (former == SIG_IGN) {
            std::signal(signalNumber, SIG_IGN);
        }
    }
}

void tellProgress(const QString &step)
{
    std::fprintf(stderr, "%s ...\n", qUtf8Printable(step));
}

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    bool holds = condition();
    if (!holds) {
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            holds = condition();
            if (holds || isInterrupted != 0 || std::chrono::steady_clock::now() >= end) {
                loop.quit();
            }
        });
        poll.start(pollInterval);
        loop.exec();
    }
    if (isInterrupted != 0) {
        throw BenchError(QStringLiteral("Interrupted."));
    }
    return holds;
}

void waitFor(std::chrono::milliseconds duration)
{
    waitUntil([] { return false; }, duration);
}

} // namespace lumaphone::bench
