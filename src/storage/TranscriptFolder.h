#pragma once

#include "storage/TranscriptDocument.h"

#include <QString>

namespace lumaphone {

/// The folder of one saved transcript: its metadata and lines as JSON, and three texts made from them.
class TranscriptFolder
{
public:
    explicit TranscriptFolder(QString path);

    const QString &path() const { return m_path; }
    bool exists() const;

    /// Throws TranscriptStorageError when it is not there or damaged, FileError when it cannot be read.
    TranscriptRecordMetadata readMetadata() const;
    QList<SavedTranscriptLine> readLines() const;
    /// Creates the folder and writes its files one after another, each replacing its former self in one step.
    /// The owner of the index's lock calls it. Throws FileError at the first that fails.
    void write(const TranscriptDocument &document) const;
    /// With everything in it. A folder that is not there is fine. Throws FileError.
    void remove() const;

private:
    template<typename Decode> auto decoded(const QString &name, Decode decode) const;
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;

    QString m_path;
};

} // namespace lumaphone
