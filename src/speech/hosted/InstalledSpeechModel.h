#pragma once

#include "models/CheckedFiles.h"
#include "models/ModelStore.h"
#include "speech/hosted/SpeechInstallations.h"

namespace lumaphone {

/// What the network that the user can install recognises, as the catalogue says.
std::vector<SpokenLanguage> installedModelLanguages(const ModelCatalogue &catalogue);

/// The same of the network that is part of the program.
std::vector<SpokenLanguage> bundledModelLanguages(const ModelCatalogue &catalogue);

// What the networks need, or a sentence for the user: what is missing and how to get it. `store` and
// `checked`, which compares the files before they are used, must outlive the answer.

/// The network for four languages that the user has installed, with a voice detector: the one installed with
/// it, or else the program's own.
std::variant<SpeechModelFiles, QString> installedSpeechModel(const ModelStore &store, CheckedFiles &checked);

/// The English network that is part of the program.
std::variant<SpeechModelFiles, QString> bundledEnglishModel(const ModelStore &store, CheckedFiles &checked);

} // namespace lumaphone
