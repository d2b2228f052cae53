#include "machine/SpeechEngines.h"

#include "platform/desktop/ExecutableFolderResources.h"
#include "speech/hosted/HostedSpeechEngine.h"
#include "speech/hosted/SpeechHostFiles.h"
#include "speech/hosted/SpeechModelFiles.h"
#include "speech/pocketsphinx/PocketSphinxEngine.h"

namespace lumaphone {

std::vector<std::shared_ptr<SpeechEngine>> speechEngines(const ModelStore &models, CheckedFiles &checked)
{
    const auto resources = std::make_shared<ExecutableFolderResources>();
    return {
        std::make_shared<HostedSpeechEngine>(QStringLiteral("內建的英文網路"),
            bundledModelLanguages(models.catalogue()),
            SpeechHostFiles(resources, [&models, &checked] { return bundledEnglishModel(models, checked); })),
        std::make_shared<HostedSpeechEngine>(QStringLiteral("四種語言的網路"),
            installedModelLanguages(models.catalogue()),
            SpeechHostFiles(
                resources, [&models, &checked] { return installedSpeechModel(models, checked); })),
        std::make_shared<PocketSphinxEngine>(),
    };
}

} // namespace lumaphone
