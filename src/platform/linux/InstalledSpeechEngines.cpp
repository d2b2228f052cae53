#include "platform/linux/InstalledSpeechEngines.h"

#include "platform/linux/ExecutableFolderResources.h"
#include "platform/linux/HostedSpeechEngine.h"
#include "platform/linux/InstalledSpeechModel.h"
#include "platform/linux/PocketSphinxEngine.h"

namespace lumaphone {

std::vector<std::shared_ptr<SpeechEngine>> installedSpeechEngines(const ModelStore &models)
{
    const SpeechInstallations installations(
        std::make_shared<ExecutableFolderResources>(), [&models] { return installedSpeechModel(models); });
    return {std::make_shared<HostedSpeechEngine>(installations), std::make_shared<PocketSphinxEngine>()};
}

} // namespace lumaphone
