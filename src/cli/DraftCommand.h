#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class LumaphoneSessionDraftStore;
}

namespace lumaphone::cli {

/// Prints the lines of the draft, each with its translation below it.
ExitStatus runDraftShow(const LumaphoneSessionDraftStore &store, const CommandStreams &streams);
/// Deletes the draft.
ExitStatus runDraftDiscard(LumaphoneSessionDraftStore &store, const CommandStreams &streams);

} // namespace lumaphone::cli
