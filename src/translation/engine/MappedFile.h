#pragma once

#include <QString>

#include <cstddef>
#include <span>

namespace lumaphone::engine {

/// A regular file's bytes, mapped for reading as long as this object lives. Whoever replaces such a file must
/// do so by renaming: shortening one that is mapped would end the process.
class MappedFile
{
public:
    /// Throws EngineError (unreadable; truncated for an empty file).
    explicit MappedFile(const QString &path);
    MappedFile(MappedFile &&other) noexcept;
    MappedFile &operator=(MappedFile &&) = delete;
    ~MappedFile();

    const QString &path() const { return m_path; }
    std::span<const std::byte> bytes() const { return m_bytes; }

    /// Gives back the memory of some of the bytes; whoever reads them again gets them from the file.
    static void release(std::span<const std::byte> bytes);

private:
    QString m_path;
    std::span<const std::byte> m_bytes;
};

} // namespace lumaphone::engine
