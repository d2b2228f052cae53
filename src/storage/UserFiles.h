#pragma once

#include "platform/PlatformFolders.h"

#include <QString>

#include <optional>

namespace lumaphone {

// Where the user's files lie. Where the platform knows no such folder, the home itself takes its place, but
// for the library.

/// The file of the settings.
QString defaultsPath(const PlatformFolders &folders);
/// The folder of the crash-recovery draft.
QString draftsFolder(const PlatformFolders &folders);
/// The folder of "glossary.json".
QString glossaryFolder(const PlatformFolders &folders);
/// The folder of the transcript library; none where the platform knows no place for the program's data.
std::optional<QString> transcriptsFolder(const PlatformFolders &folders);
/// The folder of the models that the user installs.
QString modelsFolder(const PlatformFolders &folders);
/// The file that remembers which files have been found right.
QString checkedFilesPath(const PlatformFolders &folders);

} // namespace lumaphone
