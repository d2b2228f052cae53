#include "storage/TranscriptFolder.h"

#include "base/AtomicFile.h"
#include "storage/RecordCoding.h"
#include "storage/TranscriptStorageError.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <utility>

namespace lumaphone {

namespace {
const auto metadataFile = QStringLiteral("metadata.json");
const auto linesFile = QStringLiteral("lines.json");
} // namespace

TranscriptFolder::TranscriptFolder(QString path)
    : m_path(std::move(path))
{
}

bool TranscriptFolder::exists() const
{
    return QFileInfo(m_path).isDir();
}

/// What `decode` makes of a file.
template<typename Decode> auto TranscriptFolder::decoded(const QString &name, Decode decode) const
{
    const QByteArray bytes = read(name);
    try {
        return decode(json::parse(bytes));
    } catch (const json::DecodingError &error) {
        throw TranscriptStorageError(TranscriptStorageError::Case::fileDamaged,
            m_path + QLatin1Char('/') + name, error.errorDescription());
    }
}

TranscriptRecordMetadata TranscriptFolder::readMetadata() const
{
    return decoded(
        metadataFile, [](const json::Value &value) { return transcriptRecordMetadataFromJson(value); });
}

QList<SavedTranscriptLine> TranscriptFolder::readLines() const
{
    return decoded(linesFile,
        [](const json::Value &value) { return recordcoding::list(value, savedTranscriptLineFromJson); });
}

void TranscriptFolder::write(const TranscriptDocument &document) const
{
    createFolder(m_path);
    write(metadataFile, json::pretty(toJson(document.metadata)));
    write(linesFile, json::pretty(recordcoding::array(document.lines)));
    write(QStringLiteral("source.txt"), document.sourceText().toUtf8());
    write(QStringLiteral("translation.txt"), document.translationText().toUtf8());
    write(QStringLiteral("bilingual.txt"), document.bilingualText().toUtf8());
}

void TranscriptFolder::remove() const
{
    std::error_code error;
    std::filesystem::remove_all(QFile::encodeName(m_path).toStdString(), error);
    if (error) {
        throw FileError(m_path, error.value());
    }
}

QByteArray TranscriptFolder::read(const QString &name) const
{
    using enum TranscriptStorageError::Case;
    if (!exists()) {
        throw TranscriptStorageError(folderMissing, m_path);
    }
    const QString path = m_path + QLatin1Char('/') + name;
    const std::optional<QByteArray> bytes = readFile(path);
    if (!bytes) {
        throw TranscriptStorageError(fileMissing, path);
    }
    return *bytes;
}

void TranscriptFolder::write(const QString &name, const QByteArray &bytes) const
{
    const QString path = m_path + QLatin1Char('/') + name;
    removeInterruptedReplacements(path);
    replaceFile(path, bytes, Durability::flushed);
}

} // namespace lumaphone
