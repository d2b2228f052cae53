#pragma once

#include "language/SpokenLanguage.h"
#include "models/CheckedFiles.h"
#include "models/ModelStore.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <stop_token>
#include <variant>
#include <vector>

namespace lumaphone {

/// The files of an installed speech model.
struct SpeechModelFiles
{
    QString voiceDetector;
    host::Network network;
    /// Throws where a file is not the one it should be. May read all of them.
    std::function<void(const std::stop_token &)> demandIntact;
    QString repair; ///< what the user can do then
    std::uint32_t voiceThreshold = 500; ///< how sure the voice detector must be of speech, in thousandths
};

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
