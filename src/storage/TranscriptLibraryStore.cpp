#include "storage/TranscriptLibraryStore.h"

#include "base/AtomicFile.h"
#include "base/LocalizedDate.h"
#include "base/Text.h"
#include "storage/LumaphoneSettings.h"
#include "storage/RecordCoding.h"
#include "storage/TranscriptFolder.h"
#include "storage/TranscriptLibraryError.h"
#include "storage/TranscriptStorageError.h"

#include <QFileInfo>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

QString messageFor(const LocalizedError &error)
{
    const bool isOurs = dynamic_cast<const TranscriptLibraryError *>(&error) != nullptr;
    return (isOurs ? QString() : QStringLiteral("Transcript Library 錯誤：")) + error.errorDescription();
}

std::optional<QDateTime> wholeSeconds(const std::optional<QDateTime> &date)
{
    return date ? std::optional(recordcoding::wholeSeconds(*date)) : std::nullopt;
}

QString providerName(const LumaphoneSettings &settings)
{
    switch (settings.processingMode()) {
    case LumaphoneProcessingMode::appleMode:
        return QStringLiteral("Apple Translation");
    case LumaphoneProcessingMode::customAPI:
        return QStringLiteral("自定義 API：") + settings.providerModel();
    }
    Q_UNREACHABLE();
}

/// Throws TranscriptStorageError for a text that would not come back as it is.
void requireStorable(const QString &text, const QString &where)
{
    if (!text.isValidUtf16()) {
        throw TranscriptStorageError(TranscriptStorageError::Case::unpairedSurrogate, where);
    }
}

void requireStorable(const TranscriptDocument &document)
{
    requireStorable(document.metadata.title, QStringLiteral("標題"));
    requireStorable(document.metadata.note, QStringLiteral("備註"));
    requireStorable(document.metadata.providerName, QStringLiteral("Model 名稱"));
    for (qsizetype i = 0; i < document.lines.size(); ++i) {
        const QString number = QString::number(i + 1);
        requireStorable(document.lines[i].sourceText, QStringLiteral("第 %1 段原文").arg(number));
        requireStorable(document.lines[i].translatedText, QStringLiteral("第 %1 段譯文").arg(number));
    }
    for (const SavedGlossaryTerm &term : document.metadata.glossaryTerms) {
        requireStorable(term.source + term.target, QStringLiteral("術語"));
    }
}

/// Sets what follows from the other values.
void complete(TranscriptDocument &document)
{
    document.metadata.lineCount = document.lines.size();
    document.metadata.searchText = document.searchText();
}

auto hasId(const QUuid &id)
{
    return [id](const TranscriptRecordMetadata &record) {
        return record.id == id;
    };
}

} // namespace

TranscriptLibraryStore::TranscriptLibraryStore(Environment environment, QObject *parent)
    : QObject(parent)
    , m_environment(std::move(environment))
    , m_compactor(m_environment.areRevisions)
    , m_index(m_environment.layout)
    , m_search(m_environment.locale)
{
    try {
        load();
        if (!m_environment.layout.root) {
            throw TranscriptStorageError(TranscriptStorageError::Case::noDataFolder);
        }
    } catch (const LocalizedError &error) {
        setLastErrorMessage(messageFor(error));
    }
}

/// Runs an operation; its failure becomes the message before it goes on to the caller.
template<typename Operation> auto TranscriptLibraryStore::attempt(Operation operation)
{
    Q_ASSERT(thread() == QThread::currentThread());
    try {
        return operation();
    } catch (const LocalizedError &error) {
        setLastErrorMessage(messageFor(error));
        throw;
    }
}

/// Runs an operation that changes the library, on top of what other processes have written.
template<typename Change> void TranscriptLibraryStore::change(Change operation)
{
    attempt([&] {
        createFolder(m_environment.layout.sessions);
        const FileLock lock = m_index.lock();
        refresh();
        operation();
    });
    setLastErrorMessage(std::nullopt);
}

void TranscriptLibraryStore::load()
{
    createFolder(QFileInfo(m_environment.layout.index).path());
    createFolder(m_environment.layout.sessions);
    try {
        setRecords(m_index.read());
    } catch (const LocalizedError &damage) {
        const FileLock lock = m_index.lock();
        rebuild(damage);
    }
    m_index.endInterruptedTransition();
}

