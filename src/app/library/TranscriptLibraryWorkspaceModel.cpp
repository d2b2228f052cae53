#include "app/library/TranscriptLibraryWorkspaceModel.h"

#include "app/library/TranscriptTexts.h"
#include "base/ExportFile.h"
#include "base/Text.h"
#include "storage/TranscriptExport.h"
#include "storage/TranscriptLibraryStore.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

QString chipText(const SavedGlossaryTerm &term)
{
    const bool isKept = term.target.isEmpty() || text::canonicallyEqual(term.source, term.target);
    return isKept ? term.source : QStringLiteral("%1 → %2").arg(term.source, term.target);
}

} // namespace

TranscriptLibraryWorkspaceModel::TranscriptLibraryWorkspaceModel(
    TranscriptLibraryStore &store, const QLocale &locale, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_locale(locale)
    , m_records(locale)
    , m_errorMessage(store.lastErrorMessage().value_or(QString()))
{
    connect(&m_store, &TranscriptLibraryStore::recordsChanged, this,
        &TranscriptLibraryWorkspaceModel::recordsDidChange);
    connect(&m_draftLines, &TranscriptLinesModel::edited, this, [this] {
        m_linesAreEdited = true;
        updateUnsavedEdits();
    });
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
        &TranscriptLibraryWorkspaceModel::finishEditing);
    connect(&m_preparation, &QTimer::timeout, this, [this] {
        if (m_store.prepareSearch(std::chrono::milliseconds(4))) {
            m_preparation.stop();
        }
    });
    updateList();
}

TranscriptLibraryWorkspaceModel::~TranscriptLibraryWorkspaceModel() = default;

template<typename Value, typename Signal>
bool TranscriptLibraryWorkspaceModel::set(Value &member, const Value &value, Signal changed)
{
    if (member == value) {
        return false;
    }
    member = value;
    emit(this->*changed)();
    return true;
}

/// Runs an operation; its failure becomes the error message, which a success clears.
template<typename Operation> bool TranscriptLibraryWorkspaceModel::attempt(Operation operation)
{
    try {
        operation();
    } catch (const LocalizedError &error) {
        setErrorMessage(m_store.lastErrorMessage().value_or(error.errorDescription()));
        return false;
    }
    setErrorMessage({});
    return true;
}

void TranscriptLibraryWorkspaceModel::setSearchText(const QString &text)
{
    if (set(m_searchText, text, &TranscriptLibraryWorkspaceModel::searchTextChanged)) {
        updateList();
    }
}

void TranscriptLibraryWorkspaceModel::prepareSearch()
{
    m_preparation.start();
}

QString TranscriptLibraryWorkspaceModel::emptyListText() const
{
    if (m_records.count() > 0) {
        return {};
    }
    return text::trimmed(m_searchText).isEmpty() ? QStringLiteral("尚未儲存任何字幕紀錄。")
                                                 : QStringLiteral("找不到符合的字幕紀錄。");
}

QString TranscriptLibraryWorkspaceModel::selectedID() const
{
    return m_selectedId ? m_selectedId->toString(QUuid::WithoutBraces) : QString();
}

std::optional<TranscriptRecordMetadata> TranscriptLibraryWorkspaceModel::loadedMetadata() const
{
    return m_loaded ? std::optional(m_loaded->metadata) : std::nullopt;
}

void TranscriptLibraryWorkspaceModel::setTitle(const QString &title)
{
    if (set(m_title, title, &TranscriptLibraryWorkspaceModel::titleChanged)) {
        updateUnsavedEdits();
    }
}

void TranscriptLibraryWorkspaceModel::setNote(const QString &note)
{
    if (set(m_note, note, &TranscriptLibraryWorkspaceModel::noteChanged)) {
        updateUnsavedEdits();
    }
}

QString TranscriptLibraryWorkspaceModel::subtitle() const
{
    return m_loaded ? metadataSubtitle(m_loaded->metadata, m_locale) : QString();
}

QStringList TranscriptLibraryWorkspaceModel::glossaryTerms() const
{
    QStringList chips;
    if (m_loaded) {
        const QList<SavedGlossaryTerm> &terms = m_loaded->metadata.glossaryTerms;
        std::transform(terms.begin(), terms.end(), std::back_inserter(chips), chipText);
    }
    return chips;
}

void TranscriptLibraryWorkspaceModel::setEditingTranscript(bool isEditing)
{
    set(m_isEditingTranscript, isEditing && isLoaded(),
        &TranscriptLibraryWorkspaceModel::isEditingTranscriptChanged);
}

QString TranscriptLibraryWorkspaceModel::pendingDeleteTitle() const
{
    return m_pendingDelete ? m_pendingDelete->title : QString();
}

