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

QString dataSize(qint64 bytes)
{
    return QLocale(QLocale::Chinese, QLocale::Taiwan).formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

/// Whether it recognizes speech by itself, instead of helping those that do.
bool isRecognizer(const ModelEntry &entry)
{
    const QList<ModelFile> files = entry.files();
    return std::any_of(files.begin(), files.end(),
        [](const ModelFile &file) { return file.role == QStringLiteral("model"); });
}

bool shareALanguage(const ModelEntry &one, const ModelEntry &other)
{
    return std::any_of(one.languages.begin(), one.languages.end(),
        [&other](const QString &language) { return other.languages.contains(language); });
}

/// The recogniser, and the models that help it.
QList<const ModelEntry *> speechEntries(const ModelEntry &recognizer, const ModelCatalogue &catalogue)
{
    QList<const ModelEntry *> entries {&recognizer};
    for (const ModelEntry &entry : catalogue.entries()) {
        if (entry.kind == ModelKind::speech && !isRecognizer(entry) && shareALanguage(entry, recognizer)) {
            entries.append(&entry);
        }
    }
    return entries;
}

QString licenceText(const QList<const ModelEntry *> &entries)
{
    const QString own = entries.constFirst()->licence.text;
    QStringList texts {own};
    for (const ModelEntry *entry : entries) {
        if (entry->licence.text != own) {
            texts.append(QStringLiteral("%1：%2").arg(entry->title, entry->licence.text));
        }
    }
    return texts.join(QLatin1Char('\n'));
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
            if (isRecognizer(entry)) {
                m_rows.append({entry.kind, entry.title, entry.languages, speechEntries(entry, catalogue),
                    false, {}, {}});
            }
            continue;
        }
        const QString &source = entry.languages.constFirst();
        const auto legs = catalogue.translationLegs(source, target);
        if (!legs.isEmpty() && legs.constFirst() == &entry) {
            m_rows.append({entry.kind, QStringLiteral("%1翻譯成繁體中文").arg(languageName(source)), {source},
                legs, false, {}, {}});
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
        {InstallTitleRole, "installTitle"}, {IsRemovableRole, "isRemovable"},
        {RemovalTextRole, "removalText"}};
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
        return QStringLiteral("尚未安裝") + sizeText(row);
    case ModelState::partial:
        return QStringLiteral("還沒有安裝完成");
    case ModelState::installed:
        return QStringLiteral("已安裝，可離線使用");
    case ModelState::damaged:
        return QStringLiteral("檔案已損壞");
    }
    Q_UNREACHABLE();
}

QString ModelsModel::sizeText(const Row &row) const
{
    qint64 download = 0;
    qint64 unpacked = 0;
    bool isDownloadKnown = true;
    for (const ModelEntry *entry : row.entries) {
        if (m_store.state(*entry) == ModelState::installed) {
            continue;
        }
        const auto size = entry->knownDownloadSize();
        isDownloadKnown = isDownloadKnown && size;
        download += size.value_or(0);
        for (const ModelFile &file : entry->files()) {
            unpacked += file.size.value_or(0);
        }
    }
    if (isDownloadKnown && download > 0) {
        return QStringLiteral("，下載約 %1").arg(dataSize(download));
    }
    return unpacked > 0 ? QStringLiteral("，安裝後約 %1").arg(dataSize(unpacked)) : QString();
}

QList<const ModelEntry *> ModelsModel::ownEntries(const Row &row) const
{
    QList<const ModelEntry *> own;
    for (const ModelEntry *entry : row.entries) {
        const auto users = std::count_if(m_rows.begin(), m_rows.end(),
            [entry](const Row &other) { return other.entries.contains(entry); });
        // What a row is about is its own, even if others build on it.
        if (users == 1 || entry == row.entries.constFirst()) {
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
            [&other](const ModelEntry *entry) { return other.entries.contains(entry); });
        if (&other != &row && losesSomething && stateOf(other) == ModelState::installed) {
            others.append(QStringLiteral("「%1」").arg(other.title));
        }
    }
    const QString later = QStringLiteral("之後要用時，需要重新下載。");
    return others.isEmpty()
        ? later
        : QStringLiteral("%1也要用到它，會一起停用。").arg(others.join(QStringLiteral("、"))) + later;
}

int ModelsModel::findRow(ModelKind kind, const QString &language) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
        [kind, &language](const Row &row) { return row.kind == kind && row.languages.contains(language); });
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
        return licenceText(row.entries);
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
            m_rows[running->row].progress = progress;
            changed(running->row, {StatusTextRole, ProgressRole});
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
    if (!running->stop.stop_requested()) {
        emit installationEnded(QStringLiteral("%1：%2").arg(row.title, statusText(row)));
    }
    startNext();
}

} // namespace lumaphone
