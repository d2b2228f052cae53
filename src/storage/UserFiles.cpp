#include "storage/UserFiles.h"

#include <QDir>

namespace lumaphone {

namespace {

QString folderIn(const QString &applicationSupport, const QString &name)
{
    return applicationSupport + QStringLiteral("/Lumaphone/") + name;
}

QString applicationFolder(const PlatformFolders &folders, const QString &name)
{
    return folderIn(folders.applicationSupport().value_or(QDir::homePath()), name);
}

} // namespace

QString defaultsPath(const PlatformFolders &folders)
{
    return folders.configuration().value_or(QDir::homePath()) + QStringLiteral("/lumaphone/settings.json");
}

QString draftsFolder(const PlatformFolders &folders)
{
    return applicationFolder(folders, QStringLiteral("Drafts"));
}

QString glossaryFolder(const PlatformFolders &folders)
{
    return applicationFolder(folders, QStringLiteral("Glossary"));
}

std::optional<QString> transcriptsFolder(const PlatformFolders &folders)
{
    const std::optional<QString> support = folders.applicationSupport();
    return support ? std::optional(folderIn(*support, QStringLiteral("Transcripts"))) : std::nullopt;
}

QString modelsFolder(const PlatformFolders &folders)
{
    return applicationFolder(folders, QStringLiteral("Models"));
}

QString checkedFilesPath(const PlatformFolders &folders)
{
    return folders.cache().value_or(QDir::homePath()) + QStringLiteral("/lumaphone/checked-files.json");
}

} // namespace lumaphone
