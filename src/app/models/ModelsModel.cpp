#include "app/models/ModelsModel.h"

#include "app/models/ModelTexts.h"
#include "base/LocalizedError.h"
#include "models/ModelError.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumaphone {

/// An installation, from the click to its end.
struct ModelsModel::Running
{
    int row;
    LicenceConsent consent;
    std::stop_source stop;
    bool isAbandoned = false; ///< its model is gone
};

ModelsModel::ModelsModel(const ModelStore &store, std::shared_ptr<MainQueue> mainQueue,
    InstallationMemory memory, MonotonicTime time, ModelInstallerOptions options, QObject *parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_installer(store, std::move(mainQueue), options)
    , m_memory(memory)
    , m_time(time ? std::move(time) : [] { return std::chrono::steady_clock::now().time_since_epoch(); })
{
    const QList<ModelGroup> groups = modelGroups(m_store.catalogue());
    for (const ModelGroup &group : groups) {
        m_items.append(ModelItem(group, m_store));
    }
}

ModelsModel::~ModelsModel()
{
    for (const auto &running : m_queue) {
        running->isAbandoned = true;
        running->stop.request_stop();
    }
}

int ModelsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QHash<int, QByteArray> ModelsModel::roleNames() const
{
    return {{TitleRole, "title"}, {StatusTextRole, "statusText"}, {IsReadyRole, "isReady"},
        {IsInstallingRole, "isInstalling"}, {ProgressRole, "progress"}, {IsErrorRole, "isError"},
        {LicenceTextRole, "licenceText"}, {HasLicenceRole, "hasLicence"},
        {IsInstallableRole, "isInstallable"}, {MustAcceptLicenceRole, "mustAcceptLicence"},
        {InstallTitleRole, "installTitle"}, {IsRemovableRole, "isRemovable"},
        {RemovalTextRole, "removalText"}};
}

QList<const ModelEntry *> ModelsModel::ownEntries(const ModelItem &item) const
{
    QList<const ModelEntry *> own;
    if (item.group().isBundled()) {
        return own;
    }
    for (const ModelEntry *entry : item.group().entries) {
        const auto users = std::count_if(m_items.begin(), m_items.end(),
            [entry](const ModelItem &other) { return other.group().entries.contains(entry); });
        // What a row is about is its own, even if others build on it.
        if (users == 1 || entry == item.group().entries.constFirst()) {
            own.append(entry);
        }
    }
    return own;
}

bool ModelsModel::isRemovable(const ModelItem &item) const
{
    const auto own = ownEntries(item);
    return !item.isQueued() && std::any_of(own.begin(), own.end(), [this](const ModelEntry *entry) {
        return m_store.state(*entry) != ModelState::missing;
    });
}

QString ModelsModel::removalText(const ModelItem &item) const
{
    const auto own = ownEntries(item);
    QStringList others;
    for (const ModelItem &other : m_items) {
        const bool losesSomething = std::any_of(own.begin(), own.end(),
            [&other](const ModelEntry *entry) { return other.group().entries.contains(entry); });
        if (&other != &item && losesSomething && other.isReady()) {
            others.append(QStringLiteral("「%1」").arg(other.title()));
        }
    }
    const QString later = QStringLiteral("之後要用時，需要重新下載。");
    return others.isEmpty()
        ? later
        : QStringLiteral("%1也要用到它，會一起停用。").arg(others.join(QStringLiteral("、"))) + later;
}

int ModelsModel::findRow(ModelKind kind, const QString &language) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(), [kind, &language](const ModelItem &item) {
        const ModelGroup &group = item.group();
        return group.kind == kind && !group.isBundled() && group.languages.contains(language);
    });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

int ModelsModel::speechRow(const QString &language) const
{
    return findRow(ModelKind::speech, language);
}

int ModelsModel::translationRow(const QString &language) const
{
    return findRow(ModelKind::translation, language);
}

QVariant ModelsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const ModelItem &item = m_items[index.row()];
    switch (role) {
    case TitleRole:
    case Qt::DisplayRole:
        return item.title();
    case StatusTextRole:
        return item.statusText();
    case IsReadyRole:
        return item.isReady();
    case IsInstallingRole:
        return item.isQueued();
    case ProgressRole:
        return item.progress();
    case IsErrorRole:
        return item.isError();
    case LicenceTextRole:
        return licenceText(item.needed());
    case HasLicenceRole:
        return item.hasLicence();
    case MustAcceptLicenceRole:
        return item.mustAcceptLicence();
    case IsInstallableRole:
        return !item.group().isBundled();
    case InstallTitleRole:
        return item.installTitle();
    case IsRemovableRole:
        return isRemovable(item);
    case RemovalTextRole:
        return removalText(item);
    default:
        return {};
    }
}

