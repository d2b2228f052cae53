#pragma once

#include "models/ModelInstaller.h"
#include "models/ModelStore.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>

#include <deque>
#include <memory>
#include <optional>
#include <stop_token>

namespace lumaphone {

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
        LicenceTextRole, ///< text for the user
        MustAcceptLicenceRole, ///< bool: before the installation
        InstallTitleRole, ///< text of the button: install, go on or repair
    };
    Q_ENUM(Role)

    /// `store` outlives the model.
    ModelsModel(const ModelStore &store, std::shared_ptr<MainQueue> mainQueue,
        ModelInstallerOptions options = {}, QObject *parent = nullptr);
    /// Installations under way end; they can go on another time.
    ~ModelsModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool isInstalling() const;

    /// Begins to fetch what is missing. Without effect while the row is being installed or is ready.
    Q_INVOKABLE void install(int row, bool acceptsLicence = false);
    /// Ends an installation; what has been fetched is kept.
    Q_INVOKABLE void cancel(int row);
    /// Removes the row's own models; those that other rows use as well stay.
    Q_INVOKABLE void remove(int row);
    /// Looks at the disk again.
    Q_INVOKABLE void refresh();

signals:
    void isInstallingChanged();

private:
    /// One thing that the user may want.
    struct Row
    {
        QString title;
        QList<const ModelEntry *> entries;
        bool isQueued = false;
        std::optional<ModelProgress> progress;
        QString errorText;
    };
    struct Running;

    ModelState stateOf(const Row &row) const;
    QString statusText(const Row &row) const;
    void changed(int row);
    void startNext();
    QCoro::Task<> run(std::shared_ptr<Running> running);
    void finish(const std::shared_ptr<Running> &running, const QString &errorText);

    const ModelStore &m_store;
    ModelInstaller m_installer;
    QList<Row> m_rows;
    std::deque<std::shared_ptr<Running>> m_queue; ///< the first one is running
};

} // namespace lumaphone
