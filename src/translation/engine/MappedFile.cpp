#include "translation/engine/MappedFile.h"

#include "translation/engine/EngineError.h"
#include "translation/engine/OpenFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace lumaphone::engine {
MappedFile::MappedFile(const QString &path)
    : m_path(path)
{
    const OpenFile file(path);
    if (file.size() == 0)
        throw EngineError(EngineError::Case::truncated, path, QStringLiteral("the file is empty"));
    const auto size = static_cast<std::size_t>(file.size());
    void *start = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.descriptor(), 0);
    if (start == MAP_FAILED)
        throw EngineError(EngineError::Case::unreadable, path, qt_error_string(errno));
    m_bytes = {static_cast<const std::byte *>(start), size};
}

MappedFile::MappedFile(MappedFile &&other) noexcept
    : m_path(std::move(other.m_path))
    , m_bytes(std::exchange(other.m_bytes, {}))
{
}

void MappedFile::release(std::span<const std::byte> bytes)
{
    const auto start = reinterpret_cast<std::uintptr_t>(bytes.data());
    const std::size_t before = start % std::size_t(::sysconf(_SC_PAGESIZE));
    ::madvise(const_cast<std::byte *>(bytes.data() - before), bytes.size() + before, MADV_DONTNEED);
}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty())
        ::munmap(const_cast<std::byte *>(m_bytes.data()), m_bytes.size());
}

} // namespace lumaphone::engine
