#include "cli/ModelsCommand.h"

#include "cli/TerminalText.h"
#include "models/ModelError.h"
#include "models/ModelInstaller.h"
#include "models/ModelStore.h"

#include <QLocale>

namespace lumaphone::cli {

namespace {

QString stateName(const ModelEntry &entry, const ModelStore &store)
{
    const ModelState state = store.state(entry);
    if (entry.isBundled && state == ModelState::installed) {
        return QStringLiteral("bundled");
    }
    switch (state) {
    case ModelState::missing:
        return QStringLiteral("missing");
    case ModelState::partial:
        return QStringLiteral("partial");
    case ModelState::installed:
        return QStringLiteral("installed");
    case ModelState::damaged:
        return QStringLiteral("damaged");
    }
    Q_UNREACHABLE();
}

QString dataSize(qint64 bytes, int decimals)
{
    return QLocale(QLocale::Chinese, QLocale::Taiwan)
        .formattedDataSize(bytes, decimals, QLocale::DataSizeSIFormat);
}

/// The model of that name, or the models that lead from one language to another, such as "ja-zh-Hant". Throws
/// ModelError.
QList<const ModelEntry *> modelsNamed(const QString &name, const ModelCatalogue &catalogue)
{
    if (const ModelEntry *entry = catalogue.find(name)) {
        return {entry};
    }
    const QString source = name.section(QLatin1Char('-'), 0, 0);
    const QString target = name.section(QLatin1Char('-'), 1);
    QList<const ModelEntry *> legs = catalogue.translationLegs(source, target);
    if (legs.isEmpty()) {
        throw ModelError(ModelError::Case::unknownModel, name);
    }
    return legs;
}

/// Shows how far an installation is: in place on a terminal, else a line for every tenth.
class ProgressLines
{
public:
    ProgressLines(const ModelEntry &entry, const CommandStreams &streams, std::optional<int> columns)
        : m_id(entry.id)
        , m_streams(streams)
        , m_isTerminal(columns.has_value())
    {
    }
    ~ProgressLines()
    {
        if (m_isOpen) {
            m_streams.messages("\n");
        }
    }
    ProgressLines(const ProgressLines &) = delete;
    ProgressLines &operator=(const ProgressLines &) = delete;

