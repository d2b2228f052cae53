#pragma once

#include <sys/types.h>

#include <optional>

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
/// The program's speech host, if it has one.
std::optional<pid_t> speechHostOf(pid_t program);

} // namespace lumaphone::bench
