#include "translation/ondevice/LoadedLegs.h"

#include <vector>

namespace lumaphone {

LoadedLegs::LoadedLegs(int threads)
    : m_threads(threads)
{
}

std::shared_ptr<engine::Translator> LoadedLegs::translator(
    const QList<InstalledLeg> &legs, WrittenChinese written)
{
    // One loads, the other one waits and finds it loaded.
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<engine::TranslationModel>> models;
    for (const InstalledLeg &installed : legs) {
        models.push_back(leg(installed));
    }
    auto translator = std::make_shared<engine::Translator>(std::move(models), written);
    translator->warmUp();
    return translator;
}

std::shared_ptr<engine::TranslationModel> LoadedLegs::leg(const InstalledLeg &leg)
{
    std::weak_ptr<engine::TranslationModel> &known = m_loaded[leg.id];
    if (auto loaded = known.lock()) {
        return loaded;
    }
    engine::EngineOptions options;
    options.threads = m_threads;
    const engine::ModelFiles files {leg.model.require(QStringLiteral("model")),
        leg.model.require(QStringLiteral("sourceVocabulary")),
        leg.model.path(QStringLiteral("targetVocabulary")).value_or(QString()),
        leg.model.path(QStringLiteral("shortlist")).value_or(QString())};
    auto loaded = std::make_shared<engine::TranslationModel>(files, options);
    known = loaded;
    return loaded;
}

} // namespace lumaphone
