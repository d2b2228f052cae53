#pragma once

#include "base/AtomicFile.h"

namespace lumaphone {

/// Writes a file that the user has asked for, as other programs would: with the permissions that the umask
/// allows, or those that the file has; through symbolic links; also into pipes and devices such as
/// /dev/stdout. An ordinary file is replaced in one step and survives a power cut. Throws FileError, and an
/// ordinary file is as before then.
void exportFile(const QString &path, const QByteArray &bytes);

} // namespace lumaphone
