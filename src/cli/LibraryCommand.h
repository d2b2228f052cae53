#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>

#include <functional>
#include <optional>

namespace lumaphone {
class LumaphoneSessionDraftStore;
class LumaphoneSettings;
class TranscriptLibraryStore;
} // namespace lumaphone

namespace lumaphone::cli {

/// Whether the user says yes; none where there is nobody to ask.
using Confirmation = std::function<std::optional<bool>(const QString &question)>;

/// Asks on the terminal that standard input is.
Confirmation terminalQuestion(const CommandStreams &streams);

// A transcript is named by its id or by a beginning of it that no other one has. A library that was opened
// with a message, such as a rebuilt index, says so first. What the library throws is for the caller to show.

/// Prints every transcript that holds the searched text, newest first: id, date, number of lines and title,
/// separated by TABs.
ExitStatus runLibraryList(
    const LibraryList &command, const TranscriptLibraryStore &store, const CommandStreams &streams);
/// Prints the title, the note and each line with its translation below it.
ExitStatus runLibraryShow(
    const LibraryShow &command, TranscriptLibraryStore &store, const CommandStreams &streams);
/// Prints the transcript in the wanted form, or writes it into a file.
ExitStatus runLibraryExport(
    const LibraryExport &command, TranscriptLibraryStore &store, const CommandStreams &streams);
/// Deletes the transcript, once confirmed.
ExitStatus runLibraryDelete(const LibraryDelete &command, TranscriptLibraryStore &store,
    const Confirmation &confirm, const CommandStreams &streams);
/// Saves the draft as a transcript, with those of `terms` that occur in it, and deletes the draft.
ExitStatus runLibrarySave(LumaphoneSessionDraftStore &drafts, TranscriptLibraryStore &store,
    const LumaphoneSettings &settings, const QList<LumaphoneGlossaryTerm> &terms,
    const CommandStreams &streams);

} // namespace lumaphone::cli
