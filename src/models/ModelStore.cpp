#include "models/ModelStore.h"

#include "base/AtomicFile.h"
#include "base/FileLock.h"
#include "models/FileDigest.h"
#include "models/ModelError.h"
#include "models/ModelManifest.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <utility>

namespace lumaphone {

namespace {

/// What a file should be: as it is known, or else as it was when it was installed.
FileDigest expectedDigest(const ModelFile &file, const RecordedFile &recorded)
{
    return {file.size.value_or(recorded.size), file.sha256.isEmpty() ? recorded.sha256 : file.sha256};
}

bool isAsExpected(const ModelFile &file, const RecordedFile &recorded)
{
    return expectedDigest(file, recorded) == FileDigest {recorded.size, recorded.sha256};
}

/// Reads a file. Throws ModelError, FileError.
void demandDigest(const QString &path, const FileDigest &expected)
{
    const FileDigest digest = digestOf(path);
    if (digest.size != expected.size) {
        throw ModelError(ModelError::Case::wrongSize, path,
            QStringLiteral("應為 %1，實際為 %2").arg(expected.size).arg(digest.size));
    }
    if (digest.sha256 != expected.sha256) {
        throw ModelError(ModelError::Case::wrongContents, path);
    }
}

/// A damaged model is not used again, whatever it is asked later.
void markDamaged(ModelManifest manifest, const QString &folder)
{
    manifest.isDamaged = true;
    manifest.write(folder);
}

void removeFolder(const QString &path)
{
    errno = 0;
    if (QDir(path).exists() && !QDir(path).removeRecursively()) {
        throw FileError(path, errno != 0 ? errno : EIO);
    }
}

} // namespace

InstalledModel::InstalledModel(QString folder, QList<ModelFile> files)
    : m_folder(std::move(folder))
    , m_files(std::move(files))
{
}

std::optional<QString> InstalledModel::path(const QString &role) const
{
    for (const ModelFile &file : m_files) {
        if (file.role == role) {
            return m_folder + QLatin1Char('/') + file.name;
        }
    }
    return std::nullopt;
}

QString InstalledModel::require(const QString &role) const
{
    const std::optional<QString> found = path(role);
    if (!found) {
        qFatal("the catalogue lists no %s for %s", qPrintable(role), qPrintable(m_folder));
    }
    return *found;
}

ModelStore::ModelStore(QString folder, ModelCatalogue catalogue)
    : m_folder(std::move(folder))
    , m_catalogue(std::move(catalogue))
{
}

QString ModelStore::modelFolder(const ModelEntry &entry) const
{
    return m_folder + QLatin1Char('/') + entry.id;
}

QString ModelStore::partialFolder(const ModelEntry &entry) const
{
    return m_folder + QStringLiteral("/.%1.partial").arg(entry.id);
}

QString ModelStore::lockPath(const ModelEntry &entry) const
{
    return m_folder + QStringLiteral("/.%1.lock").arg(entry.id);
}

ModelState ModelStore::state(const ModelEntry &entry) const
{
    const QString folder = modelFolder(entry);
    if (!QFileInfo(folder).isDir()) {
        return QFileInfo(partialFolder(entry)).isDir() ? ModelState::partial : ModelState::missing;
    }
    const std::optional<ModelManifest> manifest = ModelManifest::read(folder);
    if (!manifest || manifest->isDamaged) {
        return ModelState::damaged;
    }
    for (const ModelFile &file : entry.files()) {
        const RecordedFile *recorded = manifest->find(file.name);
        const QFileInfo info(folder + QLatin1Char('/') + file.name);
        if (recorded == nullptr || !isAsExpected(file, *recorded) || !info.isFile()
            || info.size() != recorded->size) {
            return ModelState::damaged;
        }
    }
    return ModelState::installed;
}

std::optional<InstalledModel> ModelStore::installed(const ModelEntry &entry) const
{
    if (state(entry) != ModelState::installed) {
        return std::nullopt;
    }
    return InstalledModel(modelFolder(entry), entry.files());
}

void ModelStore::verify(const ModelEntry &entry) const
{
    const QString folder = modelFolder(entry);
    const std::optional<ModelManifest> manifest = ModelManifest::read(folder);
    if (!manifest) {
        throw ModelError(ModelError::Case::fileMissing, folder + QStringLiteral("/installed.json"));
    }
    ModelManifest found {{}, manifest->installedAt, false};
    try {
        for (const ModelFile &file : entry.files()) {
            const RecordedFile *recorded = manifest->find(file.name);
            const QString path = folder + QLatin1Char('/') + file.name;
            if (recorded == nullptr || !QFileInfo(path).isFile()) {
                throw ModelError(ModelError::Case::fileMissing, path);
            }
            const FileDigest expected = expectedDigest(file, *recorded);
            demandDigest(path, expected);
            found.files.append({file.name, expected.size, expected.sha256});
        }
    } catch (const ModelError &) {
        markDamaged(*manifest, folder);
        throw;
    }
    if (state(entry) != ModelState::installed) { // the right files have come back
        found.write(folder);
    }
}

void ModelStore::remove(const ModelEntry &entry) const
{
    if (!QFileInfo(m_folder).isDir()) {
        return;
    }
    const std::optional<FileLock> lock = FileLock::tryTake(lockPath(entry));
    if (!lock) {
        throw ModelError(ModelError::Case::busy, entry.id);
    }
    // Out of sight in one step; nobody finds a model of which some files are gone.
    const QString leaving = m_folder + QStringLiteral("/.%1.removed").arg(entry.id);
    removeFolder(leaving);
    errno = 0;
    if (QFileInfo::exists(modelFolder(entry)) && !QDir().rename(modelFolder(entry), leaving)) {
        throw FileError(modelFolder(entry), errno != 0 ? errno : EIO);
    }
    removeFolder(leaving);
    removeFolder(partialFolder(entry));
}

} // namespace lumaphone
