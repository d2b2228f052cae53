#pragma once

#include "app/glossary/GlossaryTermEditor.h"
#include "app/glossary/GlossaryTermListModel.h"
#include "base/MainQueue.h"
#include "base/Record.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <memory>
#include <optional>

namespace lumaphone {

class LumaphoneGlossaryStore;

/// The state of the glossary sheet: the list, the new term, the term that is edited, import and export. Main
/// thread; files are read on a thread of their own.
class GlossarySettingsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(lumaphone::GlossaryTermListModel *terms READ terms CONSTANT)
    Q_PROPERTY(lumaphone::GlossaryTermEditor *newTerm READ newTerm CONSTANT)
    Q_PROPERTY(lumaphone::GlossaryTermEditor *editingTerm READ editingTerm CONSTANT)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged)
    /// Every mode with `value` and `title`, in the order of menus.
    Q_PROPERTY(QVariantList modes READ modes CONSTANT)
    Q_PROPERTY(bool isImporting READ isImporting NOTIFY isImportingChanged)
    Q_PROPERTY(QString importError READ importError NOTIFY importErrorChanged)
    /// What came of the last import or export that succeeded.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    /// Says which term has just been deleted, as long as it can be put back: for some seconds, or until the
    /// next change.
    Q_PROPERTY(QString deletionNotice READ deletionNotice NOTIFY deletionNoticeChanged)
    /// What the store could not read or write.
    Q_PROPERTY(QString storeError READ storeError NOTIFY storeErrorChanged)
    /// Where an export is offered to be written: in the user's documents.
    Q_PROPERTY(QUrl exportFile READ exportFile CONSTANT)

public:
    /// How long a deleted term can be put back.
    static constexpr std::chrono::seconds timeToRegret {10};

    /// The store must outlive the model. Imported terms get identities from any thread.
    GlossarySettingsModel(LumaphoneGlossaryStore &store, std::shared_ptr<MainQueue> mainQueue,
        UuidGenerator makeUuid = &QUuid::createUuid,
        std::chrono::milliseconds timeToRegretDeletion = timeToRegret, QObject *parent = nullptr);
    ~GlossarySettingsModel() override;

    GlossaryTermListModel *terms() { return &m_terms; }
    GlossaryTermEditor *newTerm() { return &m_newTerm; }
    GlossaryTermEditor *editingTerm() { return &m_editingTerm; }
    bool isEditing() const { return m_isEditing; }
    QVariantList modes() const;
    bool isImporting() const { return m_isImporting; }
    const QString &importError() const { return m_importError; }
    const QString &notice() const { return m_notice; }
    QString deletionNotice() const;
    QString storeError() const;
    QUrl exportFile() const;

    /// Shows what another program has changed since.
    Q_INVOKABLE void refresh();
    /// Adds the new term, if it is usable, and empties its fields.
    Q_INVOKABLE void addTerm();
    // Each takes a row of the list; one that is not there is no row.
    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE void remove(int row);
    /// Puts the term back that was deleted last, if it still can be. Returns its row, or -1.
    Q_INVOKABLE int undoDeletion();
    Q_INVOKABLE void edit(int row);
    /// Replaces the edited term in the store.
    Q_INVOKABLE void saveEditedTerm();
    Q_INVOKABLE void cancelEditing();

    /// Reads the files one after another, up to the first that fails. While an import runs, another is
    /// ignored.
    Q_INVOKABLE void importFiles(const QList<QUrl> &files);
    Q_INVOKABLE void exportYAML(const QUrl &file);
    Q_INVOKABLE void openGlossaryFolder();
    /// Forgets errors and notices: what they speak of is over when the sheet is closed.
    Q_INVOKABLE void dismissMessages();

signals:
    void isEditingChanged();
    void isImportingChanged();
    void importErrorChanged();
    void noticeChanged();
    void deletionNoticeChanged();
    void storeErrorChanged();

private:
    struct Deletion
    {
        LumaphoneGlossaryTerm term;
        int row = 0;

        bool operator==(const Deletion &) const = default;
    };

    template<typename Value>
    void set(Value &member, const Value &value, void (GlossarySettingsModel::*changed)());
    bool isRow(int row) const { return row >= 0 && row < m_terms.count(); }
    void noteDeletion(const std::optional<Deletion> &deletion);
    QCoro::Task<> import(QList<QUrl> files);
    QCoro::Task<> reveal();

    LumaphoneGlossaryStore &m_store;
    std::shared_ptr<MainQueue> m_mainQueue;
    UuidGenerator m_makeUuid;
    GlossaryTermListModel m_terms;
    GlossaryTermEditor m_newTerm;
    GlossaryTermEditor m_editingTerm;
    LumaphoneGlossaryTerm m_formerTerm; ///< the edited one as it was
    std::optional<Deletion> m_deletion; ///< that can be undone
    QTimer m_regret;
    bool m_isEditing = false;
    bool m_isImporting = false;
    QString m_importError;
    QString m_notice;
};

} // namespace lumaphone
