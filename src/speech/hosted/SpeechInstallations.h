#pragma once

#include "platform/BundleResources.h"
#include "speech/hosted/HostedSpeechEngine.h"

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

/// Finds what the hosted engine needs: its program and the runtime library among the program's resources, and
/// the model where `models` says.
class SpeechInstallations
{
public:
    /// The installed model, or a sentence for the user: how to install it.
    using Models = std::function<std::variant<SpeechModelFiles, QString>()>;

    SpeechInstallations(std::shared_ptr<const BundleResources> resources, Models models);

    HostedSpeechEngine::Installation operator()() const;

private:
    std::shared_ptr<const BundleResources> m_resources;
    Models m_models;
};

} // namespace lumaphone
