#pragma once

#include <QCoroTask>
#include <QEventLoop>

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace lumaphone {

namespace detail {

template<typename T> struct Outcome
{
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;
    std::exception_ptr error;

    bool isThere() const { return value || error; }
};

template<typename T> QCoro::Task<> note(QCoro::Task<T> task, Outcome<T> &outcome, QEventLoop &loop)
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
    loop.quit();
}

} // namespace detail

/// Runs the event loop until `task` has ended; returns its value or throws its exception. QCoro's own
/// waitFor() waits for ever where a task throws.
template<typename T> T runToEnd(QCoro::Task<T> task)
{
    detail::Outcome<T> outcome;
    QEventLoop loop;
    const QCoro::Task<> noting = detail::note(std::move(task), outcome, loop);
    if (!outcome.isThere()) {
        loop.exec();
    }
    if (outcome.error) {
        std::rethrow_exception(outcome.error);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome.value);
    }
}

} // namespace lumaphone
