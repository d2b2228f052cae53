#pragma once

#include "models/ModelStore.h"
#include "platform/MachineFacts.h"
#include "speech/framework/LocalSpeechFramework.h"

namespace lumaphone {

/// Looks at this machine with what the program uses on it. Asks the sound server, the session's bus and the
/// compositor, and waits for them, but starts nothing and asks the user nothing. `program`: its name and
/// version.
MachineFacts probeMachine(
    const QString &program, const ModelStore &models, const LocalSpeechFramework &speech);

} // namespace lumaphone
