#pragma once

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>

namespace lumaphone::test {

/// From now on the permissions of files hold for this thread, and for the threads and processes it starts,
/// even if the user is root. False if that cannot be had.
inline bool obeyFilePermissions()
{
    constexpr std::array rights {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH};
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> held {};
    if (::syscall(SYS_capget, &header, held.data()) != 0) {
        return false;
    }
    bool mayLose = true;
    for (const int right : rights) {
        // A program that root starts gets back whatever is in the bounding set.
        const bool isBounding = ::prctl(PR_CAPBSET_READ, right) == 1;
        mayLose = mayLose && (::geteuid() != 0 || !isBounding || ::prctl(PR_CAPBSET_DROP, right) == 0);
        const std::uint32_t kept = ~(1U << static_cast<unsigned>(right));
        held[0].effective &= kept;
        held[0].permitted &= kept;
    }
    return mayLose && ::syscall(SYS_capset, &header, held.data()) == 0;
}

} // namespace lumaphone::test
