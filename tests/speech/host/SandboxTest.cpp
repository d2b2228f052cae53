#include "speech/host/Sandbox.h"

#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <thread>

namespace sandboxtest {

using lumaphone::host::Sandbox;

namespace {

constexpr int succeeded = 0;
constexpr int refused = 1;
constexpr int otherwise = 2;

/// What an operation answers in a confined process.
int confined(const std::function<int()> &operation)
{
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            Sandbox::close();
            const int result = operation();
            ::_exit(result >= 0 ? succeeded : errno == EPERM ? refused : otherwise);
        } catch (...) {
            ::_exit(99);
        }
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

class SandboxTest : public QObject
{
    Q_OBJECT

private slots:
    void whatAHostDoesNotNeedIsRefused_data()
    {
        QTest::addColumn<std::function<int()>>("operation");
        QTest::addColumn<int>("expected");
        const auto row = [](const char *name, int expected, std::function<int()> operation) {
            QTest::newRow(name) << std::move(operation) << expected;
        };
        const std::string folder = m_folder.path().toStdString();
        const std::string file = folder + "/file";
        QFile(QString::fromStdString(file)).open(QIODevice::WriteOnly);
        row("read a file", succeeded, [file] { return ::open(file.c_str(), O_RDONLY); });
        row("map memory", succeeded, [] {
            return ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                    == MAP_FAILED
                ? -1
                : 0;
        });
        row("start a thread", succeeded, [] {
            int value = -1;
            std::thread([&value] { value = 0; }).join();
            return value;
        });
        row("write to a file", refused, [file] { return ::open(file.c_str(), O_WRONLY); });
        row("read and write", refused, [file] { return ::open(file.c_str(), O_RDWR); });
        row("create a file", refused,
            [folder] { return ::open((folder + "/new").c_str(), O_RDONLY | O_CREAT, 0600); });
        row("empty a file", refused, [file] { return ::open(file.c_str(), O_RDONLY | O_TRUNC); });
        row("remove a file", refused, [file] { return ::unlink(file.c_str()); });
        row("rename a file", refused, [file] { return ::rename(file.c_str(), (file + "2").c_str()); });
        row("make a folder", refused, [folder] { return ::mkdir((folder + "/sub").c_str(), 0700); });
        row("change permissions", refused, [file] { return ::chmod(file.c_str(), 0777); });
        row("internet", refused, [] { return ::socket(AF_INET, SOCK_STREAM, 0); });
        row("internet, newer", refused, [] { return ::socket(AF_INET6, SOCK_DGRAM, 0); });
        row("local sockets", refused, [] { return ::socket(AF_UNIX, SOCK_STREAM, 0); });
        row("start a process", refused, [] { return ::fork(); });
        row("run a program", refused, [] { return ::execl("/bin/true", "true", nullptr); });
        row("signal another process", refused, [] { return ::kill(::getppid(), 0); });
    }
    void whatAHostDoesNotNeedIsRefused()
    {
        QFETCH(std::function<int()>, operation);
        QFETCH(int, expected);
        QCOMPARE(confined(operation), expected);
    }

    void aBoundProcessYieldsAndLeavesNoCore()
    {
        const pid_t parent = ::getpid();
        const pid_t child = ::fork();
        if (child == 0) {
            rlimit core {1, 1};
            const bool isBound = Sandbox::bindTo(parent, 3);
            ::getrlimit(RLIMIT_CORE, &core);
            int signal = 0;
            ::prctl(PR_GET_PDEATHSIG, &signal);
            const bool isClosed = ::fcntl(9, F_GETFD) == -1;
            ::_exit(isBound && core.rlim_max == 0 && ::getpriority(PRIO_PROCESS, 0) >= 5 && signal == SIGKILL
                        && ::prctl(PR_GET_DUMPABLE) == 0 && isClosed
                    ? 0
                    : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
    }

    void anOrphanIsNotBound()
    {
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(Sandbox::bindTo(::getpid(), 3) ? 1 : 0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 0);
    }

private:
    QTemporaryDir m_folder;
};

LUMAPHONE_TEST(SandboxTest)

} // namespace sandboxtest

#include "SandboxTest.moc"
