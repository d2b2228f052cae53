// Runs a program that cannot open a network connection: without-network PROGRAM [ARGUMENT...]
// The system refuses every Internet socket to it and to its children. Needs no privileges.
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc < 2) {
        return 2;
    }
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_socket, 0, 4),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_INET, 1, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_INET6, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program {sizeof rules / sizeof *rules, rules};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        std::perror("without-network");
        return 125;
    }
    if (::socket(AF_INET, SOCK_STREAM, 0) >= 0 || ::socket(AF_INET6, SOCK_STREAM, 0) >= 0) {
        std::fputs("without-network: there is a network all the same\n", stderr);
        return 125;
    }
    ::execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    return 127;
}
