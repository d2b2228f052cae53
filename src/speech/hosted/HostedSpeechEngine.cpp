#include "speech/hosted/HostedSpeechEngine.h"

#include "speech/framework/MissingModelEngine.h"

#include <algorithm>

namespace lumaphone {

HostedSpeechEngine::HostedSpeechEngine(QString name, std::vector<SpokenLanguage> languages, Locator locate)
    : m_name(std::move(name))
    , m_languages(std::move(languages))
    , m_locate(std::move(locate))
{
}

bool HostedSpeechEngine::knows(SpokenLanguage language) const
{
    return std::find(m_languages.begin(), m_languages.end(), language) != m_languages.end();
}

std::vector<QString> HostedSpeechEngine::installedLocales() const
{
    std::vector<QString> locales;
    if (std::holds_alternative<SpeechInstallation>(m_locate())) {
        std::transform(m_languages.begin(), m_languages.end(), std::back_inserter(locales),
            [](SpokenLanguage language) { return localeIdentifier(language); });
    }
    return locales;
}

std::optional<QString> HostedSpeechEngine::installationHint(const QString &localeIdentifier) const
{
    const Installation installation = m_locate();
    const auto *const hint = std::get_if<QString>(&installation);
    const auto language = spokenLanguageOf(localeIdentifier);
    return hint != nullptr && language && knows(*language) ? std::optional(*hint) : std::nullopt;
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
        if (const auto language = spokenLanguageOf(locale); language && knows(*language)) {
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
