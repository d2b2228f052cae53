#pragma once

#include "models/ModelStore.h"

namespace lumaphone::test {

/// Puts a toy network where the store keeps a model of the catalogue: "silero-vad" or "sense-voice".
void installToySpeechModel(const ModelStore &store, const QString &id);

/// Both of them.
void installToySpeechModels(const ModelStore &store);

} // namespace lumaphone::test
