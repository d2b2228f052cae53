#include "app/library/TranscriptLibraryWorkspaceModel.h"

#include "app/library/TranscriptTexts.h"
#include "base/ExportFile.h"
#include "base/SetAndNotify.h"
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
    forwardChanges();
    connect(&m_store, &TranscriptLibraryStore::recordsChanged, this, &Self::recordsDidChange);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &Self::finishEditing);
    connect(&m_preparation, &QTimer::timeout, this, [this] {
        if (m_store.prepareSearch(std::chrono::milliseconds(4))) {
            m_preparation.stop();
        }
    });
    updateList();
}

TranscriptLibraryWorkspaceModel::~TranscriptLibraryWorkspaceModel() = default;

void TranscriptLibraryWorkspaceModel::forwardChanges()
{
    connect(&m_opened, &EditedTranscript::isLoadedChanged, this, &Self::isLoadedChanged);
    connect(&m_opened, &EditedTranscript::loadedMetadataChanged, this, &Self::loadedMetadataChanged);
    connect(&m_opened, &EditedTranscript::titleChanged, this, &Self::titleChanged);
    connect(&m_opened, &EditedTranscript::noteChanged, this, &Self::noteChanged);
    connect(&m_opened, &EditedTranscript::isEditingChanged, this, &Self::isEditingTranscriptChanged);
    connect(&m_opened, &EditedTranscript::hasUnsavedEditsChanged, this, &Self::hasUnsavedEditsChanged);
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
    if (setAndNotify(this, m_searchText, text, &Self::searchTextChanged)) {
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

QString TranscriptLibraryWorkspaceModel::subtitle() const
{
    const auto metadata = loadedMetadata();
    return metadata ? metadataSubtitle(*metadata, m_locale) : QString();
}

QStringList TranscriptLibraryWorkspaceModel::glossaryTerms() const
{
    QStringList chips;
    if (const auto metadata = loadedMetadata()) {
        const QList<SavedGlossaryTerm> &terms = metadata->glossaryTerms;
        std::transform(terms.begin(), terms.end(), std::back_inserter(chips), chipText);
    }
    return chips;
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
    if (!isLoaded()) {
        return false;
    }
    TranscriptDocument edited = m_opened.draft();
    const QScopedValueRollback<bool> saving(m_isSaving, true);
    const bool isSaved = attempt([&] { m_store.update(edited); });
    if (isSaved) {
        if (const TranscriptRecordMetadata *record = selectedRecord()) {
            edited.metadata = *record;
        }
        m_opened.noteSaved(edited);
    }
    return isSaved;
}

bool TranscriptLibraryWorkspaceModel::finishEditing()
{
    return !hasUnsavedEdits() || saveEdits();
}

void TranscriptLibraryWorkspaceModel::copyText(const QString &text) const
{
    QGuiApplication::clipboard()->setText(text);
}

void TranscriptLibraryWorkspaceModel::copySourceText() const
{
    copyText(m_opened.draft().sourceText());
}

void TranscriptLibraryWorkspaceModel::copyTranslationText() const
{
    copyText(m_opened.draft().translationText());
}

void TranscriptLibraryWorkspaceModel::copyBilingualText() const
{
    copyText(m_opened.draft().bilingualText());
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
        documents + QLatin1Char('/') + safeFilename(title()) + QLatin1Char('.') + format);
}

bool TranscriptLibraryWorkspaceModel::exportRecord(const QString &format, const QUrl &file)
{
    const std::optional<TranscriptExport> wanted = transcriptExport(format);
    if (!isLoaded() || !wanted) {
        return false;
    }
    try {
        lumaphone::exportFile(file.toLocalFile(), exported(m_opened.draft(), *wanted, m_locale));
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
    } else if (isLoaded() && !m_isSaving && loadedMetadata() != *record) {
        reload();
    }
}

void TranscriptLibraryWorkspaceModel::updateList()
{
    m_records.setRecords(m_store.filteredRecords(m_searchText));
    updateSelectedRow();
    setAndNotify(this, m_shownEmptyListText, emptyListText(), &Self::emptyListTextChanged);
}

void TranscriptLibraryWorkspaceModel::updateSelectedRow()
{
    setAndNotify(
        this, m_selectedRow, m_selectedId ? m_records.rowOf(*m_selectedId) : -1, &Self::selectedRowChanged);
}

void TranscriptLibraryWorkspaceModel::open(const QUuid &id)
{
    const bool isAnother = std::exchange(m_selectedId, id) != id;
    std::optional<TranscriptDocument> document;
    attempt([&] { document = m_store.loadRecord(id); });
    m_opened.show(document);
    if (isAnother) {
        updateSelectedRow();
        emit selectedIDChanged();
    }
}

void TranscriptLibraryWorkspaceModel::reload()
{
    TranscriptDocument stored;
    if (attempt([&] { stored = m_store.loadRecord(*m_selectedId); })) {
        m_opened.takeOver(stored);
    }
}

void TranscriptLibraryWorkspaceModel::clearSelection()
{
    if (m_selectedId) {
        m_selectedId.reset();
        m_opened.show(std::nullopt);
        updateSelectedRow();
        emit selectedIDChanged();
    }
}

void TranscriptLibraryWorkspaceModel::setPendingDelete(const std::optional<TranscriptRecordMetadata> &record)
{
    setAndNotify(this, m_pendingDelete, record, &Self::pendingDeleteChanged);
}

void TranscriptLibraryWorkspaceModel::setErrorMessage(const QString &message)
{
    setAndNotify(this, m_errorMessage, message, &Self::errorMessageChanged);
}

const TranscriptRecordMetadata *TranscriptLibraryWorkspaceModel::selectedRecord() const
{
    const QList<TranscriptRecordMetadata> &records = m_store.records();
    const auto found = std::find_if(records.begin(), records.end(),
        [this](const TranscriptRecordMetadata &record) { return record.id == m_selectedId; });
    return found == records.end() ? nullptr : &*found;
}

} // namespace lumaphone
