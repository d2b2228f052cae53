#include "translation/engine/MappedFile.h"

#include "translation/engine/EngineError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace lumaphone::engine {
namespace {

class Descriptor
{
public:
    explicit Descriptor(const QString &path)
        : m_number(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    int number() const { return m_number; }

private:
    int m_number;
};

[[noreturn]] void refuse(const QString &path, int errorNumber)
{
    throw EngineError(EngineError::Case::Unreadable, path, qt_error_string(errorNumber));
}

} // namespace

MappedFile::MappedFile(const QString &path)
    : m_path(path)
{
    const Descriptor file(path);
    struct stat status = {};
    if (file.number() < 0 || ::fstat(file.number(), &status) != 0)
        refuse(path, errno);
    if (S_ISDIR(status.st_mode))
        refuse(path, EISDIR);
    if (!S_ISREG(status.st_mode))
        refuse(path, ENODEV);
    if (status.st_size == 0)
        throw EngineError(EngineError::Case::Truncated, path, QStringLiteral("the file is empty"));
    const auto size = static_cast<std::size_t>(status.st_size);
    void *start = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (start == MAP_FAILED)
        refuse(path, errno);
    m_bytes = {static_cast<const std::byte *>(start), size};
}

MappedFile::MappedFile(MappedFile &&other) noexcept
    : m_path(std::move(other.m_path))
    , m_bytes(std::exchange(other.m_bytes, {}))
{
}

void MappedFile::release() const
{
    ::madvise(const_cast<std::byte *>(m_bytes.data()), m_bytes.size(), MADV_DONTNEED);
}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty())
        ::munmap(const_cast<std::byte *>(m_bytes.data()), m_bytes.size());
}

} // namespace lumaphone::engine
