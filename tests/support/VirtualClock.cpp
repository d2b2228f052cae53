#include "support/VirtualClock.h"

#include "support/Coroutines.h"

#include <QTimeZone>

#include <algorithm>
#include <coroutine>

namespace lumaphone::test {

struct VirtualClock::Sleeper
{
    std::chrono::nanoseconds wakeAt;
    int order;
    std::coroutine_handle<> waiting;
};

struct VirtualClock::Awaiter
{
    std::shared_ptr<Sleeper> sleeper;

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> waiting) const { sleeper->waiting = waiting; }
    void await_resume() const { }
};

QDateTime VirtualClock::now() const
{
    static const QDateTime beginning(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());
    return beginning.addMSecs(
        std::chrono::floor<std::chrono::milliseconds>(m_elapsed).count() + m_wallStep.count());
}

QCoro::Task<> VirtualClock::sleepFor(std::chrono::nanoseconds duration)
{
    auto sleeper = std::make_shared<Sleeper>(Sleeper {m_elapsed + duration, m_sleepCount++, nullptr});
    m_sleepers.push_back(sleeper);
    // With a name: the compiler destroys an aggregate twice that is made in the awaiting expression.
    const Awaiter awaiter {sleeper};
    co_await awaiter;
}

void VirtualClock::advance(std::chrono::nanoseconds duration)
{
    const std::chrono::nanoseconds target = m_elapsed + duration;
    settle();
    for (;;) {
        const auto first
            = std::min_element(m_sleepers.begin(), m_sleepers.end(), [](const auto &a, const auto &b) {
                  return std::pair(a->wakeAt, a->order) < std::pair(b->wakeAt, b->order);
              });
        if (first == m_sleepers.end() || (*first)->wakeAt > target) {
            break;
        }
        const std::shared_ptr<Sleeper> sleeper = *first;
        m_sleepers.erase(first);
        m_elapsed = std::max(m_elapsed, sleeper->wakeAt);
        sleeper->waiting.resume();
        settle();
    }
    m_elapsed = target;
}

} // namespace lumaphone::test
