#pragma once

#include "base/RunToEnd.h"

#include <QCoreApplication>
#include <QTest>

#include <optional>
#include <utility>

namespace lumaphone::test {

/// Runs the event loop until `task` has ended; returns its value or throws its exception.
template<typename T> T waitFor(QCoro::Task<T> task)
{
    return runToEnd(std::move(task));
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
