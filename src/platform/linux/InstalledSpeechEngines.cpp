#include "platform/linux/InstalledSpeechEngines.h"

#include "platform/linux/ExecutableFolderResources.h"
#include "platform/linux/HostedSpeechEngine.h"
#include "platform/linux/InstalledSpeechModel.h"
#include "platform/linux/PocketSphinxEngine.h"

namespace lumaphone {

std::vector<std::shared_ptr<SpeechEngine>> installedSpeechEngines(
    const ModelStore &models, CheckedFiles &checked)
{
    const auto resources = std::make_shared<ExecutableFolderResources>();
    const std::vector<SpokenLanguage> fourLanguages {
        SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean, SpokenLanguage::mandarin};
    return {
        std::make_shared<HostedSpeechEngine>(QStringLiteral("內建的英文網路"),
            std::vector {SpokenLanguage::english},
            SpeechInstallations(
                resources, [&models, &checked] { return bundledEnglishModel(models, checked); })),
        std::make_shared<HostedSpeechEngine>(QStringLiteral("四種語言的網路"), fourLanguages,
            SpeechInstallations(
                resources, [&models, &checked] { return installedSpeechModel(models, checked); })),
        std::make_shared<PocketSphinxEngine>(),
    };
}

} // namespace lumaphone
