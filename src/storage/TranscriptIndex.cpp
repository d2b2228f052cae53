#include "storage/TranscriptIndex.h"

#include "base/AtomicFile.h"
#include "storage/RecordCoding.h"
#include "storage/TranscriptFolder.h"
#include "storage/TranscriptStorageError.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <sys/stat.h>

#include <algorithm>

namespace lumaphone {

void sortNewestFirst(QList<TranscriptRecordMetadata> &records)
{
    std::stable_sort(records.begin(), records.end(),
        [](const auto &a, const auto &b) { return a.createdAt > b.createdAt; });
}

TranscriptIndex::TranscriptIndex(const TranscriptLibraryLayout &layout)
    : m_layout(layout)
{
}

FileLock TranscriptIndex::lock() const
{
    return FileLock::wait(m_layout.index + QStringLiteral(".lock"));
}

bool TranscriptIndex::exists() const
{
    return QFile::exists(m_layout.index);
}

bool TranscriptIndex::hasChanged() const
{
    return fileSignature() != m_signature;
}

QList<TranscriptRecordMetadata> TranscriptIndex::read()
{
    m_signature = fileSignature();
    return records();
}

QList<TranscriptRecordMetadata> TranscriptIndex::records() const
{
    const std::optional<QByteArray> bytes = readFile(m_layout.index);
    if (!bytes) {
        return {};
    }
    try {
        auto records = recordcoding::list(json::parse(*bytes), transcriptRecordMetadataFromJson);
        sortNewestFirst(records);
        return records;
    } catch (const json::DecodingError &error) {
        throw TranscriptStorageError(
            TranscriptStorageError::Case::fileDamaged, m_layout.index, error.errorDescription());
    }
}

void TranscriptIndex::write(const QList<TranscriptRecordMetadata> &records)
{
    removeInterruptedReplacements(m_layout.index);
    replaceFile(m_layout.index, json::pretty(recordcoding::array(records)), Durability::flushed);
    m_signature = fileSignature();
}

TranscriptIndex::Rebuilt TranscriptIndex::rebuilt() const
{
    Rebuilt result;
    QSet<QUuid> known;
    const QString unlisted = folderInTransition();
    for (const QString &name :
        QDir(m_layout.sessions).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)) {
        if (name == unlisted) {
            continue;
        }
        try {
            TranscriptRecordMetadata metadata
                = TranscriptFolder(m_layout.sessions + QLatin1Char('/') + name).readMetadata();
            metadata.folderName = name;
            if (!known.contains(metadata.id)) {
                known.insert(metadata.id);
                result.records.append(std::move(metadata));
            }
        } catch (const LocalizedError &) {
            ++result.skippedFolders;
        }
    }
    sortNewestFirst(result.records);
    return result;
}

void TranscriptIndex::noteTransition(
    const QString &folderName, const QList<TranscriptRecordMetadata> &listed) const
{
    removeUnlistedFolder(listed);
    removeInterruptedReplacements(transitionNote());
    replaceFile(transitionNote(), folderName.toUtf8(), Durability::flushed);
}

void TranscriptIndex::endTransition() const
{
    removeFile(transitionNote());
}

void TranscriptIndex::endInterruptedTransition() const
{
    if (!QFile::exists(transitionNote())) {
        return;
    }
    const FileLock held = lock();
    // Not read(): what another process has written since is still news for whoever reads next.
    removeUnlistedFolder(records());
    endTransition();
}

void TranscriptIndex::removeUnlistedFolder(const QList<TranscriptRecordMetadata> &listed) const
{
    const QString name = folderInTransition();
    if (!isPlainFolderName(name)) {
        return;
    }
    const bool isListed = std::any_of(
        listed.begin(), listed.end(), [&name](const auto &record) { return record.folderName == name; });
    if (!isListed) {
        TranscriptFolder(m_layout.sessions + QLatin1Char('/') + name).remove();
    }
}

QByteArray TranscriptIndex::fileSignature() const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_layout.index).constData(), &status) != 0) {
        return {};
    }
    return QByteArray::number(static_cast<qulonglong>(status.st_ino)) + ' '
        + QByteArray::number(static_cast<qlonglong>(status.st_size)) + ' '
        + QByteArray::number(static_cast<qlonglong>(status.st_mtim.tv_sec)) + ' '
        + QByteArray::number(static_cast<qlonglong>(status.st_mtim.tv_nsec));
}

QString TranscriptIndex::folderInTransition() const
{
    return QString::fromUtf8(readFile(transitionNote()).value_or(QByteArray()));
}

QString TranscriptIndex::transitionNote() const
{
    return m_layout.index + QStringLiteral(".transition");
}

} // namespace lumaphone
