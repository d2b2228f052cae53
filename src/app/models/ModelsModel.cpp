#include "app/models/ModelsModel.h"

#include "app/models/ModelTexts.h"
#include "base/AtomicFile.h"
#include "models/ModelError.h"

#include <algorithm>
#include <chrono>
#include <numeric>
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

namespace {

/// What these models take, as far as it is known.
qint64 downloadSize(const QList<const ModelEntry *> &entries)
{
    return std::accumulate(entries.begin(), entries.end(), qint64 {0},
        [](qint64 sum, const ModelEntry *entry) { return sum + entry->knownDownloadSize().value_or(0); });
}

} // namespace

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
        Row row;
        row.group = group;
        m_rows.append(row);
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
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
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

ModelState ModelsModel::stateOf(const Row &row) const
{
    return groupState(row.group, m_store);
}

QString ModelsModel::statusText(const Row &row) const
{
    if (row.isQueued) {
        if (!row.progress) {
            return QStringLiteral("等候中...");
        }
        return row.progress->phase == ModelProgress::Phase::downloading
            ? downloadText(*row.progress, row.pace, row.later)
            : QStringLiteral("正在檢查並解開...");
    }
    if (!row.errorText.isEmpty()) {
        return row.errorText;
    }
    const bool isBundled = row.group.isBundled();
    switch (stateOf(row)) {
    case ModelState::missing:
        return isBundled ? QStringLiteral("這個版本沒有附上。請執行 packaging/install-speech-runtime "
                                          "後重新建置，或改裝完整的套件。")
                         : QStringLiteral("尚未安裝") + sizeText(row);
    case ModelState::partial:
        return QStringLiteral("已暫停，按「繼續」接著下載");
    case ModelState::installed:
        return isBundled ? QStringLiteral("Lumaphone 內建，可離線使用")
                         : QStringLiteral("已安裝，可離線使用");
    case ModelState::damaged:
        return isBundled ? QStringLiteral("檔案已損壞。請重新安裝 Lumaphone，"
                                          "或再執行一次 packaging/install-speech-runtime。")
                         : QStringLiteral("檔案已損壞");
    }
    Q_UNREACHABLE();
}

void ModelsModel::note(Row &row, const ModelProgress &progress)
{
    row.progress = progress;
    if (progress.phase == ModelProgress::Phase::downloading) {
        row.pace.note(m_time(), progress.done);
    }
}

QString ModelsModel::sizeText(const Row &row) const
{
    qint64 download = 0;
    qint64 unpacked = 0;
    bool isDownloadKnown = true;
    for (const ModelEntry *entry : neededModels(row.group, m_store)) {
        if (m_store.state(*entry) == ModelState::installed) {
            continue;
        }
        const auto size = entry->knownDownloadSize();
        isDownloadKnown = isDownloadKnown && size;
        download += size.value_or(0);
        unpacked += entry->knownSize();
    }
    if (isDownloadKnown && download > 0) {
        return QStringLiteral("，下載約 %1").arg(dataSize(download));
    }
    return unpacked > 0 ? QStringLiteral("，安裝後約 %1").arg(dataSize(unpacked)) : QString();
}

QList<const ModelEntry *> ModelsModel::missing(QList<const ModelEntry *> entries) const
{
    entries.removeIf(
        [this](const ModelEntry *entry) { return m_store.state(*entry) == ModelState::installed; });
    return entries;
}

QList<const ModelEntry *> ModelsModel::ownEntries(const Row &row) const
{
    QList<const ModelEntry *> own;
    if (row.group.isBundled()) {
        return own;
    }
    for (const ModelEntry *entry : row.group.entries) {
        const auto users = std::count_if(m_rows.begin(), m_rows.end(),
            [entry](const Row &other) { return other.group.entries.contains(entry); });
        // What a row is about is its own, even if others build on it.
        if (users == 1 || entry == row.group.entries.constFirst()) {
            own.append(entry);
        }
    }
    return own;
}

bool ModelsModel::isRemovable(const Row &row) const
{
    const auto own = ownEntries(row);
    return !row.isQueued && std::any_of(own.begin(), own.end(), [this](const ModelEntry *entry) {
        return m_store.state(*entry) != ModelState::missing;
    });
}

QString ModelsModel::removalText(const Row &row) const
{
    const auto own = ownEntries(row);
    QStringList others;
    for (const Row &other : m_rows) {
        const bool losesSomething = std::any_of(own.begin(), own.end(),
            [&other](const ModelEntry *entry) { return other.group.entries.contains(entry); });
        if (&other != &row && losesSomething && stateOf(other) == ModelState::installed) {
            others.append(QStringLiteral("「%1」").arg(other.group.title));
        }
    }
    const QString later = QStringLiteral("之後要用時，需要重新下載。");
    return others.isEmpty()
        ? later
        : QStringLiteral("%1也要用到它，會一起停用。").arg(others.join(QStringLiteral("、"))) + later;
}