void TranscriptLibraryWorkspaceModel::selectInitialRecordIfNeeded()
{
    if (m_selectedId || m_records.count() == 0) {
        return;
    }
    // Nobody has seen yet what went wrong when the library was loaded.
    const QString notice = m_errorMessage;
    open(m_records.records().front().id);
    if (isLoaded()) {
        setErrorMessage(notice);
    }
}

void TranscriptLibraryWorkspaceModel::select(const QString &recordId)
{
    const std::optional<QUuid> id = uuidFromText(recordId);
    const bool isOpen = m_selectedId == id && isLoaded();
    if (id && !isOpen && finishEditing()) {
        open(*id);
    }
}

void TranscriptLibraryWorkspaceModel::selectRow(int row)
{
    if (row >= 0 && row < m_records.count()) {
        select(m_records.records()[row].id.toString(QUuid::WithoutBraces));
    }
}

bool TranscriptLibraryWorkspaceModel::saveEdits()
{
    if (!m_loaded) {
        return false;
    }
    const TranscriptDocument edited = draft();
    const QScopedValueRollback<bool> saving(m_isSaving, true);
    const bool isSaved = attempt([&] { m_store.update(edited); });
    if (isSaved) {
        m_loaded = edited;
        if (const TranscriptRecordMetadata *record = selectedRecord()) {
            m_loaded->metadata = *record;
        }
        m_linesAreEdited = false;
        updateUnsavedEdits();
        emit loadedMetadataChanged();
    }
    return isSaved;
}

void TranscriptLibraryWorkspaceModel::revertEdits()
{
    show(std::optional(m_loaded));
}

bool TranscriptLibraryWorkspaceModel::finishEditing()
{
    return !m_hasUnsavedEdits || saveEdits();
}

void TranscriptLibraryWorkspaceModel::copyText(const QString &text) const
{
    QGuiApplication::clipboard()->setText(text);
}

void TranscriptLibraryWorkspaceModel::copySourceText() const
{
    copyText(draft().sourceText());
}

void TranscriptLibraryWorkspaceModel::copyTranslationText() const
{
    copyText(draft().translationText());
}

void TranscriptLibraryWorkspaceModel::copyBilingualText() const
{
    copyText(draft().bilingualText());
}

QVariantList TranscriptLibraryWorkspaceModel::exportFormats()
{
    QVariantList formats;
    for (const TranscriptExport format : allTranscriptExports) {
        formats.append(QVariantMap {
            {QStringLiteral("format"), rawValue(format)}, {QStringLiteral("title"), exportText(format)}});
    }
    return formats;
}

QString TranscriptLibraryWorkspaceModel::exportNameFilter(const QString &format) const
{
    const std::optional<TranscriptExport> wanted = transcriptExport(format);
    return wanted ? QStringLiteral("%1 (*.%2)").arg(lumaphone::title(*wanted), format) : QString();
}

QUrl TranscriptLibraryWorkspaceModel::exportFile(const QString &format) const
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QUrl::fromLocalFile(
        documents + QLatin1Char('/') + safeFilename(m_title) + QLatin1Char('.') + format);
}

bool TranscriptLibraryWorkspaceModel::exportRecord(const QString &format, const QUrl &file)
{
    const std::optional<TranscriptExport> wanted = transcriptExport(format);
    if (!m_loaded || !wanted) {
        return false;
    }
    try {
        lumaphone::exportFile(file.toLocalFile(), exported(draft(), *wanted, m_locale));
    } catch (const LocalizedError &error) {
        setErrorMessage(error.errorDescription());
        return false;
    }
    setErrorMessage({});
    return true;
}

void TranscriptLibraryWorkspaceModel::openFolder()
{
    if (const TranscriptRecordMetadata *record = selectedRecord()) {
        reveal(*record);
    }
}

QCoro::Task<> TranscriptLibraryWorkspaceModel::reveal(TranscriptRecordMetadata record)
{
    const QPointer<TranscriptLibraryWorkspaceModel> self(this);
    try {
        co_await m_store.openFolder(record);
    } catch (const LocalizedError &error) {
        if (self) {
            self->setErrorMessage(self->m_store.lastErrorMessage().value_or(error.errorDescription()));
        }
    }
}

void TranscriptLibraryWorkspaceModel::requestDelete()
{
    if (const TranscriptRecordMetadata *record = selectedRecord()) {
        setPendingDelete(*record);
    }
}

void TranscriptLibraryWorkspaceModel::cancelDelete()
{
    setPendingDelete(std::nullopt);
}

