#include "base/FileLock.h"

#include "base/AtomicFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace lumaphone {

namespace {

int opened(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        throw FileError(path, errno);
    }
    return descriptor;
}

/// 0, or the error number. EINTR is tried again.
int flocked(int descriptor, int operation)
{
    while (::flock(descriptor, operation) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

bool isLockless(int error)
{
    return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS;
}

} // namespace

FileLock FileLock::wait(const QString &path)
{
    FileLock lock(opened(path));
    const int error = flocked(lock.m_descriptor, LOCK_EX);
    if (error != 0 && !isLockless(error)) {
        throw FileError(path, error);
    }
    return lock;
}

std::optional<FileLock> FileLock::tryTake(const QString &path)
{
    FileLock lock(opened(path));
    const int error = flocked(lock.m_descriptor, LOCK_EX | LOCK_NB);
    if (error == EWOULDBLOCK) {
        return std::nullopt;
    }
    if (error != 0 && !isLockless(error)) {
        throw FileError(path, error);
    }
    return lock;
}

FileLock::FileLock(int descriptor)
    : m_descriptor(descriptor)
{
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

FileLock::FileLock(FileLock &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

FileLock &FileLock::operator=(FileLock &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

} // namespace lumaphone
