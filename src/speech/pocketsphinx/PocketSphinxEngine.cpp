#include "speech/pocketsphinx/PocketSphinxEngine.h"

#include "language/SpokenLanguage.h"
#include "speech/pocketsphinx/PocketSphinxModel.h"
#include "speech/pocketsphinx/PocketSphinxRecognizer.h"

namespace lumaphone {

namespace {

const auto usEnglish = localeIdentifier(SpokenLanguage::english);

} // namespace

PocketSphinxEngine::PocketSphinxEngine()
    : PocketSphinxEngine(QStringLiteral(LUMAPHONE_POCKETSPHINX_MODELS "/en-us"))
{
}

PocketSphinxEngine::PocketSphinxEngine(QString modelFolder)
    : m_modelFolder(std::move(modelFolder))
{
}

std::vector<QString> PocketSphinxEngine::installedLocales() const
{
    if (!PocketSphinxModel(m_modelFolder).isInstalled()) {
        return {};
    }
    return {usEnglish};
}

std::optional<QString> PocketSphinxEngine::installationHint(const QString &localeIdentifier) const
{
    if (localeIdentifier != usEnglish) {
        return std::nullopt;
    }
    return QStringLiteral("請安裝 Debian 套件 pocketsphinx-en-us。");
}

std::vector<std::shared_ptr<StreamingRecognizer>> PocketSphinxEngine::makeRecognizers(
    const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const
{
    std::vector<std::shared_ptr<StreamingRecognizer>> recognizers;
    recognizers.reserve(localeIdentifiers.size());
    for (const QString &locale : localeIdentifiers) {
        recognizers.push_back(
            std::make_shared<PocketSphinxRecognizer>(locale, PocketSphinxModel(m_modelFolder), sink));
    }
    return recognizers;
}

} // namespace lumaphone
