#pragma once

#include "models/ModelStore.h"

namespace lumaphone::test {

/// The program's own speech models that users install, "silero-vad" and "sense-voice", with toy networks as
/// their files: a catalogue in JSON.
QByteArray toySpeechListing();
ModelCatalogue toySpeechCatalogue();

/// Puts a toy network where a store with that catalogue keeps the model.
void installToySpeechModel(const ModelStore &store, const QString &id);

/// Both of them.
void installToySpeechModels(const ModelStore &store);

} // namespace lumaphone::test
