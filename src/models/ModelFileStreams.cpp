#include "models/ModelFileStreams.h"

#include "base/AtomicFile.h"
#include "models/ModelError.h"

#include <QFileInfo>

#include <unistd.h>

#include <cerrno>

namespace lumaphone {

namespace {

constexpr qint64 blockBytes = 256LL * 1024;

[[noreturn]] void failWriting(const QString &path)
{
    // EFBIG: what the user may write is used up.
    if (errno == ENOSPC || errno == EDQUOT || errno == EFBIG) {
        throw ModelError(ModelError::Case::diskFull, QFileInfo(path).fileName());
    }
    throw FileError(path, errno);
}

QIODevice::OpenMode openMode(ModelFileWriter::Start start)
{
    switch (start) {
    case ModelFileWriter::Start::asNewFile:
        return QIODevice::WriteOnly | QIODevice::NewOnly;
    case ModelFileWriter::Start::fromScratch:
        return QIODevice::WriteOnly | QIODevice::Truncate;
    case ModelFileWriter::Start::behindTheEnd:
        return QIODevice::WriteOnly | QIODevice::Append;
    }
    Q_UNREACHABLE();
}

} // namespace

ModelFileReader::ModelFileReader(const QString &path)
    : m_file(path)
{
    errno = 0;
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw FileError(path, errno != 0 ? errno : EIO);
    }
    m_block.resize(blockBytes);
}

QByteArrayView ModelFileReader::next()
{
    errno = 0;
    const qint64 count = m_file.read(m_block.data(), m_block.size());
    if (count < 0) {
        throw FileError(m_file.fileName(), errno != 0 ? errno : EIO);
    }
    return QByteArrayView(m_block).first(count);
}

ModelFileWriter::ModelFileWriter(const QString &path, Start start)
    : m_file(path)
{
    errno = 0;
    if (!m_file.open(openMode(start) | QIODevice::Unbuffered)) {
        failWriting(path);
    }
}

void ModelFileWriter::write(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        errno = 0;
        const qint64 written = m_file.write(bytes.data(), bytes.size());
        if (written <= 0) {
            failWriting(m_file.fileName());
        }
        bytes = bytes.sliced(written);
    }
}

void ModelFileWriter::finish()
{
    errno = 0;
    if (::fsync(m_file.handle()) != 0) {
        failWriting(m_file.fileName());
    }
    m_file.close();
}

} // namespace lumaphone
