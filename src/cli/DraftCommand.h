#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class LumaphoneSessionDraftStore;
class LockedSingleInstance;
} // namespace lumaphone

namespace lumaphone::cli {

/// Two processes never share a draft: false, with a message, while another one uses it.
bool claimDraft(LockedSingleInstance &instance, const CommandStreams &streams);
/// Prints the lines of the draft, each with its translation below it.
ExitStatus runDraftShow(const LumaphoneSessionDraftStore &store, const CommandStreams &streams);
/// Deletes the draft.
ExitStatus runDraftDiscard(LumaphoneSessionDraftStore &store, const CommandStreams &streams);

} // namespace lumaphone::cli
