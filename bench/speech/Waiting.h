#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <stdexcept>

namespace lumaphone::bench {

/// Why a measurement cannot go on, for the person who asked for it.
class BenchError : public std::runtime_error
{
public:
    explicit BenchError(const QString &message)
        : std::runtime_error(message.toStdString())
    {
    }
};

/// From now on Ctrl-C and its like end the waiting below with a BenchError, so that all that was started is
/// ended and all temporary files are removed.
void handleInterruption();

/// Tells the person who waits what is being measured, on standard error.
void tellProgress(const QString &step);

/// Runs the event loop until `condition` holds. False if `limit` passes first.
bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit);
/// Runs the event loop for that long.
void waitFor(std::chrono::milliseconds duration);

} // namespace lumaphone::bench
