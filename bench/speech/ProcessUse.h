#pragma once

#include <QByteArray>

#include <sys/types.h>

#include <optional>
#include <vector>

namespace lumaphone::bench {

struct ProcessMemory
{
    double residentMB = 0;
    double peakMB = 0;
};

// What /proc tells of a process. One that has ended used nothing.

ProcessMemory memoryOf(pid_t process);
/// Of the process alone.
double cpuSecondsOf(pid_t process);
/// With all that it has started, also what has ended since.
double cpuSecondsWithChildren(pid_t process);
/// A process, told from others that have had its number.
struct KnownProcess
{
    pid_t id;
    QByteArray name; ///< its first 15 characters
    QByteArray startTime;
};

/// All that a process has started, and what that has started.
std::vector<KnownProcess> descendantsOf(pid_t process);
bool isRunning(const KnownProcess &process);
/// The program's speech host, if it has one.
std::optional<pid_t> speechHostOf(pid_t program);

} // namespace lumaphone::bench
