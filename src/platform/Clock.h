#pragma once

#include <QCoroTask>
#include <QDateTime>

#include <chrono>

namespace lumaphone {

/// Time as the system sees it. Main thread. Tests drive a virtual one. Telling the time throws nothing.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Wall-clock time, UTC, in milliseconds. May step back.
    virtual QDateTime now() const = 0;
    /// Time on the continuous clock since an arbitrary moment. Never steps back.
    virtual std::chrono::nanoseconds monotonic() const = 0;
    /// Returns after `duration` on the continuous clock; nothing ends it early, so that whoever waits looks
    /// afterwards whether it still wants to go on. Throws if there is no timer to be had.
    virtual QCoro::Task<> sleepFor(std::chrono::nanoseconds duration) = 0;
};

} // namespace lumaphone
