#pragma once

#include "cli/CommandStreams.h"

#include <optional>

namespace lumaphone::cli {

/// Writes to a file descriptor at once, all of it; a reader that has gone away is no error.
ByteSink descriptorSink(int descriptor);

/// Columns of the terminal behind the descriptor; none if it is no terminal.
std::optional<int> terminalColumnsOf(int descriptor);

} // namespace lumaphone::cli
