#include "platform/linux/HostedSpeechEngine.h"

#include "platform/linux/MissingModelEngine.h"

#include <algorithm>
#include <array>

namespace lumaphone {

namespace {

constexpr std::array languages {
    SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean, SpokenLanguage::mandarin};

} // namespace

HostedSpeechEngine::HostedSpeechEngine(Locator locate)
    : m_locate(std::move(locate))
{
}

std::vector<QString> HostedSpeechEngine::installedLocales() const
{
    std::vector<QString> locales;
    if (std::holds_alternative<SpeechInstallation>(m_locate())) {
        std::transform(languages.begin(), languages.end(), std::back_inserter(locales), &localeIdentifier);
    }
    return locales;
}

std::optional<QString> HostedSpeechEngine::installationHint(const QString &localeIdentifier) const
{
    const Installation installation = m_locate();
    const auto *const hint = std::get_if<QString>(&installation);
    return hint != nullptr && spokenLanguageOf(localeIdentifier) ? std::optional(*hint) : std::nullopt;
}

std::vector<std::shared_ptr<StreamingRecognizer>> HostedSpeechEngine::makeRecognizers(
    const std::vector<QString> &localeIdentifiers, RecognitionSink sink) const
{
    const Installation installation = m_locate();
    if (const auto *const missing = std::get_if<QString>(&installation)) {
        // Removed since the modules were made.
        return MissingModelEngine(*missing).makeRecognizers(localeIdentifiers, std::move(sink));
    }
    std::vector<SpokenLanguage> spoken;
    for (const QString &locale : localeIdentifiers) {
        if (const auto language = spokenLanguageOf(locale)) {
            spoken.push_back(*language);
        }
    }
    if (spoken.empty()) {
        return {};
    }
    return {std::make_shared<HostedRecognizer>(
        std::get<SpeechInstallation>(installation), spoken, std::move(sink))};
}

} // namespace lumaphone