int ModelsModel::findRow(ModelKind kind, const QString &language) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [kind, &language](const Row &row) {
        const ModelGroup &group = row.group;
        return group.kind == kind && !group.isBundled() && group.languages.contains(language);
    });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
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
    const Row &row = m_rows[index.row()];
    switch (role) {
    case TitleRole:
    case Qt::DisplayRole:
        return row.group.title;
    case StatusTextRole:
        return statusText(row);
    case IsReadyRole:
        return stateOf(row) == ModelState::installed;
    case IsInstallingRole:
        return row.isQueued;
    case ProgressRole:
        return row.progress && row.progress->total && *row.progress->total > 0
            ? static_cast<double>(row.progress->done) / static_cast<double>(*row.progress->total)
            : -1.0;
    case IsErrorRole:
        return !row.errorText.isEmpty();
    case LicenceTextRole:
        return licenceText(neededModels(row.group, m_store));
    case HasLicenceRole:
        return hasLicence(row);
    case MustAcceptLicenceRole: {
        const auto needed = neededModels(row.group, m_store);
        return std::any_of(needed.begin(), needed.end(), [this](const ModelEntry *entry) {
            return entry->licence.mustBeAccepted && m_store.state(*entry) != ModelState::installed;
        });
    }
    case IsInstallableRole:
        return !row.group.isBundled();
    case InstallTitleRole:
        switch (stateOf(row)) {
        case ModelState::missing:
        case ModelState::installed:
            return QStringLiteral("安裝");
        case ModelState::partial:
            return QStringLiteral("繼續");
        case ModelState::damaged:
            return QStringLiteral("修復");
        }
        Q_UNREACHABLE();
    case IsRemovableRole:
        return isRemovable(row);
    case RemovalTextRole:
        return removalText(row);
    default:
        return {};
    }
}

bool ModelsModel::hasLicence(const Row &row) const
{
    const auto &entries = row.group.entries;
    return std::any_of(entries.begin(), entries.end(), [this](const ModelEntry *entry) {
        const auto model = m_store.installed(*entry);
        return model && model->path(QStringLiteral("licence"));
    });
}

QString ModelsModel::licence(int row) const
{
    const QList<const ModelEntry *> entries = neededModels(m_rows[row].group, m_store);
    QStringList texts;
    for (const ModelEntry *entry : entries) {
        const QString title = entries.size() > 1 ? entry->title + QStringLiteral("\n\n") : QString();
        try {
            texts.append(title + m_store.licenceText(*entry));
        } catch (const FileError &error) {
            texts.append(title + error.errorDescription());
        }
    }
    return texts.join(QStringLiteral("\n\n"));
}

bool ModelsModel::isInstalling() const
{
    return !m_queue.empty();
}

void ModelsModel::install(int row, bool acceptsLicence)
{
    Row &wanted = m_rows[row];
    if (wanted.isQueued || wanted.group.isBundled() || stateOf(wanted) == ModelState::installed) {
        return;
    }
    wanted.isQueued = true;
    wanted.errorText.clear();
    m_memory.begin({wanted.group.entries.constFirst()->id, acceptsLicence});
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
        const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&installation](const Row &row) {
            return row.group.entries.constFirst()->id == installation.id;
        });
        if (found == m_rows.end() || stateOf(*found) == ModelState::installed) {
            m_memory.end(installation.id); // in a terminal, perhaps
        } else {
            install(static_cast<int>(found - m_rows.begin()), installation.acceptsLicence);
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
    m_memory.end(m_rows[row].group.entries.constFirst()->id);
    running->stop.request_stop();
    if (found != m_queue.begin()) { // it has not begun, so nobody else will end it
        m_queue.erase(found);
        m_rows[running->row].isQueued = false;
        changed(running->row);
    }
}

void ModelsModel::remove(int row)
{
    Row &wanted = m_rows[row];
    if (wanted.isQueued) {
        return;
    }
    wanted.errorText.clear();
    try {
        for (const ModelEntry *entry : ownEntries(wanted)) {
            m_store.remove(*entry);
        }
    } catch (const LocalizedError &error) {
        wanted.errorText = error.errorDescription();
    }
    refresh();
}

void ModelsModel::refresh()
{
    if (!m_rows.isEmpty()) {
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
        if (!running->isAbandoned && m_rows[running->row].isQueued) {
            note(m_rows[running->row], progress);
            changed(running->row, {StatusTextRole, ProgressRole});
        }
    };
    QString errorText;
    try {
        const QList<const ModelEntry *> entries = neededModels(m_rows[running->row].group, m_store);
        for (qsizetype number = 0; number < entries.size(); ++number) {
            const ModelEntry *entry = entries[number];
            m_rows[running->row].pace.forget();
            m_rows[running->row].later = downloadSize(missing(entries.mid(number + 1)));
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
    Row &row = m_rows[running->row];
    row.isQueued = false;
    row.progress.reset();
    row.pace.forget();
    m_memory.end(row.group.entries.constFirst()->id);
    row.errorText = errorText;
    m_queue.pop_front();
    refresh(); // other rows may use the same models
    if (m_queue.empty()) {
        emit isInstallingChanged();
    }
    if (!running->stop.stop_requested()) {
        emit installationEnded(QStringLiteral("%1：%2").arg(row.group.title, statusText(row)));
    }
    startNext();
}

} // namespace lumaphone
