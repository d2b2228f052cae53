#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"
#include "platform/MachineFacts.h"

namespace lumaphone::cli {

/// Prints what the program can do on this machine, what it lacks and how to get it. A failure if anything of
/// it cannot work.
ExitStatus runDoctor(const MachineFacts &machine, const CommandStreams &streams);

} // namespace lumaphone::cli
