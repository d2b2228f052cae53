#pragma once

#include "models/ModelCatalogue.h"
#include "models/ModelManifest.h"

#include <QList>
#include <QString>

#include <functional>
#include <stop_token>

namespace lumaphone {

/// Bytes of the source that have been read, of how many.
using UnpackProgress = std::function<void(qint64 done, qint64 total)>;

/// Checks what has been fetched to `path` against what is known of it and writes its files into `folder`,
/// which exists. A gzip file that has been unpacked on the way is taken as it is. Returns a record of every
/// file. Takes a while. Throws ModelError, FileError.
QList<RecordedFile> unpackModel(const ModelDownload &download, const QString &path, const QString &folder,
    const UnpackProgress &onProgress = {}, const std::stop_token &stop = {});

} // namespace lumaphone
