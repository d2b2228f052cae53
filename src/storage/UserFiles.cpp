#include "storage/UserFiles.h"

#include <QDir>

namespace lumaphone {

namespace {

QString applicationFolder(const PlatformFolders &folders, const QString &name)
{
    // The user's home stands in for a missing application folder.
    return folders.applicationSupport().value_or(QDir::homePath()) + QStringLiteral("/Lumaphone/") + name;
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

QString transcriptsFolder(const PlatformFolders &folders)
{
    return applicationFolder(folders, QStringLiteral("Transcripts"));
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
