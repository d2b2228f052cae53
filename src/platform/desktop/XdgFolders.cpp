#include "platform/desktop/XdgFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

namespace lumaphone {

namespace {

std::optional<QString> absolutePathIn(const char *variable)
{
    const QString path = QFile::decodeName(qgetenv(variable));
    return QDir::isAbsolutePath(path) ? std::optional(QDir::cleanPath(path)) : std::nullopt;
}

std::optional<QString> home()
{
    if (auto path = absolutePathIn("HOME")) {
        return path;
    }
    const struct passwd *user = ::getpwuid(::getuid());
    const QString path = user ? QFile::decodeName(user->pw_dir) : QString();
    return QDir::isAbsolutePath(path) ? std::optional(path) : std::nullopt;
}

std::optional<QString> folder(const char *variable, const QString &belowHome)
{
    if (auto path = absolutePathIn(variable)) {
        return path;
    }
    const auto parent = home();
    return parent ? std::optional(QDir(*parent).filePath(belowHome)) : std::nullopt;
}

} // namespace

std::optional<QString> XdgFolders::applicationSupport() const
{
    return folder("XDG_DATA_HOME", QStringLiteral(".local/share"));
}

std::optional<QString> XdgFolders::configuration() const
{
    return folder("XDG_CONFIG_HOME", QStringLiteral(".config"));
}

std::optional<QString> XdgFolders::cache() const
{
    return folder("XDG_CACHE_HOME", QStringLiteral(".cache"));
}

std::optional<QString> XdgFolders::runtime() const
{
    const auto path = absolutePathIn("XDG_RUNTIME_DIR");
    return path && QFileInfo(*path).isDir() ? path : std::nullopt;
}

} // namespace lumaphone
