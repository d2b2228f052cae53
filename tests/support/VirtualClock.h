#pragma once

#include "platform/Clock.h"

#include <memory>
#include <vector>

namespace lumaphone::test {

/// A clock that stands still until it is told to go on. Main thread.
class VirtualClock final : public Clock
{
public:
    QDateTime now() const override;
    std::chrono::nanoseconds monotonic() const override { return m_elapsed; }
    QCoro::Task<> sleepFor(std::chrono::nanoseconds duration) override;

    /// Moves both clocks on and wakes sleepers in the order of their times, running the event loop after
    /// each.
    void advance(std::chrono::nanoseconds duration);
    /// Moves the wall clock alone, in either direction.
    void stepWallClock(std::chrono::milliseconds step) { m_wallStep += step; }
    std::size_t sleepers() const { return m_sleepers.size(); }
    /// Number of sleeps begun so far.
    int sleepCount() const { return m_sleepCount; }

private:
    struct Sleeper;
    struct Awaiter;

    std::chrono::nanoseconds m_elapsed {0};
    std::chrono::milliseconds m_wallStep {0};
    std::vector<std::shared_ptr<Sleeper>> m_sleepers;
    int m_sleepCount = 0;
};

} // namespace lumaphone::test
