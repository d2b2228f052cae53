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

/// QCoro's own waiting never ends if the task has failed before it begins.
template<typename T>
QCoro::Task<> settleInto(QCoro::Task<T> task, std::optional<T> &value, std::exception_ptr &error)
{
    try {
        value = co_await task;
    } catch (...) {
        error = std::current_exception();
    }
}

inline QCoro::Task<> settleInto(QCoro::Task<> task, std::exception_ptr &error)
{
    try {
        co_await task;
    } catch (...) {
        error = std::current_exception();
    }
}

} // namespace detail

/// Runs the event loop until `task` has ended; returns its value or throws its exception.
/// An object, so that an unqualified call does not find QCoro's function of the same name.
inline constexpr auto waitFor = []<typename T>(QCoro::Task<T> task) -> T {
    std::exception_ptr error;
    if constexpr (std::is_void_v<T>) {
        QCoro::waitFor(detail::settleInto(std::move(task), error));
        if (error) {
            std::rethrow_exception(error);
        }
    } else {
        std::optional<T> value;
        QCoro::waitFor(detail::settleInto(std::move(task), value, error));
        if (error) {
            std::rethrow_exception(error);
        }
        return std::move(*value);
    }
};

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
