#pragma once

#include "app/library/EditedTranscript.h"
#include "app/library/TranscriptLibraryModel.h"
#include "storage/TranscriptDocument.h"

#include <QCoroTask>
#include <QLocale>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace lumaphone {

class TranscriptLibraryStore;

/// The state of the library workspace: the list with its search, the opened transcript with what the user has
/// changed in it, and the operations on it. Main thread.
///
/// Edits are never lost silently: they are saved when another record is selected and when the program ends.
class TranscriptLibraryWorkspaceModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(lumaphone::TranscriptLibraryModel *records READ records CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString emptyListText READ emptyListText NOTIFY emptyListTextChanged)
    Q_PROPERTY(QString selectedID READ selectedID NOTIFY selectedIDChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString note READ note WRITE setNote NOTIFY noteChanged)
    Q_PROPERTY(lumaphone::TranscriptLinesModel *draftLines READ draftLines CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY loadedMetadataChanged)
    Q_PROPERTY(QList<QString> glossaryTerms READ glossaryTerms NOTIFY loadedMetadataChanged)
    Q_PROPERTY(bool isEditingTranscript READ isEditingTranscript WRITE setEditingTranscript NOTIFY
            isEditingTranscriptChanged)
    Q_PROPERTY(bool hasUnsavedEdits READ hasUnsavedEdits NOTIFY hasUnsavedEditsChanged)
    /// In the order of menus: maps of "format", its raw value, and "title", what the menu says.
    Q_PROPERTY(QVariantList exportFormats READ exportFormats CONSTANT)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool hasPendingDelete READ hasPendingDelete NOTIFY pendingDeleteChanged)
    Q_PROPERTY(QString pendingDeleteTitle READ pendingDeleteTitle NOTIFY pendingDeleteChanged)

public:
    /// The store must outlive the model. Dates are written as in `locale`.
    TranscriptLibraryWorkspaceModel(
        TranscriptLibraryStore &store, const QLocale &locale, QObject *parent = nullptr);
    ~TranscriptLibraryWorkspaceModel() override;

    TranscriptLibraryModel *records() { return &m_records; }
    const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    /// Why the list is empty; empty while it is not.
    QString emptyListText() const;

    /// As in the list's rows; empty without a selection.
    QString selectedID() const;
    /// -1 if nothing is selected or the search leaves the selected record out.
    int selectedRow() const { return m_selectedRow; }
    /// Whether the selected record could be read.
    bool isLoaded() const { return m_opened.isLoaded(); }
    std::optional<TranscriptRecordMetadata> loadedMetadata() const { return m_opened.loadedMetadata(); }

    const QString &title() const { return m_opened.title(); }
    void setTitle(const QString &title) { m_opened.setTitle(title); }
    const QString &note() const { return m_opened.note(); }
    void setNote(const QString &note) { m_opened.setNote(note); }
    TranscriptLinesModel *draftLines() { return m_opened.lines(); }
    QString subtitle() const;
    /// The record's terms as the chips show them, such as "原文 → 譯文".
    QStringList glossaryTerms() const;

    bool isEditingTranscript() const { return m_opened.isEditing(); }
    void setEditingTranscript(bool isEditing) { m_opened.setEditing(isEditing); }
    bool hasUnsavedEdits() const { return m_opened.hasUnsavedEdits(); }
    const QString &errorMessage() const { return m_errorMessage; }
    const std::optional<TranscriptRecordMetadata> &pendingDelete() const { return m_pendingDelete; }
    bool hasPendingDelete() const { return m_pendingDelete.has_value(); }
    QString pendingDeleteTitle() const;

    /// Selects the first record of the list when nothing is selected.
    Q_INVOKABLE void selectInitialRecordIfNeeded();
    /// Opens a record. Edits of the one before are saved first; if they cannot be, it stays.
    Q_INVOKABLE void select(const QString &recordId);
    /// The same by the row of the list; nothing happens if there is no such row.
    Q_INVOKABLE void selectRow(int row);
    /// Saves title, note and lines. False, with an error message, if that fails.
    Q_INVOKABLE bool saveEdits();
    /// Takes back what has not been saved.
    Q_INVOKABLE void revertEdits() { m_opened.revert(); }
    /// Saves what has not been saved, if anything. False if that fails.
    Q_INVOKABLE bool finishEditing();

    Q_INVOKABLE void copyText(const QString &text) const;
    Q_INVOKABLE void copySourceText() const;
    Q_INVOKABLE void copyTranslationText() const;
    Q_INVOKABLE void copyBilingualText() const;

    static QVariantList exportFormats();
    // A format is named by its raw value; for any other text there is nothing to export.
    /// What file dialogs offer, such as "Markdown (*.md)".
    Q_INVOKABLE QString exportNameFilter(const QString &format) const;
    /// A file in the user's documents, named after the open record.
    Q_INVOKABLE QUrl exportFile(const QString &format) const;
    /// Writes the open record, as it is shown, to a local file.
    Q_INVOKABLE bool exportRecord(const QString &format, const QUrl &file);

    /// Shows the selected record's folder in the file viewer.
    Q_INVOKABLE void openFolder();
    Q_INVOKABLE void requestDelete();
    Q_INVOKABLE void cancelDelete();
    Q_INVOKABLE void deletePendingRecord();
    Q_INVOKABLE void dismissError();
    /// The user may search soon: what takes longest is done now, in pieces that hold up no frame.
    Q_INVOKABLE void prepareSearch();
    /// Whether that is under way.
    bool isPreparingSearch() const { return m_preparation.isActive(); }

signals:
    void searchTextChanged();
    void emptyListTextChanged();
    void selectedIDChanged();
    void selectedRowChanged();
    void isLoadedChanged();
    void titleChanged();
    void noteChanged();
    void loadedMetadataChanged();
    void isEditingTranscriptChanged();
    void hasUnsavedEditsChanged();
    void errorMessageChanged();
    void pendingDeleteChanged();

private:
    using Self = TranscriptLibraryWorkspaceModel;

    template<typename Operation> bool attempt(Operation operation);

    void forwardChanges();
    void recordsDidChange();
    void updateList();
    void updateSelectedRow();
    void open(const QUuid &id);
    void reload();
    void clearSelection();
    void setPendingDelete(const std::optional<TranscriptRecordMetadata> &record);
    void setErrorMessage(const QString &message);
    const TranscriptRecordMetadata *selectedRecord() const;
    QCoro::Task<> reveal(TranscriptRecordMetadata record);

    TranscriptLibraryStore &m_store;
    QTimer m_preparation;
    QLocale m_locale;
    TranscriptLibraryModel m_records;
    EditedTranscript m_opened;
    QString m_searchText;
    QString m_shownEmptyListText;
    std::optional<QUuid> m_selectedId;
    int m_selectedRow = -1;
    bool m_isSaving = false;
    QString m_errorMessage;
    std::optional<TranscriptRecordMetadata> m_pendingDelete;
};

} // namespace lumaphone
