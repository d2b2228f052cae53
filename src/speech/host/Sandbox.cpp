#include "speech/host/Sandbox.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>
#include <stdexcept>

namespace lumaphone::host {

namespace {

constexpr int niceness = 5;

void forbid(int resource)
{
    const rlimit none {0, 0};
    ::setrlimit(static_cast<__rlimit_resource>(resource), &none);
}

class Filter
{
public:
    Filter()
        : m_context(::seccomp_init(SCMP_ACT_ALLOW), &::seccomp_release)
    {
        require(m_context ? 0 : -ENOMEM);
    }

    void deny(int call, int error = EPERM)
    {
        require(::seccomp_rule_add(m_context.get(), SCMP_ACT_ERRNO(error), call, 0));
    }

    /// Where argument `index` has any of the bits `value` under `mask`.
    void denyFlags(int call, unsigned index, unsigned mask, unsigned value)
    {
        const scmp_arg_cmp comparison {index, SCMP_CMP_MASKED_EQ, mask, value};
        require(::seccomp_rule_add_array(m_context.get(), SCMP_ACT_ERRNO(EPERM), call, 1, &comparison));
    }

    /// Where argument `index` lacks the bit.
    void denyWithout(int call, unsigned index, unsigned bit) { denyFlags(call, index, bit, 0); }

    void load() { require(::seccomp_load(m_context.get())); }

private:
    static void require(int result)
    {
        if (result < 0) {
            throw std::runtime_error("the host cannot confine itself");
        }
    }

    std::unique_ptr<void, void (*)(scmp_filter_ctx)> m_context;
};

void denyWriting(Filter &filter)
{
    constexpr unsigned writing[] = {O_WRONLY, O_RDWR};
    for (const unsigned mode : writing) {
        filter.denyFlags(SCMP_SYS(open), 1, O_ACCMODE, mode);
        filter.denyFlags(SCMP_SYS(openat), 2, O_ACCMODE, mode);
    }
    for (const unsigned flag : {unsigned(O_CREAT), unsigned(O_TRUNC)}) {
        filter.denyFlags(SCMP_SYS(open), 1, flag, flag);
        filter.denyFlags(SCMP_SYS(openat), 2, flag, flag);
    }
    // Its flags lie in memory, where a filter cannot look; callers fall back to openat.
    filter.deny(SCMP_SYS(openat2), ENOSYS);
    for (const int call : {SCMP_SYS(creat), SCMP_SYS(truncate), SCMP_SYS(unlink), SCMP_SYS(unlinkat),
             SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2), SCMP_SYS(mkdir), SCMP_SYS(mkdirat),
             SCMP_SYS(rmdir), SCMP_SYS(link), SCMP_SYS(linkat), SCMP_SYS(symlink), SCMP_SYS(symlinkat),
             SCMP_SYS(mknod), SCMP_SYS(mknodat), SCMP_SYS(chmod), SCMP_SYS(fchmod), SCMP_SYS(fchmodat),
             SCMP_SYS(chown), SCMP_SYS(fchown), SCMP_SYS(lchown), SCMP_SYS(fchownat), SCMP_SYS(setxattr),
             SCMP_SYS(lsetxattr), SCMP_SYS(fsetxattr), SCMP_SYS(mount), SCMP_SYS(umount2)}) {
        filter.deny(call);
    }
}

void denyNetwork(Filter &filter)
{
    for (const int call : {SCMP_SYS(socket), SCMP_SYS(socketpair), SCMP_SYS(connect), SCMP_SYS(bind),
             SCMP_SYS(listen), SCMP_SYS(accept), SCMP_SYS(accept4), SCMP_SYS(io_uring_setup)}) {
        filter.deny(call);
    }
}

void denyOtherProcesses(Filter &filter)
{
    for (const int call : {SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork),
             SCMP_SYS(ptrace), SCMP_SYS(process_vm_readv), SCMP_SYS(process_vm_writev), SCMP_SYS(kill),
             SCMP_SYS(pidfd_open), SCMP_SYS(unshare), SCMP_SYS(setns), SCMP_SYS(bpf), SCMP_SYS(keyctl)}) {
        filter.deny(call);
    }
    // Threads are made with clone(); clone3() hides its flags.
    filter.denyWithout(SCMP_SYS(clone), 0, CLONE_THREAD);
    filter.deny(SCMP_SYS(clone3), ENOSYS);
}

} // namespace

bool Sandbox::bindTo(int parent, int socket)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        return false;
    }
    ::setpriority(PRIO_PROCESS, 0, niceness);
    ::prctl(PR_SET_DUMPABLE, 0);
    forbid(RLIMIT_CORE);
    ::close_range(static_cast<unsigned>(socket) + 1, ~0U, 0);
    return true;
}

void Sandbox::close()
{
    forbid(RLIMIT_FSIZE);
    Filter filter;
    denyWriting(filter);
    denyNetwork(filter);
    denyOtherProcesses(filter);
    filter.load();
}

} // namespace lumaphone::host
