#include "models/ModelsModel.h"

#include "models/ModelError.h"

#include <QLocale>

#include <algorithm>
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

QString languageName(const QString &identifier)
{
    static const QHash<QString, QString> names {{QStringLiteral("ja"), QStringLiteral("日文")},
        {QStringLiteral("en"), QStringLiteral("英文")}, {QStringLiteral("ko"), QStringLiteral("韓文")}};
    return names.value(identifier, identifier);
}

} // namespace

ModelsModel::ModelsModel(const ModelStore &store, std::shared_ptr<MainQueue> mainQueue,
    ModelInstallerOptions options, QObject *parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_installer(store, std::move(mainQueue), options)
{
    const QString target = QStringLiteral("zh-Hant");
    const ModelCatalogue &catalogue = m_store.catalogue();
    for (const ModelEntry &entry : catalogue.entries()) {
        if (entry.kind == ModelKind::speech) {
            m_rows.append({entry.title, {&entry}, false, {}, {}});
            continue;
        }
        const QString &source = entry.languages.constFirst();
        const auto legs = catalogue.translationLegs(source, target);
        if (!legs.isEmpty() && legs.constFirst() == &entry) {
            m_rows.append(
                {QStringLiteral("%1翻譯成繁體中文").arg(languageName(source)), legs, false, {}, {}});
        }
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
        {LicenceTextRole, "licenceText"}, {MustAcceptLicenceRole, "mustAcceptLicence"},
        {InstallTitleRole, "installTitle"}};
}

ModelState ModelsModel::stateOf(const Row &row) const
{
    ModelState worst = ModelState::installed;
    for (const ModelEntry *entry : row.entries) {
        const ModelState state = m_store.state(*entry);
        if (state == ModelState::installed || worst == ModelState::damaged) {
            continue;
        }
        worst = state == ModelState::damaged || worst == ModelState::installed ? state : worst;
        worst = state == ModelState::partial ? state : worst;
    }
    return worst;
}

QString ModelsModel::statusText(const Row &row) const
{
    if (row.isQueued) {
        if (!row.progress) {
            return QStringLiteral("等候中...");
        }
        const QString done = QLocale().formattedDataSize(row.progress->done, 1, QLocale::DataSizeSIFormat);
        return row.progress->phase == ModelProgress::Phase::downloading
            ? QStringLiteral("下載中... %1").arg(done)
            : QStringLiteral("正在檢查並解開...");
    }
    if (!row.errorText.isEmpty()) {
        return row.errorText;
    }
    switch (stateOf(row)) {
    case ModelState::missing:
        return QStringLiteral("尚未安裝");
    case ModelState::partial:
        return QStringLiteral("還沒有安裝完成");
    case ModelState::installed:
        return QStringLiteral("已安裝，可離線使用");
    case ModelState::damaged:
        return QStringLiteral("檔案已損壞");
    }
    Q_UNREACHABLE();
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
        return row.title;
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
        return row.entries.constFirst()->licence.text;
    case MustAcceptLicenceRole:
        return std::any_of(row.entries.begin(), row.entries.end(), [this](const ModelEntry *entry) {
            return entry->licence.mustBeAccepted && m_store.state(*entry) != ModelState::installed;
        });
    case InstallTitleRole:
        switch (stateOf(row)) {
        case ModelState::missing:
        case ModelState::installed:
            return QStringLiteral("安裝");
        case ModelState::partial:
            return QStringLiteral("繼續安裝");
        case ModelState::damaged:
            return QStringLiteral("重新安裝");
        }
        Q_UNREACHABLE();
    default:
        return {};
    }
}

bool ModelsModel::isInstalling() const
{
    return !m_queue.empty();
}

void ModelsModel::install(int row, bool acceptsLicence)
{
    Row &wanted = m_rows[row];
    if (wanted.isQueued || stateOf(wanted) == ModelState::installed) {
        return;
    }
    wanted.isQueued = true;
    wanted.errorText.clear();
    m_queue.push_back(std::make_shared<Running>(
        Running {row, acceptsLicence ? LicenceConsent::accepted : LicenceConsent::none, {}}));
    changed(row);
    if (m_queue.size() == 1) {
        emit isInstallingChanged();
        startNext();
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
        m_store.remove(*wanted.entries.constFirst());
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

void ModelsModel::changed(int row)
{
    const QModelIndex place = index(row);
    emit dataChanged(place, place);
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
            m_rows[running->row].progress = progress;
            changed(running->row);
        }
    };
    QString errorText;
    try {
        const QList<const ModelEntry *> entries = m_rows[running->row].entries;
        for (const ModelEntry *entry : entries) {
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
    row.errorText = errorText;
    m_queue.pop_front();
    refresh(); // other rows may use the same models
    if (m_queue.empty()) {
        emit isInstallingChanged();
    }
    startNext();
}

} // namespace lumaphone
