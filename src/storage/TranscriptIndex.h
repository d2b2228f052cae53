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
    /// What the session folders say of themselves, newest first. One whose deletion was interrupted is not
    /// among them.
    Rebuilt rebuilt() const;

    // A deletion takes two steps: the record leaves the index, then the folder goes. A note of the folder
    // keeps one that was interrupted between them from leaving the folder behind.
    void noteDeletion(const QString &folderName) const;
    void finishDeletion() const;
    /// Removes the folder of an interrupted deletion, if the index no longer names it. Throws what read()
    /// throws.
    void finishInterruptedDeletion();

private:
    QList<TranscriptRecordMetadata> records() const;
    QByteArray fileSignature() const;
    QString deletionNote() const;
    QString folderToBeDeleted() const;

    TranscriptLibraryLayout m_layout;
    QByteArray m_signature;
};

/// Newest first; records of the same moment keep their order.
void sortNewestFirst(QList<TranscriptRecordMetadata> &records);

} // namespace lumaphone