/// Takes over what another process has written. From a file that it has damaged, which is kept beside the
/// next one, or removed, nothing is lost: the session folders say of themselves what they are.
void TranscriptLibraryStore::refresh()
{
    if (m_index.exists() && !m_index.hasChanged()) {
        return;
    }
    QList<TranscriptRecordMetadata> records;
    try {
        records = m_index.exists() ? m_index.read() : withFolders(m_records);
    } catch (const LocalizedError &) {
        keepAside(m_environment.layout.index);
        records = withFolders(m_records);
    }
    m_search.forgetAll();
    setRecords(records);
}

/// The records and those of session folders that are not among them.
QList<TranscriptRecordMetadata> TranscriptLibraryStore::withFolders(
    QList<TranscriptRecordMetadata> records) const
{
    for (const TranscriptRecordMetadata &found : m_index.rebuilt().records) {
        if (std::none_of(records.cbegin(), records.cend(), hasId(found.id))) {
            records.append(found);
        }
    }
    sortNewestFirst(records);
    return records;
}

void TranscriptLibraryStore::rebuild(const LocalizedError &damage)
{
    const TranscriptIndex::Rebuilt rebuilt = m_index.rebuilt();
    // In memory first: the user sees the transcripts even if nothing can be written.
    setRecords(rebuilt.records);
    const QString keptAs = keepAside(m_environment.layout.index);
    m_index.write(rebuilt.records);
    QString message = QStringLiteral(
        "Transcript Library 錯誤：索引無法讀取，原檔保留為「%1」。已從 %2 個 session 資料夾重建索引。")
                          .arg(keptAs, QString::number(rebuilt.records.size()));
    if (rebuilt.skippedFolders > 0) {
        message += QStringLiteral("另有 %1 個資料夾無法讀取。").arg(rebuilt.skippedFolders);
    }
    setLastErrorMessage(message + damage.errorDescription());
}

TranscriptRecordMetadata TranscriptLibraryStore::save(
    const LiveTranscript &live, const LumaphoneSettings &settings)
{
    TranscriptDocument document;
    change([&] {
        document = documentFor(live, settings);
        complete(document);
        const bool isNew = std::none_of(m_records.cbegin(), m_records.cend(), hasId(document.metadata.id));
        if (isNew) {
            m_index.noteTransition(document.metadata.folderName, m_records);
        }
        writeDocument(document);
        if (isNew) {
            m_index.endTransition();
        }
    });
    return document.metadata;
}

TranscriptDocument TranscriptLibraryStore::documentFor(
    const LiveTranscript &live, const LumaphoneSettings &settings) const
{
    TranscriptDocument document;
    document.lines = m_compactor.compactSavedLines(live.lines);
    if (document.lines.isEmpty()) {
        throw TranscriptLibraryError(TranscriptLibraryError::Case::emptyTranscript);
    }
    const QUuid id = live.savedTranscriptID ? *live.savedTranscriptID : m_environment.makeUuid();
    const auto former = std::find_if(m_records.begin(), m_records.end(), hasId(id));
    TranscriptRecordMetadata &metadata = document.metadata;
    metadata = former == m_records.end() ? newRecord(live, id) : *former;
    metadata.startedAt = wholeSeconds(live.startedAt);
    metadata.endedAt = wholeSeconds(live.endedAt);
    metadata.sourceLanguage = live.sourceLanguage;
    metadata.detectedLanguage = live.detectedLanguage;
    metadata.targetLanguage = QStringLiteral("zh-TW");
    metadata.processingMode = settings.processingMode();
    metadata.providerName = providerName(settings);
    metadata.glossaryTerms.clear();
    std::transform(live.matchedTerms.begin(), live.matchedTerms.end(),
        std::back_inserter(metadata.glossaryTerms), savedGlossaryTerm);
    return document;
}

TranscriptRecordMetadata TranscriptLibraryStore::newRecord(const LiveTranscript &live, const QUuid &id) const
{
    const QDateTime now = m_environment.clock.now();
    TranscriptRecordMetadata metadata;
    metadata.id = id;
    metadata.title = QStringLiteral("Lumaphone Transcript ")
        + localizedDateText(live.startedAt.value_or(now), m_environment.locale);
    metadata.createdAt = recordcoding::wholeSeconds(now);
    metadata.folderName
        = iso8601Text(metadata.createdAt).remove(QLatin1Char(':')) + QLatin1Char('-') + uuidText(id).first(8);
    return metadata;
}

TranscriptDocument TranscriptLibraryStore::loadRecord(const QUuid &id)
{
    return attempt([&] { return readDocument(record(id)); });
}

