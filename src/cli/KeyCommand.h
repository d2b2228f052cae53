#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class LumaphoneSettings;
}

namespace lumaphone::cli {

/// Reads the provider's key from standard input, on a terminal without showing it, and keeps it in the
/// keychain.
ExitStatus runKeySet(LumaphoneSettings &settings, const CommandStreams &streams);
ExitStatus runKeyClear(LumaphoneSettings &settings, const CommandStreams &streams);
/// Says whether there is a key, never which one.
ExitStatus runKeyStatus(const LumaphoneSettings &settings, const CommandStreams &streams);

} // namespace lumaphone::cli
