#pragma once

#include "models/ModelCatalogue.h"

#include <QList>
#include <QString>

#include <optional>

namespace lumaphone {

enum class ModelState {
    missing,
    partial, ///< an installation was begun; it can go on where it ended
    installed,
    damaged, ///< it was installed, but its files are no longer what they were
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

/// The models of this user on the disk, one folder for each. A folder comes and goes by being renamed, so
/// whoever finds it finds all of its files. Any thread; any number of processes.
class ModelStore
{
public:
    /// `folder` need not exist.
    ModelStore(QString folder, ModelCatalogue catalogue);

    const ModelCatalogue &catalogue() const { return m_catalogue; }
    const QString &folder() const { return m_folder; }

    /// From names and sizes alone; quick enough for the main thread.
    ModelState state(const ModelEntry &entry) const;
    /// None unless the state is `installed`.
    std::optional<InstalledModel> installed(const ModelEntry &entry) const;

    /// Reads all files and compares them with what is known, or else with what was recorded at the
    /// installation. A model that fails is `damaged` from then on. Takes a while. Throws ModelError,
    /// FileError.
    void verify(const ModelEntry &entry) const;

    /// Removes a model and what is left of an installation that was begun; one that is not there is fine.
    /// Programs that are using it go on. Throws ModelError (busy), FileError.
    void remove(const ModelEntry &entry) const;

    // For ModelInstaller.

    QString modelFolder(const ModelEntry &entry) const;
    /// Where an installation keeps what it has fetched so far.
    QString partialFolder(const ModelEntry &entry) const;
    QString lockPath(const ModelEntry &entry) const;

private:
    QString m_folder;
    ModelCatalogue m_catalogue;
};

} // namespace lumaphone
