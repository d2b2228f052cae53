#pragma once

#include "models/ModelStore.h"
#include "platform/linux/SpeechInstallations.h"

namespace lumaphone {

/// The files of the speech model in the user's store, which is made of a voice detector and a network. Where
/// one of them is missing, a sentence for the user: what to run and how much will be fetched.
std::variant<SpeechModelFiles, QString> installedSpeechModel(const ModelStore &store);

/// The files of the English network that is part of the program, or a sentence for the user: how to get them.
std::variant<SpeechModelFiles, QString> bundledEnglishModel(const BundleResources &resources);

} // namespace lumaphone
