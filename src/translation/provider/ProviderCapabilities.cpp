#include "translation/provider/ProviderCapabilities.h"

namespace lumaphone {

ProviderCapabilities::ProviderCapabilities(const OpenAICompatibleProviderConfiguration &configuration)
{
    const bool isConfigured = !configuration.baseURL.isEmpty() && !configuration.model.isEmpty();
    supportsTextTranslation = isConfigured;
    supportsTextPolishing = isConfigured;
    supportsGlossary = isConfigured;
}

} // namespace lumaphone