QString ModelsModel::licence(int row) const
{
    return m_items[row].wholeLicence();
}

bool ModelsModel::isInstalling() const
{
    return !m_queue.empty();
}

void ModelsModel::install(int row, bool acceptsLicence)
{
    ModelItem &wanted = m_items[row];
    if (wanted.isQueued() || wanted.group().isBundled() || wanted.isReady()) {
        return;
    }
    wanted.queue();
    m_memory.begin({wanted.id(), acceptsLicence});
    m_queue.push_back(std::make_shared<Running>(
        Running {row, acceptsLicence ? LicenceConsent::accepted : LicenceConsent::none, {}}));
    changed(row);
    if (m_queue.size() == 1) {
        emit isInstallingChanged();
        startNext();
    }
}

void ModelsModel::resumeInstallations()
{
    const auto remembered = m_memory.installations();
    for (const InstallationMemory::Installation &installation : remembered) {
        const auto found = std::find_if(m_items.begin(), m_items.end(),
            [&installation](const ModelItem &item) { return item.id() == installation.id; });
        if (found == m_items.end() || found->isReady()) {
            m_memory.end(installation.id); // in a terminal, perhaps
        } else {
            install(static_cast<int>(found - m_items.begin()), installation.acceptsLicence);
        }
    }
}

void ModelsModel::cancel(int row)
{
    const auto found = std::find_if(
        m_queue.begin(), m_queue.end(), [row](const auto &running) { return running->row == row; });
    if (found == m_queue.end()) {
        return;
    }
    const std::shared_ptr<Running> running = *found;
    m_memory.end(m_items[row].id());
    running->stop.request_stop();
    if (found != m_queue.begin()) { // it has not begun, so nobody else will end it
        m_queue.erase(found);
        m_items[running->row].leaveQueue();
        changed(running->row);
    }
}

void ModelsModel::remove(int row)
{
    ModelItem &wanted = m_items[row];
    if (wanted.isQueued()) {
        return;
    }
    wanted.setErrorText({});
    try {
        for (const ModelEntry *entry : ownEntries(wanted)) {
            m_store.remove(*entry);
        }
    } catch (const LocalizedError &error) {
        wanted.setErrorText(error.errorDescription());
    }
    refresh();
}

void ModelsModel::refresh()
{
    if (!m_items.isEmpty()) {
        emit dataChanged(index(0), index(rowCount() - 1));
    }
}

void ModelsModel::changed(int row, const QList<int> &roles)
{
    const QModelIndex place = index(row);
    emit dataChanged(place, place, roles);
}

void ModelsModel::startNext()
{
    if (!m_queue.empty()) {
        run(m_queue.front());
    }
}

QCoro::Task<> ModelsModel::run(std::shared_ptr<Running> running)
{
    const ModelProgressHandler onProgress = [this, running](const ModelProgress &progress) {
        if (!running->isAbandoned && m_items[running->row].isQueued()) {
            m_items[running->row].note(progress, m_time());
            changed(running->row, {StatusTextRole, ProgressRole});
        }
    };
    QString errorText;
    try {
        const QList<const ModelEntry *> entries = m_items[running->row].needed();
        for (qsizetype number = 0; number < entries.size(); ++number) {
            const ModelEntry *entry = entries[number];
            m_items[running->row].beginFirstOf(entries.mid(number));
            co_await m_installer.install(entry->id, running->consent, onProgress, running->stop.get_token());
            if (running->isAbandoned) {
                co_return;
            }
        }
    } catch (const ModelError &error) {
        const bool isWished = error.errorCase() == ModelError::Case::cancelled;
        errorText = isWished ? QString() : error.errorDescription();
    } catch (const std::exception &error) {
        errorText = localizedDescription(error);
    }
    if (!running->isAbandoned) {
        finish(running, errorText);
    }
}

void ModelsModel::finish(const std::shared_ptr<Running> &running, const QString &errorText)
{
    ModelItem &item = m_items[running->row];
    item.end(errorText);
    m_memory.end(item.id());
    m_queue.pop_front();
    refresh(); // other rows may use the same models
    if (m_queue.empty()) {
        emit isInstallingChanged();
    }
    if (!running->stop.stop_requested()) {
        emit installationEnded(QStringLiteral("%1：%2").arg(item.title(), item.statusText()));
    }
    startNext();
}

} // namespace lumaphone
