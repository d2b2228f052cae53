#include "session/HelperProcess.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <utility>

namespace lumaphone {

namespace {

/// Owns a file descriptor.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }
    bool close() { return m_fd < 0 || ::close(std::exchange(m_fd, -1)) == 0; }

private:
    int m_fd = -1;
};

struct Pipe
{
    Descriptor readingEnd;
    Descriptor writingEnd;
};

std::optional<Pipe> openPipe()
{
    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    return Pipe {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Keeps the signal for writing to a helper that has gone from ending the program, in this thread alone.
class BrokenPipeSignalBlocked
{
public:
    BrokenPipeSignalBlocked()
    {
        sigemptyset(&m_brokenPipe);
        sigaddset(&m_brokenPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_previous);
    }
    ~BrokenPipeSignalBlocked()
    {
        const timespec atOnce {};
        while (!m_wasPending && sigtimedwait(&m_brokenPipe, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &m_previous, nullptr);
    }
    BrokenPipeSignalBlocked(const BrokenPipeSignalBlocked &) = delete;
    BrokenPipeSignalBlocked &operator=(const BrokenPipeSignalBlocked &) = delete;

    const sigset_t &previousMask() const { return m_previous; }

private:
    sigset_t m_brokenPipe {};
    sigset_t m_previous {};
    bool m_wasPending = false;
};

/// What a child is started with, released in every case.
class SpawnSettings
{
public:
    SpawnSettings(int standardInput, int standardOutput, const sigset_t &signalMask)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, standardInput, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, standardOutput, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigmask(&m_attributes, &signalMask);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnSettings(const SpawnSettings &) = delete;
    SpawnSettings &operator=(const SpawnSettings &) = delete;

    std::optional<pid_t> spawn(const QString &executable) const
    {
        QByteArray path = QFile::encodeName(executable);
        std::array<char *, 2> arguments {path.data(), nullptr};
        pid_t child = 0;
        const int error
            = ::posix_spawn(&child, path.constData(), &m_actions, &m_attributes, arguments.data(), environ);
        return error == 0 ? std::optional(child) : std::nullopt;
    }

private:
    posix_spawn_file_actions_t m_actions {};
    posix_spawnattr_t m_attributes {};
};

/// Writes what the pipe takes. Closes it at the end of `input`, or when nobody reads any more.
void writeSome(Descriptor &pipe, const QByteArray &input, qsizetype &written)
{
    const ssize_t count
        = ::write(pipe.get(), input.constData() + written, std::size_t(input.size() - written));
    if (count >= 0) {
        written += count;
    } else if (errno != EAGAIN && errno != EINTR) {
        written = input.size();
    }
    if (written == input.size()) {
        pipe.close();
    }
}

/// Reads what there is. Closes the pipe at its end.
void readSome(Descriptor &pipe, QByteArray &output)
{
    std::array<char, 4096> block;
    const ssize_t count = ::read(pipe.get(), block.data(), block.size());
    if (count > 0) {
        output.append(block.data(), count);
    } else if (count == 0 || errno != EINTR) {
        pipe.close();
    }
}

/// Feeds and drains the helper at once, so that neither side waits for the other's full pipe.
QByteArray exchange(Descriptor toHelper, Descriptor fromHelper, const QByteArray &input)
{
    QByteArray output;
    qsizetype written = 0;
    ::fcntl(toHelper.get(), F_SETFL, O_NONBLOCK);
    writeSome(toHelper, input, written);
    while (fromHelper.isOpen()) {
        std::array<pollfd, 2> watched {
            pollfd {fromHelper.get(), POLLIN, 0}, pollfd {toHelper.get(), POLLOUT, 0}};
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            break;
        }
        if (watched[1].revents != 0) {
            writeSome(toHelper, input, written);
        }
        if (watched[0].revents != 0) {
            readSome(fromHelper, output);
        }
    }
    return output;
}

/// Exit status of the child, or none if it was ended by a signal.
std::optional<int> waitUntilExit(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return std::nullopt;
        }
    }
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

} // namespace

std::optional<QByteArray> exchangeWithHelper(const QString &executable, const QByteArray &input)
{
    const BrokenPipeSignalBlocked blocked;
    auto toHelper = openPipe();
    auto fromHelper = openPipe();
    if (!toHelper || !fromHelper) {
        return std::nullopt;
    }
    const auto child
        = SpawnSettings(toHelper->readingEnd.get(), fromHelper->writingEnd.get(), blocked.previousMask())
              .spawn(executable);
    toHelper->readingEnd.close();
    fromHelper->writingEnd.close();
    if (!child) {
        return std::nullopt;
    }
    const QByteArray output
        = exchange(std::move(toHelper->writingEnd), std::move(fromHelper->readingEnd), input);
    const auto status = waitUntilExit(*child);
    return status == 0 ? std::optional(output) : std::nullopt;
}

} // namespace lumaphone
