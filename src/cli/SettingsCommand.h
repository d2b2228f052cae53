#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class LumaphoneSettings;
}

namespace lumaphone::cli {

/// Prints every setting, one per line: key, TAB, value.
ExitStatus runSettingsList(const LumaphoneSettings &settings, const CommandStreams &streams);
/// Prints the value of one key.
ExitStatus runSettingsGet(
    const SettingsGet &command, const LumaphoneSettings &settings, const CommandStreams &streams);
/// Stores a value; one of the wrong kind is refused with the kind that is wanted.
ExitStatus runSettingsSet(
    const SettingsSet &command, LumaphoneSettings &settings, const CommandStreams &streams);

} // namespace lumaphone::cli
