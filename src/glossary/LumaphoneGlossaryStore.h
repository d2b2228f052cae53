#pragma once

#include "base/Record.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QObject>

#include <functional>
#include <optional>

namespace lumaphone {

/// Shows a file, selected, in the desktop's file viewer. Main thread.
using FileRevealer = std::function<void(const QString &path)>;

/// Owns the user's glossary and keeps it in "glossary.json". Lives on the main thread; reads and writes
/// synchronously, so that every change is on the disk when the operation returns. A file that could not be
/// loaded is kept beside the new one when the next change is saved.
class LumaphoneGlossaryStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<lumaphone::LumaphoneGlossaryTerm> terms READ terms NOTIFY termsChanged)
    Q_PROPERTY(std::optional<QString> lastErrorMessage READ lastErrorMessage NOTIFY lastErrorMessageChanged)

public:
    /// `rootPath` is the glossary folder, created when needed. Loads the file.
    LumaphoneGlossaryStore(const QString &rootPath, FileRevealer revealFile,
        UuidGenerator makeUuid = &QUuid::createUuid, QObject *parent = nullptr);

    /// In the user's order: never sorted.
    const QList<LumaphoneGlossaryTerm> &terms() const { return m_terms; }
    /// The last file error; none after a successful load or save.
    const std::optional<QString> &lastErrorMessage() const { return m_lastErrorMessage; }
    /// The terms to use for translation: those enabled and not blank, in list order.
    QList<LumaphoneGlossaryTerm> enabledTerms() const;
    QString glossaryPath() const;

    /// Reads the file again. A missing file is an empty glossary; after a failure the list is empty and
    /// `lastErrorMessage` says why.
    void load();
    /// Appends a cleaned copy.
    void add(const LumaphoneGlossaryTerm &term);
    /// Replaces the first term of the same `id` by a cleaned copy; nothing happens when there is none.
    void update(const LumaphoneGlossaryTerm &term);
    /// Removes the first term equal to this one; nothing happens when there is none.
    void remove(const LumaphoneGlossaryTerm &term);
    /// Appends the terms of a JSON, YAML or CSV file whose sources are new, whatever their case. Throws
    /// what decodeTerms() throws, and changes nothing then.
    void importTerms(const QString &path);
    /// The same for terms that were read already.
    void importTerms(const QList<LumaphoneGlossaryTerm> &imported);
    /// Writes all terms as YAML. Throws FileError.
    void exportYAML(const QString &path) const;
    /// Shows the glossary file in the file viewer, whether it exists or not.
    void openGlossaryFolder() const;

signals:
    void termsChanged();
    void lastErrorMessageChanged();

private:
    /// Makes `terms` the list and writes it; the list changes even if it cannot be written.
    void keep(const QList<LumaphoneGlossaryTerm> &terms);
    void save(const QList<LumaphoneGlossaryTerm> &terms);
    void publish(const QList<LumaphoneGlossaryTerm> &terms, const std::optional<QString> &errorMessage);

    QString m_rootPath;
    FileRevealer m_revealFile;
    UuidGenerator m_makeUuid;
    QList<LumaphoneGlossaryTerm> m_terms;
    std::optional<QString> m_lastErrorMessage;
    bool m_lastLoadFailed = false; ///< then the file may hold what `terms` does not
};

} // namespace lumaphone
