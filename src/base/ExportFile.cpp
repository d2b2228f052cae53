#include "base/ExportFile.h"

#include "base/Descriptor.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <optional>

namespace lumaphone {

namespace {

constexpr mode_t ordinaryMode = 0666;
constexpr int mostLinks = 40;

/// Where a chain of symbolic links ends, whether something is there or not.
QString followed(const QString &path)
{
    QString end = path;
    for (int i = 0; QFileInfo(end).isSymLink(); ++i) {
        if (i == mostLinks) {
            throw FileError(path, ELOOP);
        }
        end = QFileInfo(end).symLinkTarget();
    }
    return end;
}

void writeInto(const QString &path, const QByteArray &bytes)
{
    Descriptor file(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0 || !writeAll(file.get(), bytes) || !file.close()) {
        throw FileError(path, errno);
    }
}

/// A file without a name, so that a process that dies leaves nothing. Where the file system knows no such
/// files, it has `name` at once.
Descriptor newFile(const QByteArray &folder, const QByteArray &name, bool &hasName)
{
    const int fd = ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, ordinaryMode);
    hasName = fd < 0;
    return Descriptor(
        hasName ? ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ordinaryMode) : fd);
}

bool give(const Descriptor &file, const QByteArray &name)
{
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(file.get());
    return ::linkat(AT_FDCWD, open.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0;
}

void flushFolder(const QString &path, const QByteArray &folder)
{
    const Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() < 0 || ::fsync(directory.get()) != 0) {
        throw FileError(path, errno);
    }
}

/// `mode`: of the file that is replaced.
void replace(const QString &path, const QByteArray &bytes, std::optional<mode_t> mode)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    // Short, for names may be nearly as long as the file system allows.
    const QByteArray temporary = target + '.' + QUuid::createUuid().toByteArray(QUuid::Id128).first(6);
    bool hasName = false;
    Descriptor file = newFile(folder, temporary, hasName);
    if (file.get() < 0) {
        throw FileError(path, errno);
    }
    const bool isWritten = writeAll(file.get(), bytes) && (!mode || ::fchmod(file.get(), *mode) == 0)
        && ::fsync(file.get()) == 0 && (hasName || give(file, temporary));
    if (!isWritten || ::rename(temporary.constData(), target.constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        throw FileError(path, error);
    }
    flushFolder(path, folder);
}

} // namespace

void exportFile(const QString &path, const QByteArray &bytes)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        if (errno != ENOENT) {
            throw FileError(path, errno);
        }
        replace(followed(path), bytes, std::nullopt);
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        writeInto(path, bytes);
        return;
    }
    // Replacing it would not ask.
    if (::access(QFile::encodeName(path).constData(), W_OK) != 0) {
        throw FileError(path, errno);
    }
    replace(followed(path), bytes, status.st_mode & 07777);
}

} // namespace lumaphone
