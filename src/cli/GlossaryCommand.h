#pragma once

#include "base/Record.h"
#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"

namespace lumaphone {
class LumaphoneGlossaryStore;
}

namespace lumaphone::cli {

/// Prints every term, one per line: on or off, mode, source, target and note, separated by TABs.
ExitStatus runGlossaryList(const LumaphoneGlossaryStore &store, const CommandStreams &streams);
/// Appends a term. One with the same source is refused, so that a term can be named by its source.
ExitStatus runGlossaryAdd(const GlossaryAdd &command, LumaphoneGlossaryStore &store,
    const UuidGenerator &makeUuid, const CommandStreams &streams);
/// Removes every term with that source.
ExitStatus runGlossaryRemove(
    const GlossaryRemove &command, LumaphoneGlossaryStore &store, const CommandStreams &streams);
/// Switches every term with that source on or off.
ExitStatus runGlossarySetEnabled(
    const GlossarySetEnabled &command, LumaphoneGlossaryStore &store, const CommandStreams &streams);
/// Adds the terms of a file whose sources are new, and says how many there were. Throws LocalizedError when
/// the file cannot be read.
ExitStatus runGlossaryImport(
    const GlossaryImport &command, LumaphoneGlossaryStore &store, const CommandStreams &streams);
/// Writes every term into a YAML file; names those that the format cannot carry whole. Throws LocalizedError.
ExitStatus runGlossaryExport(
    const GlossaryExport &command, const LumaphoneGlossaryStore &store, const CommandStreams &streams);

} // namespace lumaphone::cli