TranscriptDocument TranscriptLibraryStore::readDocument(const TranscriptRecordMetadata &indexed) const
{
    TranscriptDocument document;
    document.metadata = folder(indexed).readMetadata();
    // A folder may have been copied by hand: which transcript this is, and where, is for the index to
    // say.
    document.metadata.id = indexed.id;
    document.metadata.folderName = indexed.folderName;
    document.lines = m_compactor.compactSavedLines(folder(indexed).readLines());
    return document;
}

void TranscriptLibraryStore::addTranslations(const QUuid &id, const QHash<QString, QString> &translations)
{
    change([&] {
        const auto indexed = std::find_if(m_records.cbegin(), m_records.cend(), hasId(id));
        if (indexed == m_records.cend()) {
            return;
        }
        TranscriptDocument document = readDocument(*indexed);
        bool hasGained = false;
        for (SavedTranscriptLine &line : document.lines) {
            const auto translation = translations.constFind(text::canonicalForm(line.sourceText));
            if (line.translatedText.isEmpty() && translation != translations.cend()) {
                line.translatedText = *translation;
                hasGained = true;
            }
        }
        if (hasGained) {
            complete(document);
            writeDocument(document);
        }
    });
}

void TranscriptLibraryStore::update(const TranscriptDocument &document)
{
    change([&] {
        TranscriptDocument updated = document;
        updated.metadata.folderName = record(document.metadata.id).folderName;
        complete(updated);
        writeDocument(updated);
    });
}

void TranscriptLibraryStore::remove(const TranscriptRecordMetadata &unwanted)
{
    change([&] {
        const TranscriptRecordMetadata indexed = record(unwanted.id);
        const QList<TranscriptRecordMetadata> former = m_records;
        QList<TranscriptRecordMetadata> rest = former;
        rest.removeIf(hasId(indexed.id));
        // At no time does the index name a folder that is gone.
        m_index.noteTransition(indexed.folderName, former);
        m_index.write(rest);
        try {
            folder(indexed).remove();
        } catch (const FileError &) {
            m_index.write(former);
            m_index.endTransition();
            throw;
        }
        m_index.endTransition();
        m_search.forget(indexed.id);
        setRecords(rest);
    });
}

QCoro::Task<> TranscriptLibraryStore::openFolder(TranscriptRecordMetadata wanted)
{
    const QPointer<TranscriptLibraryStore> store(this);
    try {
        const TranscriptFolder shown = folder(wanted);
        if (!shown.exists()) {
            throw TranscriptStorageError(TranscriptStorageError::Case::folderMissing, shown.path());
        }
        co_await m_environment.fileViewer.reveal(shown.path());
    } catch (const LocalizedError &error) {
        if (store) {
            store->setLastErrorMessage(messageFor(error));
        }
        throw;
    }
}

QList<TranscriptRecordMetadata> TranscriptLibraryStore::filteredRecords(const QString &query) const
{
    return m_search.filtered(m_records, query);
}

bool TranscriptLibraryStore::prepareSearch(std::chrono::milliseconds budget) const
{
    return m_search.prepare(m_records, budget);
}

const TranscriptRecordMetadata &TranscriptLibraryStore::record(const QUuid &id) const
{
    const auto found = std::find_if(m_records.begin(), m_records.end(), hasId(id));
    if (found == m_records.end()) {
        throw TranscriptLibraryError(TranscriptLibraryError::Case::recordNotFound);
    }
    return *found;
}

TranscriptFolder TranscriptLibraryStore::folder(const TranscriptRecordMetadata &record) const
{
    return TranscriptFolder(m_environment.layout.sessionFolder(record));
}

/// Writes the folder, then the index.
void TranscriptLibraryStore::writeDocument(const TranscriptDocument &document)
{
    requireStorable(document);
    folder(document.metadata).write(document);

    QList<TranscriptRecordMetadata> records = m_records;
    records.removeIf(hasId(document.metadata.id));
    records.append(document.metadata);
    sortNewestFirst(records);
    m_index.write(records);
    m_search.forget(document.metadata.id);
    setRecords(records);
}

void TranscriptLibraryStore::setRecords(const QList<TranscriptRecordMetadata> &records)
{
    if (m_records != records) {
        m_records = records;
        emit recordsChanged();
    }
}

void TranscriptLibraryStore::setLastErrorMessage(const std::optional<QString> &message)
{
    if (m_lastErrorMessage != message) {
        m_lastErrorMessage = message;
        emit lastErrorMessageChanged();
    }
}

} // namespace lumaphone
