#include "platform/desktop/SystemClock.h"

#include <QCoroTimer>
#include <QTimer>

namespace lumaphone {

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTimeUtc();
}

std::chrono::nanoseconds SystemClock::monotonic() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

QCoro::Task<> SystemClock::sleepFor(std::chrono::nanoseconds duration)
{
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.start(std::chrono::ceil<std::chrono::milliseconds>(duration));
    co_await timer;
}

} // namespace lumaphone
