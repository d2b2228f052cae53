#include "base/AtomicFile.h"

#include "base/Descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace lumaphone {

namespace {

/// Which no person gives a file.
constexpr auto temporarySuffix = ".new-XXXXXX";

} // namespace

FileError::FileError(const QString &path, int errorNumber)
    : PlatformError(QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errorNumber))))
    , m_path(path)
    , m_errorNumber(errorNumber)
{
}

void replaceFile(const QString &path, const QByteArray &bytes, Durability durability)
{
    const QByteArrayView piece = bytes;
    replaceFile(path, std::span(&piece, 1), durability);
}

void replaceFile(const QString &path, std::span<const QByteArrayView> pieces, Durability durability)
{
    const QByteArray target = QFile::encodeName(path);
    QByteArray temporary = target + temporarySuffix;
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (file.get() < 0) {
        throw FileError(path, errno);
    }
    const auto fail = [&] {
        const int error = errno;
        ::unlink(temporary.constData());
        throw FileError(path, error);
    };
    for (const QByteArrayView piece : pieces) {
        if (!writeAll(file.get(), piece)) {
            fail();
        }
    }
    if (durability == Durability::flushed && ::fsync(file.get()) != 0) {
        fail();
    }
    if (!file.close() || ::rename(temporary.constData(), target.constData()) != 0) {
        fail();
    }
    if (durability == Durability::flushed) {
        const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
        const Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (directory.get() < 0 || ::fsync(directory.get()) != 0) {
            throw FileError(path, errno);
        }
    }
}

void removeInterruptedReplacements(const QString &path)
{
    const QFileInfo file(path);
    QDir folder(file.path());
    const QString pattern
        = file.fileName() + QString::fromLatin1(temporarySuffix).replace(QLatin1Char('X'), QLatin1Char('?'));
    for (const QString &leftover : folder.entryList({pattern}, QDir::Files | QDir::Hidden)) {
        folder.remove(leftover);
    }
}

std::optional<QByteArray> readFile(const QString &path)
{
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        throw FileError(path, errno);
    }
    QByteArray bytes;
    struct stat status = {};
    if (::fstat(file.get(), &status) == 0 && status.st_size > 0) {
        bytes.reserve(static_cast<qsizetype>(status.st_size) + 1);
    }
    char block[65536];
    for (;;) {
        const ssize_t count = ::read(file.get(), block, sizeof block);
        if (count == 0) {
            return bytes;
        }
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw FileError(path, errno);
        }
        bytes.append(block, count);
    }
}

void createFolder(const QString &path)
{
    errno = 0;
    if (!QDir().mkpath(path)) {
        throw FileError(path, errno != 0 ? errno : ENOTDIR);
    }
}

QString keepAside(const QString &path)
{
    const QFileInfo file(path);
    const QString stem = file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1String(".damaged");
    const QString extension = file.suffix().isEmpty() ? QString() : QLatin1Char('.') + file.suffix();
    const QByteArray from = QFile::encodeName(path);
    for (int number = 1;; ++number) {
        const QString suffix = number == 1 ? extension : QStringLiteral("-%1").arg(number) + extension;
        QString newPath = stem + suffix;
        const QByteArray to = QFile::encodeName(newPath);
        if (::link(from.constData(), to.constData()) == 0 || errno == ENOENT) {
            return newPath;
        }
        if (errno == EEXIST) {
            continue;
        }
        if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
            return newPath;
        }
        if (errno != EEXIST) {
            throw FileError(path, errno);
        }
    }
}

void removeFile(const QString &path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT) {
        throw FileError(path, errno);
    }
}

} // namespace lumaphone
