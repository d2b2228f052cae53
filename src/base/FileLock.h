#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// An exclusive lock on a file, shared by all processes that name it. The system lets it go when its holder
/// ends, however it ends; the file itself stays.
class FileLock
{
public:
    /// Waits for the lock, creating the file if need be; its folder must exist. On a file system that knows
    /// no locks there is nothing to wait for. Throws FileError.
    static FileLock wait(const QString &path);
    /// The lock, or none while someone else holds it. Throws FileError.
    static std::optional<FileLock> tryTake(const QString &path);

    ~FileLock();
    FileLock(FileLock &&other) noexcept;
    FileLock &operator=(FileLock &&other) noexcept;

private:
    explicit FileLock(int descriptor);
    int m_descriptor;
};

} // namespace lumaphone
