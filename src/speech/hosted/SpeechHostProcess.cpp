#include "speech/hosted/SpeechHostProcess.h"

#include "platform/SpeechFramework.h"

#include <QFile>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace lumaphone {

namespace {

// Where the host expects its socket.
constexpr int socketNumber = 3;

[[noreturn]] void fail(const QString &program, int error)
{
    throw SpeechFrameworkError(QStringLiteral("無法啟動語音辨識程式 %1：%2")
                                   .arg(program, QString::fromLocal8Bit(std::strerror(error))));
}

class FileActions
{
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;

    void openNothing(int number, int mode)
    {
        posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null", mode, 0);
    }
    void pass(int descriptor, int number)
    {
        posix_spawn_file_actions_adddup2(&m_actions, descriptor, number);
    }
    const posix_spawn_file_actions_t *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

/// The child starts as a fresh program does, whatever the calling thread blocks or ignores.
class Attributes
{
public:
    Attributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t mask;
        sigemptyset(&mask);
        posix_spawnattr_setsigmask(&m_attributes, &mask);
        sigaddset(&mask, SIGPIPE);
        posix_spawnattr_setsigdefault(&m_attributes, &mask);
        // A group of its own: what the terminal sends to the program is not meant for the host.
        posix_spawnattr_setpgroup(&m_attributes, 0);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

} // namespace

SpeechHostProcess::SpeechHostProcess(const QString &program)
{
    std::array<int, 2> sockets {};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        fail(program, errno);
    }
    FileActions actions;
    actions.openNothing(STDIN_FILENO, O_RDONLY);
    actions.openNothing(STDOUT_FILENO, O_WRONLY);
    actions.openNothing(STDERR_FILENO, O_WRONLY);
    // Passing a descriptor to its own number would leave it to be closed.
    const int theirs = ::fcntl(sockets[1], F_DUPFD_CLOEXEC, socketNumber + 1);
    actions.pass(theirs, socketNumber);
    QByteArray path = QFile::encodeName(program);
    QByteArray parent = QByteArray::number(::getpid());
    const std::array<char *, 3> arguments {path.data(), parent.data(), nullptr};
    // Nothing of the program's surroundings concerns the host.
    const std::array<char *, 1> environment {nullptr};
    const Attributes attributes;
    const int error = theirs < 0 ? errno
                                 : ::posix_spawn(&m_process, path.constData(), actions.get(),
                                     attributes.get(), arguments.data(), environment.data());
    ::close(sockets[1]);
    ::close(theirs);
    if (error != 0) {
        ::close(sockets[0]);
        fail(program, error);
    }
    m_socket = sockets[0];
    ::fcntl(m_socket, F_SETFL, O_NONBLOCK);
}

SpeechHostProcess::~SpeechHostProcess()
{
    ::kill(m_process, SIGKILL);
    while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
    ::close(m_socket);
}

} // namespace lumaphone
