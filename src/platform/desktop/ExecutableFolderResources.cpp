#include "platform/desktop/ExecutableFolderResources.h"

#include "LumaphoneInstallation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace lumaphone {

std::optional<QString> ExecutableFolderResources::path(const QString &name) const
{
    const QDir executables(QCoreApplication::applicationDirPath());
    const bool isBuildTree
        = executables.canonicalPath() == QDir(QStringLiteral(LUMAPHONE_BUILD_BIN_DIR)).canonicalPath();
    const QDir folder(isBuildTree
            ? executables.path()
            : executables.absoluteFilePath(QStringLiteral(LUMAPHONE_RESOURCES_FROM_BIN)));
    const QFileInfo file(folder.filePath(name));
    return file.exists() ? std::optional(file.absoluteFilePath()) : std::nullopt;
}

} // namespace lumaphone
