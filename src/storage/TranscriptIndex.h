#pragma once

#include "base/FileLock.h"
#include "storage/TranscriptLibraryLayout.h"
#include "storage/TranscriptRecordMetadata.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace lumaphone {

/// The index file, which several processes may write: whoever changes it holds its lock from reading to
/// writing.
class TranscriptIndex
{
public:
    explicit TranscriptIndex(const TranscriptLibraryLayout &layout);

    /// Throws FileError.
    FileLock lock() const;

    bool exists() const;
    /// Whether the file is not the one that was read or written last.
    bool hasChanged() const;
    /// The records, newest first; none without a file. Throws FileError, or TranscriptStorageError if it is
    /// damaged.
    QList<TranscriptRecordMetadata> read();
    /// Replaces the file. Throws FileError.
    void write(const QList<TranscriptRecordMetadata> &records);

    struct Rebuilt
    {
        QList<TranscriptRecordMetadata> records;
        qsizetype skippedFolders = 0; ///< they hold metadata that cannot be read
    };
    /// What the session folders say of themselves, newest first. One that was not yet saved, or half removed,
    /// is not among them.
    Rebuilt rebuilt() const;

    // A session comes and goes in two steps, its folder and its record in the index: a new folder is there
    // before its record, and goes after it. A note of the folder keeps a change that was interrupted between
    // them from leaving the folder behind. The owner of the lock writes and removes it.
    /// First removes what an interrupted change has left, unless it is `listed`.
    void noteTransition(const QString &folderName, const QList<TranscriptRecordMetadata> &listed) const;
    void endTransition() const;
    /// Removes the folder of an interrupted change if the index does not name it. Throws what read() throws.
    void endInterruptedTransition() const;

private:
    QList<TranscriptRecordMetadata> records() const;
    QByteArray fileSignature() const;
    QString transitionNote() const;
    QString folderInTransition() const;
    void removeUnlistedFolder(const QList<TranscriptRecordMetadata> &listed) const;

    TranscriptLibraryLayout m_layout;
    QByteArray m_signature;
};

/// Newest first; records of the same moment keep their order.
void sortNewestFirst(QList<TranscriptRecordMetadata> &records);

} // namespace lumaphone
