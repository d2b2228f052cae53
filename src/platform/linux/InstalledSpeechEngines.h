#pragma once

#include "models/ModelStore.h"
#include "platform/linux/SpeechEngine.h"

namespace lumaphone {

/// The engines of this machine in the order of preference: networks for four languages, where their model and
/// runtime library are installed, then PocketSphinx for English. `models` outlives them.
std::vector<std::shared_ptr<SpeechEngine>> installedSpeechEngines(const ModelStore &models);

} // namespace lumaphone
