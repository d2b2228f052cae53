#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>

namespace lumaphone {

/// Reads a file block by block.
class ModelFileReader
{
public:
    /// Throws FileError.
    explicit ModelFileReader(const QString &path);

    qint64 size() const { return m_file.size(); }
    /// Valid until the next call; empty at the end. Throws FileError.
    QByteArrayView next();
    /// The first bytes, without moving on; fewer at the end.
    QByteArray peek(qint64 count) { return m_file.peek(count); }

private:
    QFile m_file;
    QByteArray m_block;
};

/// Writes a file.
class ModelFileWriter
{
public:
    enum class Start {
        asNewFile, ///< which must not exist yet
        fromScratch, ///< in the place of what may be there
        behindTheEnd, ///< of what is there
    };

    /// Throws FileError, or ModelError (diskFull).
    explicit ModelFileWriter(const QString &path, Start start = Start::asNewFile);

    qint64 size() const { return m_file.size(); }

    /// Throws FileError, or ModelError (diskFull).
    void write(QByteArrayView bytes);
    /// Brings everything to the disk. Throws as write() does.
    void finish();

private:
    QFile m_file;
};

} // namespace lumaphone
