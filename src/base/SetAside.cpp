#include "base/SetAside.h"

#include "base/AtomicFile.h"

#include <QFile>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>

namespace lumaphone {

namespace {

/// Renames unless the new name is taken. 0, or the error number.
int renamedToFreeName(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // The file system cannot promise it in one step.
    struct stat status = {};
    if (::lstat(to.constData(), &status) == 0) {
        return EEXIST;
    }
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

} // namespace

QString setAside(const QString &path)
{
    for (int number = 1;; ++number) {
        const QString suffix = number == 1 ? QString() : QStringLiteral("-%1").arg(number);
        QString newPath = path + QStringLiteral(".damaged") + suffix;
        const int error = renamedToFreeName(QFile::encodeName(path), QFile::encodeName(newPath));
        if (error == 0) {
            return newPath;
        }
        if (error != EEXIST) {
            throw FileError(path, error);
        }
    }
}

} // namespace lumaphone
