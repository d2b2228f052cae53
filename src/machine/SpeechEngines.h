#pragma once

#include "models/CheckedFiles.h"
#include "models/ModelStore.h"
#include "speech/framework/SpeechEngine.h"

namespace lumaphone {

/// The engines of this machine in the order of preference: the program's own network for English, the network
/// for four languages where it is installed, both where there is a runtime library for this processor, then
/// PocketSphinx for English. `models`, and `checked`, which compares files before they are used, outlive
/// them.
std::vector<std::shared_ptr<SpeechEngine>> speechEngines(const ModelStore &models, CheckedFiles &checked);

} // namespace lumaphone