    void show(const ModelProgress &progress)
    {
        const qint64 step = progress.total && *progress.total > 0
            ? progress.done * 100 / *progress.total / (m_isTerminal ? 1 : 10)
            : progress.done / (m_isTerminal ? 200'000 : 10'000'000);
        if (m_lastPhase == progress.phase && m_lastStep == step) {
            return;
        }
        m_lastPhase = progress.phase;
        m_lastStep = step;
        const QString line = textOf(progress);
        if (m_isTerminal) {
            m_streams.messages(("\r\033[K" + line.toUtf8()));
            m_isOpen = true;
        } else {
            m_streams.complain(line);
        }
    }

private:
    QString textOf(const ModelProgress &progress) const
    {
        const QString what = progress.phase == ModelProgress::Phase::downloading
            ? QStringLiteral("下載中")
            : QStringLiteral("檢查並解開");
        const QString done = dataSize(progress.done, 1);
        if (!progress.total || *progress.total == 0) {
            return QStringLiteral("%1：%2 %3").arg(m_id, what, done);
        }
        return QStringLiteral("%1：%2 %3%（%4）")
            .arg(m_id, what)
            .arg(progress.done * 100 / *progress.total)
            .arg(done);
    }

    QString m_id;
    const CommandStreams &m_streams;
    bool m_isTerminal;
    bool m_isOpen = false;
    std::optional<ModelProgress::Phase> m_lastPhase;
    qint64 m_lastStep = -1;
};

QCoro::Task<> installOne(const ModelEntry &entry, ModelsInstall command, ModelInstaller &installer,
    const CommandStreams &streams, std::optional<int> columns, std::stop_token stop)
{
    streams.complain(QStringLiteral("%1：%2").arg(entry.id, entry.licence.text));
    ProgressLines lines(entry, streams, columns);
    const ModelProgressHandler onProgress = [&lines](const ModelProgress &progress) {
        lines.show(progress);
    };
    const LicenceConsent consent = command.acceptsLicence ? LicenceConsent::accepted : LicenceConsent::none;
    if (command.from.isEmpty()) {
        co_await installer.install(entry.id, consent, onProgress, stop);
    } else {
        co_await installer.installFrom(command.from, entry.id, consent, onProgress, stop);
    }
}

} // namespace

ExitStatus runModelsList(const ModelStore &store, const CommandStreams &streams)
{
    for (const ModelEntry &entry : store.catalogue().entries()) {
        const QString size = entry.knownSize() > 0 ? dataSize(entry.knownSize(), 0) : QStringLiteral("-");
        streams.print(
            QStringList {entry.id, stateName(entry, store), size, entry.title}.join(QLatin1Char('\t')));
    }
    return exitSuccess;
}

QCoro::Task<ExitStatus> runModelsInstall(ModelsInstall command, const ModelStore &store,
    ModelInstaller &installer, const CommandStreams &streams, std::optional<int> columns,
    std::stop_token stop)
{
    QList<const ModelEntry *> entries;
    for (const QString &name : command.names) {
        for (const ModelEntry *entry : modelsNamed(name, store.catalogue())) {
            store.demandNotBundled(*entry);
            if (!entries.contains(entry)) {
                entries.append(entry);
            }
        }
    }
    for (const ModelEntry *entry : entries) {
        if (command.from.isEmpty() && store.state(*entry) == ModelState::installed) {
            streams.print(QStringLiteral("%1 已經安裝。").arg(entry->id));
            continue;
        }
        try {
            co_await installOne(*entry, command, installer, streams, columns, stop);
        } catch (const ModelError &error) {
            if (error.errorCase() != ModelError::Case::licenceNotAccepted) {
                throw;
            }
            streams.complain(error.errorDescription());
            streams.complain(QStringLiteral("若要接受，請加上 --accept-licence 再執行一次。"));
            co_return exitFailure;
        }
        streams.print(QStringLiteral("%1 安裝完成。").arg(entry->id));
    }
    co_return exitSuccess;
}

ExitStatus runModelsRemove(
    const ModelsRemove &command, const ModelStore &store, const CommandStreams &streams)
{
    for (const QString &name : command.names) {
        // The second leg of a pair serves other pairs as well.
        const ModelEntry &entry = *modelsNamed(name, store.catalogue()).constFirst();
        store.demandNotBundled(entry);
        if (store.state(entry) == ModelState::missing) {
            streams.print(QStringLiteral("%1 沒有安裝。").arg(entry.id));
            continue;
        }
        store.remove(entry);
        streams.print(QStringLiteral("%1 已移除。").arg(entry.id));
    }
    return exitSuccess;
}

ExitStatus runModelsVerify(
    const ModelsVerify &command, const ModelStore &store, const CommandStreams &streams)
{
    QList<const ModelEntry *> entries;
    for (const QString &name : command.names) {
        entries.append(modelsNamed(name, store.catalogue()));
    }
    if (command.names.isEmpty()) {
        for (const ModelEntry &entry : store.catalogue().entries()) {
            const ModelState state = store.state(entry);
            if (state == ModelState::installed || state == ModelState::damaged) {
                entries.append(&entry);
            }
        }
    }
    ExitStatus status = exitSuccess;
    for (const ModelEntry *entry : entries) {
        try {
            store.verify(*entry);
            streams.print(QStringLiteral("%1 完好。").arg(entry->id));
        } catch (const LocalizedError &error) {
            streams.complain(QStringLiteral("%1：%2").arg(entry->id, error.errorDescription()));
            status = exitFailure;
        }
    }
    return status;
}

ExitStatus runModelsLicence(
    const ModelsLicence &command, const ModelStore &store, const CommandStreams &streams)
{
    QStringList texts;
    for (const QString &name : command.names) {
        for (const ModelEntry *entry : modelsNamed(name, store.catalogue())) {
            texts.append(
                QStringLiteral("%1：%2\n%3").arg(entry->id, entry->title, store.licenceText(*entry)));
        }
    }
    texts.removeDuplicates();
    streams.print(severalRows(texts.join(QStringLiteral("\n\n"))));
    return exitSuccess;
}

} // namespace lumaphone::cli
