#include "translation/engine/OpenFile.h"

#include "translation/engine/EngineError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace lumaphone::engine {
namespace {

[[noreturn]] void refuse(const QString &path, int errorNumber)
{
    throw EngineError(EngineError::Case::unreadable, path, qt_error_string(errorNumber));
}

/// What keeps an open file from being read, or 0.
int faultOf(int descriptor, struct stat &status)
{
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    return S_ISREG(status.st_mode) ? 0 : ENODEV;
}

} // namespace

OpenFile::OpenFile(const QString &path)
    : m_path(path)
    , m_descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
    struct stat status = {};
    if (const int fault = faultOf(m_descriptor, status)) {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        refuse(path, fault);
    }
    m_size = std::uint64_t(status.st_size);
}

OpenFile::~OpenFile()
{
    ::close(m_descriptor);
}

void OpenFile::read(std::uint64_t position, std::span<std::byte> bytes, const QString &subject) const
{
    while (!bytes.empty()) {
        const ssize_t count = ::pread(m_descriptor, bytes.data(), bytes.size(), off_t(position));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            refuse(m_path, errno);
        if (count == 0)
            throw EngineError(EngineError::Case::truncated, m_path, subject);
        position += std::uint64_t(count);
        bytes = bytes.subspan(std::size_t(count));
    }
}

} // namespace lumaphone::engine
