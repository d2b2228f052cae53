#pragma once

#include "platform/BundleResources.h"
#include "speech/hosted/HostedSpeechEngine.h"
#include "speech/hosted/SpeechModelFiles.h"

#include <functional>
#include <memory>
#include <variant>

namespace lumaphone {

/// Finds what the hosted engine needs: its program and the runtime library among the program's resources, and
/// the model where `models` says.
class SpeechHostFiles
{
public:
    /// The installed model, or a sentence for the user: how to install it.
    using Models = std::function<std::variant<SpeechModelFiles, QString>()>;

    SpeechHostFiles(std::shared_ptr<const BundleResources> resources, Models models);

    HostedSpeechEngine::Installation operator()() const;

private:
    std::shared_ptr<const BundleResources> m_resources;
    Models m_models;
};

} // namespace lumaphone
