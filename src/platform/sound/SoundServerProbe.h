#pragma once

#include "platform/MachineFacts.h"
#include "platform/sound/PulseOptions.h"

namespace lumaphone {

/// Asks the sound server what there is. Waits for its answers, at most the time limit for each; not for the
/// main thread of a window. The user's server is never started by it.
SoundServerFacts probeSoundServer(const PulseOptions &options);

} // namespace lumaphone
