#pragma once

#include "platform/PlatformFolders.h"
#include "storage/TranscriptRecordMetadata.h"

#include <QString>

#include <optional>

namespace lumaphone {

/// Where the library's files lie.
struct TranscriptLibraryLayout
{
    std::optional<QString> root; ///< none when the user's data folder is unknown
    QString index; ///< the file that lists every transcript
    QString sessions; ///< the folder of the session folders

    /// A library in a folder of its own.
    static TranscriptLibraryLayout at(const QString &root);
    /// The user's library, in the data folder, or below /tmp when there is none.
    static TranscriptLibraryLayout standard(const PlatformFolders &folders);

    QString sessionFolder(const TranscriptRecordMetadata &metadata) const;
};

} // namespace lumaphone
