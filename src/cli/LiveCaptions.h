#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"
#include "cli/NoFloatingCaptions.h"
#include "cli/SessionDefaults.h"
#include "storage/LumaphoneSettings.h"

#include <functional>
#include <memory>

namespace lumaphone {
class Machine;
struct LiveSessionCollaborators;
} // namespace lumaphone

namespace lumaphone::cli {

/// A live session in the terminal.
class LiveCaptions
{
public:
    /// Everything given outlives it.
    LiveCaptions(const CaptionCommandLine &command, Machine &machine, const CommandStreams &streams);

    /// Captions until the sound or the user ends it.
    ExitStatus run();

private:
    LiveSessionCollaborators collaborators(std::function<void()> onFileCompleted);

    const CaptionCommandLine &m_command;
    Machine &m_machine;
    const CommandStreams &m_streams;
    SessionDefaults m_defaults;
    const std::unique_ptr<LumaphoneSettings> m_settings;
    NoFloatingCaptions m_noPanel;
};

} // namespace lumaphone::cli
