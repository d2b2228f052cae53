#include "models/ModelStore.h"

#include "base/AtomicFile.h"
#include "base/FileLock.h"
#include "models/CheckedFiles.h"
#include "models/ModelError.h"
#include "models/ModelManifest.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
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

/// What went wrong with a file that came with the program. Throws ModelError.
[[noreturn]] void rethrowAsDamagedProgram(const ModelError &error, const QString &path)
{
    const auto fail = [&path](const QString &detail) {
        throw ModelError(ModelError::Case::damagedProgram, path, detail);
    };
    switch (error.errorCase()) {
    case ModelError::Case::fileMissing:
        fail(QStringLiteral("找不到檔案"));
        break;
    case ModelError::Case::wrongSize:
        fail(QStringLiteral("大小不對"));
        break;
    case ModelError::Case::wrongContents:
        fail(QStringLiteral("SHA-256 不符"));
        break;
    default:
        break;
    }
    throw error;
}

void demandFile(const QString &path)
{
    if (!QFileInfo(path).isFile()) {
        throw ModelError(ModelError::Case::fileMissing, path);
    }
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

ModelStore::ModelStore(
    QString folder, ModelCatalogue catalogue, std::shared_ptr<const BundleResources> bundle)
    : m_folder(std::move(folder))
    , m_catalogue(std::move(catalogue))
    , m_bundle(std::move(bundle))
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

std::optional<QString> ModelStore::bundledFolder(const ModelEntry &entry) const
{
    return m_bundle ? m_bundle->path(entry.id) : std::nullopt;
}

ModelState ModelStore::bundledState(const ModelEntry &entry) const
{
    const std::optional<QString> folder = bundledFolder(entry);
    if (!folder) {
        return ModelState::missing;
    }
    const bool isWhole
        = std::all_of(entry.bundledFiles.begin(), entry.bundledFiles.end(), [&folder](const ModelFile &file) {
              const QFileInfo info(*folder + QLatin1Char('/') + file.name);
              return info.isFile() && info.size() == *file.size;
          });
    return isWhole ? ModelState::installed : ModelState::damaged;
}

ModelState ModelStore::state(const ModelEntry &entry) const
{
    if (entry.isBundled) {
        return bundledState(entry);
    }
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
    return InstalledModel(
        entry.isBundled ? bundledFolder(entry).value_or(QString()) : modelFolder(entry), entry.files());
}

void ModelStore::compareBundled(
    const ModelEntry &entry, const QList<ModelFile> &files, const Comparison &compare) const
{
    const std::optional<QString> folder = bundledFolder(entry);
    if (!folder) {
        throw ModelError(ModelError::Case::notShipped, entry.title);
    }
    for (const ModelFile &file : files) {
        const QString path = *folder + QLatin1Char('/') + file.name;
        try {
            demandFile(path);
            compare(path, {*file.size, file.sha256});
        } catch (const ModelError &error) {
            rethrowAsDamagedProgram(error, path);
        }
    }
}

void ModelStore::compareInstalled(
    const ModelEntry &entry, const QList<ModelFile> &files, const Comparison &compare) const
{
    const QString folder = modelFolder(entry);
    const std::optional<ModelManifest> manifest = ModelManifest::read(folder);
    if (!manifest) {
        throw ModelError(ModelError::Case::fileMissing, folder + QStringLiteral("/installed.json"));
    }
    try {
        for (const ModelFile &file : files) {
            const RecordedFile *recorded = manifest->find(file.name);
            const QString path = folder + QLatin1Char('/') + file.name;
            if (recorded == nullptr) {
                throw ModelError(ModelError::Case::fileMissing, path);
            }
            demandFile(path);
            compare(path, expectedDigest(file, *recorded));
        }
    } catch (const ModelError &error) {
        if (error.errorCase() != ModelError::Case::cancelled) {
            markDamaged(entry, *manifest);
        }
        throw;
    }
}

void ModelStore::verify(const ModelEntry &entry) const
{
    const Comparison compare = [](const QString &path, const FileDigest &expected) {
        demandDigest(path, digestOf(path), expected);
    };
    if (entry.isBundled) {
        compareBundled(entry, entry.files(), compare);
        return;
    }
    compareInstalled(entry, entry.files(), compare);
    mend(entry);
}

InstalledModel ModelStore::requireIntact(const ModelEntry &entry, const QStringList &roles,
    CheckedFiles &checked, const std::stop_token &stop) const
{
    QList<ModelFile> files = entry.files();
    files.removeIf([&roles](const ModelFile &file) { return !roles.contains(file.role); });
    const Comparison compare = [&checked, &stop](const QString &path, const FileDigest &expected) {
        checked.demand(path, expected, stop);
    };
    if (entry.isBundled) {
        compareBundled(entry, files, compare);
        return {bundledFolder(entry).value_or(QString()), entry.bundledFiles};
    }
    compareInstalled(entry, files, compare);
    const std::optional<InstalledModel> model = installed(entry);
    if (!model) { // another of its files is wrong
        throw ModelError(ModelError::Case::wrongContents, entry.title);
    }
    return *model;
}

void ModelStore::markDamaged(const ModelEntry &entry, const ModelManifest &found) const
{
    try {
        ModelManifest damaged = found;
        damaged.isDamaged = true;
        replaceRecord(entry, found, damaged);
    } catch (const FileError &) {
        // What cannot be noted will be found again.
    }
}

void ModelStore::mend(const ModelEntry &entry) const
{
    const std::optional<ModelManifest> found = ModelManifest::read(modelFolder(entry));
    if (!found || state(entry) == ModelState::installed) {
        return;
    }
    ModelManifest mended {{}, found->installedAt, false};
    for (const ModelFile &file : entry.files()) {
        if (const RecordedFile *recorded = found->find(file.name)) {
            const FileDigest digest = expectedDigest(file, *recorded);
            mended.files.append({file.name, digest.size, digest.sha256});
        }
    }
    replaceRecord(entry, *found, mended);
}

void ModelStore::replaceRecord(
    const ModelEntry &entry, const ModelManifest &found, const ModelManifest &manifest) const
{
    const std::optional<FileLock> lock = FileLock::tryTake(lockPath(entry));
    // Another model may have taken its place in the meantime, or is about to.
    if (lock && ModelManifest::read(modelFolder(entry)) == found) {
        manifest.write(modelFolder(entry));
    }
}

QString ModelStore::licenceText(const ModelEntry &entry) const
{
    const std::optional<InstalledModel> model = installed(entry);
    const std::optional<QString> path = model ? model->path(QStringLiteral("licence")) : std::nullopt;
    const std::optional<QByteArray> licence = path ? readFile(*path) : std::nullopt;
    return licence ? entry.licence.text + QStringLiteral("\n\n") + QString::fromUtf8(*licence).trimmed()
                   : entry.licence.text;
}

void ModelStore::demandNotBundled(const ModelEntry &entry) const
{
    if (entry.isBundled) {
        throw ModelError(
            bundledFolder(entry) ? ModelError::Case::partOfProgram : ModelError::Case::notShipped,
            entry.title);
    }
}

void ModelStore::remove(const ModelEntry &entry) const
{
    demandNotBundled(entry);
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
