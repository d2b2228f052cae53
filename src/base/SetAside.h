#pragma once

#include <QString>

namespace lumaphone {

/// Gives a damaged file, or whatever lies in its place, another name in the same folder ("x.json.damaged",
/// then "x.json.damaged-2" and so on; nothing is overwritten) and returns the new path. Throws FileError.
QString setAside(const QString &path);

} // namespace lumaphone
