#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class Machine;
}

namespace lumaphone::cli {

/// Does what the command line asks for, on this machine. Throws what the command has no words of its own for.
ExitStatus runCommand(const CommandLine &command, Machine &machine, const CommandStreams &streams);

} // namespace lumaphone::cli
