#include "storage/TranscriptLibraryLayout.h"

#include "storage/UserFiles.h"

namespace lumaphone {

TranscriptLibraryLayout TranscriptLibraryLayout::at(const QString &root)
{
    return {root, root + QStringLiteral("/index.json"), root + QStringLiteral("/sessions")};
}

TranscriptLibraryLayout TranscriptLibraryLayout::standard(const PlatformFolders &folders)
{
    if (const auto folder = transcriptsFolder(folders)) {
        return at(*folder);
    }
    return {std::nullopt, QStringLiteral("/tmp/lumaphone-transcripts-index.json"),
        QStringLiteral("/tmp/lumaphone-transcripts")};
}

QString TranscriptLibraryLayout::sessionFolder(const TranscriptRecordMetadata &metadata) const
{
    return sessions + QLatin1Char('/') + metadata.folderName;
}

} // namespace lumaphone
