#pragma once

#include "base/Record.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QCoroTask>
#include <QList>
#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace lumaphone {

/// Shows a file, selected, in the desktop's file viewer, or its folder while there is no such file. Throws
/// LocalizedError. Main thread.
using FileRevealer = std::function<QCoro::Task<>(QString path)>;

/// Owns the user's glossary and keeps it in "glossary.json". Lives on the main thread; reads and writes
/// synchronously, so that every change is on the disk when the operation returns. Other processes may change
/// the same file: a change is made, under a lock, to what stands in it at that moment. A file that could not
/// be read is kept beside the new one when the next change is saved; one that has disappeared is written
/// again.
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
    /// `lastErrorMessage` says why. Of several terms with one identity the later ones get others.
    void load();
    /// Shows what another process has changed since. Changes nothing while the file is missing or cannot be
    /// read.
    void refresh();
    /// Appends a cleaned copy.
    void add(const LumaphoneGlossaryTerm &term);
    /// Replaces the first term of the same `id` by a cleaned copy; nothing happens when there is none.
    void update(const LumaphoneGlossaryTerm &term);
    /// Replaces the term that was `former` by a cleaned copy, and no other of the same `id`; nothing happens
    /// when it is gone.
    void replace(const LumaphoneGlossaryTerm &former, const LumaphoneGlossaryTerm &term);
    /// Removes the first term equal to this one, or else that of its `id`; nothing happens when there is
    /// none.
    void remove(const LumaphoneGlossaryTerm &term);
    /// Puts back a term that was removed, where it was if the list is still that long.
    void restore(const LumaphoneGlossaryTerm &term, qsizetype row);
    /// Appends the terms of a JSON, YAML or CSV file whose sources are new, whatever their case. Throws
    /// what decodeTerms() throws, and changes nothing then.
    void importTerms(const QString &path);
    /// The same for terms that were read already.
    void importTerms(const QList<LumaphoneGlossaryTerm> &imported);
    /// Writes all terms as YAML. Throws FileError.
    void exportYAML(const QString &path) const;
    /// Shows the glossary file in the file viewer, whether it exists or not. Throws what the revealer throws.
    QCoro::Task<> openGlossaryFolder() const;

signals:
    void termsChanged();
    void lastErrorMessageChanged();

private:
    using Terms = QList<LumaphoneGlossaryTerm>;
    /// A change of the list. False if there was nothing to change.
    using Change = std::function<bool(Terms &terms)>;
    /// What the file holds now, or what is known of it.
    struct Reading
    {
        Terms terms;
        bool isOfOthers
            = false; ///< another process wrote it since; without the changes that are not saved yet
        bool isDamaged = false;
    };

    /// Makes a change in the list and in the file; the list changes even if the file cannot be written.
    void make(const Change &change);
    /// The list with the change, as it has been written. Throws LocalizedError. None if there was nothing to
    /// change.
    std::optional<Terms> saved(const Change &change);
    Reading read() const;
    void publish(const Terms &terms, const std::optional<QString> &errorMessage);

    QString m_rootPath;
    FileRevealer m_revealFile;
    UuidGenerator m_makeUuid;
    QList<LumaphoneGlossaryTerm> m_terms;
    std::optional<QString> m_lastErrorMessage;
    std::optional<QByteArray> m_knownBytes; ///< of the file, as this store read or wrote it last
    std::vector<Change> m_unsaved; ///< made in the list, but not yet in the file
};

} // namespace lumaphone
