#pragma once

#include "models/FileDigest.h"
#include "models/ModelCatalogue.h"
#include "platform/BundleResources.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace lumaphone {

class CheckedFiles;
struct ModelManifest;

enum class ModelState {
    missing, ///< not installed, or not shipped with the program
    partial, ///< an installation was begun; it can go on where it ended
    installed, ///< or part of the program, and there
    damaged, ///< it is there, but its files are not what they should be
};

/// A model whose files are all in place.
class InstalledModel
{
public:
    InstalledModel(QString folder, QList<ModelFile> files);

    const QString &folder() const { return m_folder; }
    /// The file of that role; none if the model has no such file.
    std::optional<QString> path(const QString &role) const;
    /// The same for a file that the catalogue promises: ending the program if it is not listed there.
    QString require(const QString &role) const;

private:
    QString m_folder;
    QList<ModelFile> m_files;
};

/// The models of this user on the disk, one folder for each, and those that come with the program. A folder
/// of the user's comes and goes by being renamed, so whoever finds it finds all of its files. Any thread; any
/// number of processes.
class ModelStore
{
public:
    /// `folder` need not exist. A bundled model lies in the folder of the bundle that has its id; without a
    /// bundle there are none.
    ModelStore(
        QString folder, ModelCatalogue catalogue, std::shared_ptr<const BundleResources> bundle = nullptr);

    const ModelCatalogue &catalogue() const { return m_catalogue; }
    const QString &folder() const { return m_folder; }

    /// From names and sizes alone; quick enough for the main thread.
    ModelState state(const ModelEntry &entry) const;
    /// None unless the state is `installed`.
    std::optional<InstalledModel> installed(const ModelEntry &entry) const;

    /// Reads all files and compares them with what is known, or else with what was recorded at the
    /// installation. A model of the user's that fails is `damaged` from then on. Takes a while. Throws
    /// ModelError, FileError.
    void verify(const ModelEntry &entry) const;

    /// For whoever hands a model to its engine: the model, of which the files of these roles have been
    /// compared as verify() does, but read only if they have changed since they were found right. Takes a
    /// while if they have. Throws ModelError, FileError.
    InstalledModel requireIntact(const ModelEntry &entry, const QStringList &roles, CheckedFiles &checked,
        const std::stop_token &stop = {}) const;

    /// The terms of a model: what the catalogue says, and behind it the licence that lies with the files if
    /// they are in place and one does. Throws FileError.
    QString licenceText(const ModelEntry &entry) const;

    /// Removes a model and what is left of an installation that was begun; one that is not there is fine.
    /// Programs that are using it go on. Throws ModelError (busy, partOfProgram, notShipped), FileError.
    void remove(const ModelEntry &entry) const;

    // For ModelInstaller.

    QString modelFolder(const ModelEntry &entry) const;
    /// Where an installation keeps what it has fetched so far.
    QString partialFolder(const ModelEntry &entry) const;
    QString lockPath(const ModelEntry &entry) const;
    /// Throws ModelError (partOfProgram, notShipped) for a bundled model, which nobody installs or removes.
    void demandNotBundled(const ModelEntry &entry) const;

private:
    /// Compares a file with what it should be.
    using Comparison = std::function<void(const QString &path, const FileDigest &expected)>;

    std::optional<QString> bundledFolder(const ModelEntry &entry) const;
    ModelState bundledState(const ModelEntry &entry) const;
    void compareBundled(
        const ModelEntry &entry, const QList<ModelFile> &files, const Comparison &compare) const;
    void compareInstalled(
        const ModelEntry &entry, const QList<ModelFile> &files, const Comparison &compare) const;
    /// A damaged model is not used again, whatever it is asked later.
    void markDamaged(const ModelEntry &entry, const ModelManifest &found) const;
    /// Makes the record say what the files have been found to be.
    void mend(const ModelEntry &entry) const;
    /// Throws FileError.
    void replaceRecord(
        const ModelEntry &entry, const ModelManifest &found, const ModelManifest &manifest) const;

    QString m_folder;
    ModelCatalogue m_catalogue;
    std::shared_ptr<const BundleResources> m_bundle;
};

} // namespace lumaphone
