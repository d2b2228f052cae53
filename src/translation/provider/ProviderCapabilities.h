#pragma once

#include "translation/provider/OpenAICompatibleProviderConfiguration.h"

namespace lumaphone {

/// What a provider can do once it is configured. A chat-completions endpoint with a base URL and a model can
/// do all of it, and nothing of it when either is empty.
struct ProviderCapabilities
{
    explicit ProviderCapabilities(const OpenAICompatibleProviderConfiguration &configuration);

    bool supportsTextTranslation = false; ///< decides whether live translation can start
    bool supportsTextPolishing = false;
    bool supportsGlossary = false;

    bool operator==(const ProviderCapabilities &) const = default;
};

} // namespace lumaphone
