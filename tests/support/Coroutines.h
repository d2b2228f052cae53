#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QEventLoop>
#include <QTest>

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace lumaphone::test {

namespace detail {

template<typename T> struct Outcome
{
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;
    std::exception_ptr error;
    QEventLoop loop;
};

/// Never throws: an exception would leave the event loop running.
template<typename T> QCoro::Task<> intoOutcome(QCoro::Task<T> task, Outcome<T> &outcome)
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
            outcome.value.emplace();
        } else {
            outcome.value.emplace(co_await task);
        }
    } catch (...) {
        outcome.error = std::current_exception();
    }
    outcome.loop.quit();
}

} // namespace detail

/// Runs the event loop until `task` has ended; returns its value or throws its exception.
template<typename T> T waitFor(QCoro::Task<T> task)
{
    detail::Outcome<T> outcome;
    const QCoro::Task<> waiting = detail::intoOutcome(std::move(task), outcome);
    if (!outcome.value && !outcome.error) {
        outcome.loop.exec();
    }
    if (outcome.error) {
        std::rethrow_exception(outcome.error);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome.value);
    }
}

/// Runs the event loop until `condition` holds. False after ten seconds without it, so that a broken test
/// ends.
template<typename Condition> bool waitUntil(Condition condition, int timeoutMs = 10000)
{
    return QTest::qWaitFor(condition, timeoutMs);
}

/// Runs whatever is ready in the event loop, without waiting for anything.
inline void settle()
{
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

/// The exception of type `Error` that `action` throws, or none.
template<typename Error, typename Action> std::optional<Error> thrownBy(Action action)
{
    try {
        action();
    } catch (const Error &error) {
        return error;
    }
    return std::nullopt;
}

} // namespace lumaphone::test
