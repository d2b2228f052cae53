#include "app/glossary/GlossarySettingsModel.h"

#include "app/glossary/GlossaryTermTexts.h"
#include "base/Completion.h"
#include "base/LocalizedError.h"
#include "glossary/GlossaryImport.h"
#include "glossary/LumaphoneGlossaryStore.h"

#include <QPointer>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace lumaphone {

GlossarySettingsModel::GlossarySettingsModel(LumaphoneGlossaryStore &store,
    std::shared_ptr<MainQueue> mainQueue, UuidGenerator makeUuid,
    std::chrono::milliseconds timeToRegretDeletion, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_mainQueue(std::move(mainQueue))
    , m_makeUuid(std::move(makeUuid))
{
    m_terms.setTerms(m_store.terms());
    connect(&m_store, &LumaphoneGlossaryStore::termsChanged, this, [this] {
        m_terms.setTerms(m_store.terms());
        noteDeletion({});
    });
    m_regret.setSingleShot(true);
    m_regret.setInterval(timeToRegretDeletion);
    connect(&m_regret, &QTimer::timeout, this, [this] { noteDeletion({}); });
    connect(&m_store, &LumaphoneGlossaryStore::lastErrorMessageChanged, this,
        &GlossarySettingsModel::storeErrorChanged);
}

GlossarySettingsModel::~GlossarySettingsModel() = default;

template<typename Value>
void GlossarySettingsModel::set(Value &member, const Value &value, void (GlossarySettingsModel::*changed)())
{
    if (member != value) {
        member = value;
        emit(this->*changed)();
    }
}

QVariantList GlossarySettingsModel::modes() const
{
    QVariantList modes;
    for (const LumaphoneGlossaryTermMode mode : allLumaphoneGlossaryTermModes) {
        modes.append(QVariantMap {
            {QStringLiteral("value"), rawValue(mode)}, {QStringLiteral("title"), lumaphone::title(mode)}});
    }
    return modes;
}

QString GlossarySettingsModel::storeError() const
{
    return m_store.lastErrorMessage().value_or(QString());
}

QUrl GlossarySettingsModel::exportFile() const
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QUrl::fromLocalFile(documents + QStringLiteral("/lumaphone-glossary.yaml"));
}

void GlossarySettingsModel::refresh()
{
    m_store.refresh();
}

void GlossarySettingsModel::addTerm()
{
    if (!m_newTerm.isUsable()) {
        return;
    }
    LumaphoneGlossaryTerm term = m_newTerm.term();
    term.id = m_makeUuid();
    m_store.add(term);
    // The next term is often of the same kind.
    m_newTerm.setSource({});
    m_newTerm.setTarget({});
}

void GlossarySettingsModel::toggle(int row)
{
    if (isRow(row)) {
        const LumaphoneGlossaryTerm former = m_terms.terms()[row];
        LumaphoneGlossaryTerm term = former;
        term.isEnabled = !term.isEnabled;
        m_store.replace(former, term);
    }
}

void GlossarySettingsModel::remove(int row)
{
    if (isRow(row)) {
        const LumaphoneGlossaryTerm term = m_terms.terms()[row];
        const int formerCount = m_terms.count();
        m_store.remove(term);
        if (m_terms.count() < formerCount) {
            noteDeletion(Deletion {term, row});
        }
    }
}

int GlossarySettingsModel::undoDeletion()
{
    if (!m_deletion) {
        return -1;
    }
    const Deletion deletion = *m_deletion;
    m_store.restore(deletion.term, deletion.row);
    return std::min(deletion.row, m_terms.count() - 1);
}

QString GlossarySettingsModel::deletionNotice() const
{
    return m_deletion ? QStringLiteral("已刪除「%1」。").arg(m_deletion->term.source) : QString();
}

void GlossarySettingsModel::noteDeletion(const std::optional<Deletion> &deletion)
{
    set(m_deletion, deletion, &GlossarySettingsModel::deletionNoticeChanged);
    if (deletion) {
        m_regret.start();
    } else {
        m_regret.stop();
    }
}

void GlossarySettingsModel::edit(int row)
{
    if (isRow(row)) {
        m_formerTerm = m_terms.terms()[row];
        m_editingTerm.setTerm(m_formerTerm);
        set(m_isEditing, true, &GlossarySettingsModel::isEditingChanged);
    }
}

void GlossarySettingsModel::saveEditedTerm()
{
    if (m_isEditing && m_editingTerm.isUsable()) {
        m_store.replace(m_formerTerm, m_editingTerm.term());
        cancelEditing();
    }
}

void GlossarySettingsModel::cancelEditing()
{
    set(m_isEditing, false, &GlossarySettingsModel::isEditingChanged);
}

void GlossarySettingsModel::importFiles(const QList<QUrl> &files)
{
    if (!m_isImporting && !files.isEmpty()) {
        import(files);
    }
}

QCoro::Task<> GlossarySettingsModel::import(QList<QUrl> files)
{
    const QPointer<GlossarySettingsModel> self(this);
    dismissMessages();
    set(m_isImporting, true, &GlossarySettingsModel::isImportingChanged);
    m_store.refresh();
    const qsizetype formerCount = m_store.terms().size();
    QString failure;
    try {
        for (const QUrl &file : std::as_const(files)) {
            const auto read = [path = file.toLocalFile(), makeUuid = m_makeUuid] {
                return decodeTerms(path, makeUuid);
            };
            const QList<LumaphoneGlossaryTerm> terms
                = co_await runInBackground(m_mainQueue, "glossary-import", read);
            if (!self) {
                co_return;
            }
            m_store.importTerms(terms);
        }
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (!self) {
        co_return;
    }
    const qsizetype added = m_store.terms().size() - formerCount;
    if (failure.isEmpty()) {
        const QString notice = added > 0 ? QStringLiteral("已加入 %1 個術語。").arg(added)
                                         : QStringLiteral("檔案裡沒有新的術語。");
        set(m_notice, notice, &GlossarySettingsModel::noticeChanged);
    }
    set(m_importError, failure, &GlossarySettingsModel::importErrorChanged);
    set(m_isImporting, false, &GlossarySettingsModel::isImportingChanged);
}

void GlossarySettingsModel::exportYAML(const QUrl &file)
{
    dismissMessages();
    try {
        m_store.exportYAML(file.toLocalFile());
        set(m_notice, QStringLiteral("已匯出到「%1」。").arg(file.toLocalFile()),
            &GlossarySettingsModel::noticeChanged);
    } catch (const LocalizedError &error) {
        set(m_importError, error.errorDescription(), &GlossarySettingsModel::importErrorChanged);
    }
}

void GlossarySettingsModel::openGlossaryFolder()
{
    reveal();
}

QCoro::Task<> GlossarySettingsModel::reveal()
{
    const QPointer<GlossarySettingsModel> self(this);
    dismissMessages();
    try {
        co_await m_store.openGlossaryFolder();
    } catch (const LocalizedError &error) {
        if (self) {
            self->set(
                self->m_importError, error.errorDescription(), &GlossarySettingsModel::importErrorChanged);
        }
    }
}

void GlossarySettingsModel::dismissMessages()
{
    set(m_importError, QString(), &GlossarySettingsModel::importErrorChanged);
    set(m_notice, QString(), &GlossarySettingsModel::noticeChanged);
    noteDeletion({});
}

} // namespace lumaphone
