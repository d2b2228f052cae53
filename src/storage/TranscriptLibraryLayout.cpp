#include "storage/TranscriptLibraryLayout.h"

namespace lumaphone {

TranscriptLibraryLayout TranscriptLibraryLayout::at(const QString &root)
{
    return {root, root + QStringLiteral("/index.json"), root + QStringLiteral("/sessions")};
}

TranscriptLibraryLayout TranscriptLibraryLayout::standard(const PlatformFolders &folders)
{
    if (const auto support = folders.applicationSupport()) {
        return at(*support + QStringLiteral("/Lumaphone/Transcripts"));
    }
    return {std::nullopt, QStringLiteral("/tmp/lumaphone-transcripts-index.json"),
        QStringLiteral("/tmp/lumaphone-transcripts")};
}

QString TranscriptLibraryLayout::sessionFolder(const TranscriptRecordMetadata &metadata) const
{
    return sessions + QLatin1Char('/') + metadata.folderName;
}

} // namespace lumaphone
