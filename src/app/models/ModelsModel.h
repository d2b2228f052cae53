#pragma once

#include "app/models/InstallationMemory.h"
#include "app/models/ModelItem.h"
#include "models/ModelInstaller.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <stop_token>

namespace lumaphone {

/// Time that never steps back, since any moment.
using MonotonicTime = std::function<std::chrono::nanoseconds()>;

/// What a window shows of the models: one row for each thing that the user may want, such as translation from
/// Japanese, which may take several models. One installation runs at a time, the others wait. Main thread.
class ModelsModel : public QAbstractListModel
{
    Q_OBJECT
    /// Whether anything is being installed or waits for it.
    Q_PROPERTY(bool isInstalling READ isInstalling NOTIFY isInstallingChanged)

public:
    enum Role {
        TitleRole = Qt::UserRole, ///< text
        StatusTextRole, ///< text, one line: what there is, how far it is, or what went wrong
        IsReadyRole, ///< bool: everything is in place
        IsInstallingRole, ///< bool: running or waiting
        ProgressRole, ///< 0 to 1, or -1 if nobody knows
        IsErrorRole, ///< bool: the last installation failed, for the reason that the status text gives
        LicenceTextRole, ///< text for the user, a few lines
        HasLicenceRole, ///< bool: there is a whole licence to read, which lies with the files
        IsInstallableRole, ///< bool: it does not come with the program
        MustAcceptLicenceRole, ///< bool: before the installation
        InstallTitleRole, ///< text of the button: install, go on or repair
        IsRemovableRole, ///< bool: something of it is on the disk, and it is not being installed
        RemovalTextRole, ///< text: what it means to remove it
    };
    Q_ENUM(Role)

    /// `store` outlives the model.
    ModelsModel(const ModelStore &store, std::shared_ptr<MainQueue> mainQueue,
        InstallationMemory memory = InstallationMemory(), MonotonicTime time = {},
        ModelInstallerOptions options = {}, QObject *parent = nullptr);
    /// Installations under way end; what has been fetched is kept.
    ~ModelsModel() override;

    /// Goes on with what was under way when the program ended. What had been paused stays so.
    void resumeInstallations();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool isInstalling() const;

    /// The row to install for speech in a language, such as "ja"; -1 if there is none.
    int speechRow(const QString &language) const;
    /// The row to install for translation from a language; -1 if there is none.
    int translationRow(const QString &language) const;

    /// Begins to fetch what is missing. Without effect while the row is being installed or is ready.
    Q_INVOKABLE void install(int row, bool acceptsLicence = false);
    /// Ends an installation; what has been fetched is kept.
    Q_INVOKABLE void cancel(int row);
    /// Removes the row's models but those that other rows use as well.
    Q_INVOKABLE void remove(int row);
    /// Looks at the disk again.
    Q_INVOKABLE void refresh();
    /// The terms of a row's models as far as they are here, with all that lies with their files.
    Q_INVOKABLE QString licence(int row) const;

signals:
    void isInstallingChanged();
    /// An installation has come to its end, unless the user wished it: what to tell someone who listens
    /// instead of reading.
    void installationEnded(const QString &text);

private:
    struct Running;

    /// The row's models that no other row uses, and that can be removed.
    QList<const ModelEntry *> ownEntries(const ModelItem &item) const;
    bool isRemovable(const ModelItem &item) const;
    QString removalText(const ModelItem &item) const;
    int findRow(ModelKind kind, const QString &language) const;
    void changed(int row, const QList<int> &roles = {});
    void startNext();
    QCoro::Task<> run(std::shared_ptr<Running> running);
    void finish(const std::shared_ptr<Running> &running, const QString &errorText);

    const ModelStore &m_store;
    ModelInstaller m_installer;
    InstallationMemory m_memory;
    MonotonicTime m_time;
    QList<ModelItem> m_items; ///< row by row
    std::deque<std::shared_ptr<Running>> m_queue; ///< the first one is running
};

} // namespace lumaphone
