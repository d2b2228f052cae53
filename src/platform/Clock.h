#pragma once

#include <QCoroTask>
#include <QDateTime>

#include <chrono>

namespace lumaphone {

/// Time as the system sees it. Main thread. Tests drive a virtual one.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Wall-clock time, UTC, in milliseconds. May step back.
    virtual QDateTime now() const = 0;
    /// Time on the continuous clock since an arbitrary moment. Never steps back.
    virtual std::chrono::nanoseconds monotonic() const = 0;
    /// Returns after `duration` on the continuous clock.
    virtual QCoro::Task<> sleepFor(std::chrono::nanoseconds duration) = 0;
};

} // namespace lumaphone