void TranscriptLibraryWorkspaceModel::deletePendingRecord()
{
    if (!m_pendingDelete) {
        return;
    }
    const TranscriptRecordMetadata unwanted = *m_pendingDelete;
    setPendingDelete(std::nullopt);
    attempt([&] { m_store.remove(unwanted); });
}

void TranscriptLibraryWorkspaceModel::dismissError()
{
    setErrorMessage({});
}

void TranscriptLibraryWorkspaceModel::recordsDidChange()
{
    updateList();
    const TranscriptRecordMetadata *record = selectedRecord();
    if (record == nullptr) {
        clearSelection();
    } else if (m_loaded && !m_isSaving && m_loaded->metadata != *record) {
        reload();
    }
}

void TranscriptLibraryWorkspaceModel::updateList()
{
    m_records.setRecords(m_store.filteredRecords(m_searchText));
    updateSelectedRow();
    set(m_shownEmptyListText, emptyListText(), &TranscriptLibraryWorkspaceModel::emptyListTextChanged);
}

void TranscriptLibraryWorkspaceModel::updateSelectedRow()
{
    set(m_selectedRow, m_selectedId ? m_records.rowOf(*m_selectedId) : -1,
        &TranscriptLibraryWorkspaceModel::selectedRowChanged);
}

void TranscriptLibraryWorkspaceModel::updateUnsavedEdits()
{
    const bool differs = m_loaded
        && (m_linesAreEdited || m_title != m_loaded->metadata.title || m_note != m_loaded->metadata.note);
    set(m_hasUnsavedEdits, differs, &TranscriptLibraryWorkspaceModel::hasUnsavedEditsChanged);
}

void TranscriptLibraryWorkspaceModel::open(const QUuid &id)
{
    const bool isAnother = std::exchange(m_selectedId, id) != id;
    std::optional<TranscriptDocument> document;
    attempt([&] { document = m_store.loadRecord(id); });
    show(document);
    if (isAnother) {
        updateSelectedRow();
        emit selectedIDChanged();
    }
}

/// Takes over what was saved elsewhere; what the user has changed here stays.
void TranscriptLibraryWorkspaceModel::reload()
{
    const bool titleIsEdited = m_title != m_loaded->metadata.title;
    const bool noteIsEdited = m_note != m_loaded->metadata.note;
    TranscriptDocument stored;
    if (!attempt([&] { stored = m_store.loadRecord(*m_selectedId); })) {
        return;
    }
    m_loaded = stored;
    if (!titleIsEdited) {
        setTitle(stored.metadata.title);
    }
    if (!noteIsEdited) {
        setNote(stored.metadata.note);
    }
    if (!m_linesAreEdited) {
        m_draftLines.setLines(stored.lines);
    }
    updateUnsavedEdits();
    emit loadedMetadataChanged();
}

void TranscriptLibraryWorkspaceModel::clearSelection()
{
    if (m_selectedId) {
        m_selectedId.reset();
        show(std::nullopt);
        updateSelectedRow();
        emit selectedIDChanged();
    }
}

void TranscriptLibraryWorkspaceModel::show(const std::optional<TranscriptDocument> &document)
{
    const bool wasLoaded = isLoaded();
    m_loaded = document;
    m_linesAreEdited = false;
    setEditingTranscript(false);
    setTitle(document ? document->metadata.title : QString());
    setNote(document ? document->metadata.note : QString());
    m_draftLines.setLines(document ? document->lines : QList<SavedTranscriptLine>());
    updateUnsavedEdits();
    emit loadedMetadataChanged();
    if (wasLoaded != isLoaded()) {
        emit isLoadedChanged();
    }
}

void TranscriptLibraryWorkspaceModel::setPendingDelete(const std::optional<TranscriptRecordMetadata> &record)
{
    set(m_pendingDelete, record, &TranscriptLibraryWorkspaceModel::pendingDeleteChanged);
}

void TranscriptLibraryWorkspaceModel::setErrorMessage(const QString &message)
{
    set(m_errorMessage, message, &TranscriptLibraryWorkspaceModel::errorMessageChanged);
}

const TranscriptRecordMetadata *TranscriptLibraryWorkspaceModel::selectedRecord() const
{
    const QList<TranscriptRecordMetadata> &records = m_store.records();
    const auto found = std::find_if(records.begin(), records.end(),
        [this](const TranscriptRecordMetadata &record) { return record.id == m_selectedId; });
    return found == records.end() ? nullptr : &*found;
}

/// The opened document with what the user has changed.
TranscriptDocument TranscriptLibraryWorkspaceModel::draft() const
{
    TranscriptDocument document = m_loaded.value_or(TranscriptDocument());
    document.metadata.title = m_title;
    document.metadata.note = m_note;
    document.lines = m_draftLines.lines();
    return document;
}

} // namespace lumaphone
