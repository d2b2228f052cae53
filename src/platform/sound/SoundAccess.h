#pragma once

#include "platform/sound/PulseOptions.h"

namespace lumaphone {

/// Whether this process may use the desktop's sound. Outside a sandbox everybody may; inside, sound comes
/// through one socket, all or nothing. Does not wait for the server.
bool mayUseSound(const PulseOptions &options);

} // namespace lumaphone
