#pragma once

#include "models/ModelStore.h"

namespace lumaphone {

/// Whether a model recognizes speech by itself, instead of helping those that do.
bool isRecognizer(const ModelEntry &entry);

/// The voice detector for networks that have none of their own: the one that the user has installed, or else
/// the one that comes with the program. Null where neither is in place, so that one has to be installed.
const ModelEntry *voiceDetectorInPlace(const ModelStore &store);

} // namespace lumaphone
