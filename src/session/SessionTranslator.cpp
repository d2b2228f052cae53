#include "session/SessionTranslator.h"

#include "base/Completion.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "language/TranslationLanguages.h"
#include "storage/LumaphoneSettings.h"
#include "translation/GlossarySelection.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/LumaphoneGlossaryProtector.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/TransportError.h"

namespace lumaphone {

namespace {

QString keyRefused()
{
    return QStringLiteral(
        "鑰匙圈沒有交出 API 金鑰，這段時間不會再詢問。請解鎖鑰匙圈後再試一次，或重新儲存 API 金鑰。");
}

QCoro::Task<> prepareSilently(LumaphoneAppleTranslationService &translator, QString source)
{
    try {
        co_await translator.prepare(std::move(source), translationTargetIdentifier());
    } catch (const std::exception &) {
        // The first translation meets the same obstacle and tells the user.
    }
}

} // namespace

SessionTranslator::SessionTranslator(const LumaphoneSettings &settings,
    const LumaphoneGlossaryStore &glossaryStore, LumaphoneAppleTranslationService &translator,
    OpenAICompatibleTranslationService &customTranslator, std::shared_ptr<MainQueue> mainQueue)
    : m_settings(settings)
    , m_glossaryStore(glossaryStore)
    , m_translator(translator)
    , m_customTranslator(customTranslator)
    , m_mainQueue(std::move(mainQueue))
{
}

QString SessionTranslator::providerName() const
{
    return m_settings.processingMode() == LumaphoneProcessingMode::customAPI
        ? QStringLiteral("自定義 API")
        : QStringLiteral("Apple Translation");
}

QCoro::Task<QString> SessionTranslator::translateText(
    QString text, AppleSystemSpeechLanguage language, std::stop_token stop)
{
    if (!needsTranslation(language)) {
        co_return text;
    }
    const auto terms = glossaryTermsOccurring(m_glossaryStore.enabledTerms(), text);
    const QString source = translationSourceIdentifier(language);
    if (m_settings.processingMode() == LumaphoneProcessingMode::customAPI) {
        const auto configuration = co_await provider(stop);
        const LumaphoneGlossaryPrompt prompt {terms};
        co_return co_await m_customTranslator.translate(text, source, configuration, prompt, stop);
    }
    const LumaphoneGlossaryProtector protector(text, terms);
    const QString translation = co_await m_translator.translate(
        protector.protectedText(), source, translationTargetIdentifier(), stop);
    co_return protector.restored(translation);
}

QCoro::Task<OpenAICompatibleProviderConfiguration> SessionTranslator::provider(std::stop_token stop)
{
    if (m_isKeyRefused) {
        throw TranslationWithheld(keyRefused());
    }
    OpenAICompatibleProviderConfiguration before;
    OpenAICompatibleProviderConfiguration configuration;
    do {
        while (m_settings.isSavingProviderAPIKey()) {
            const Completion<> saved(m_mainQueue);
            const auto connection = QObject::connect(
                &m_settings, &LumaphoneSettings::providerAPIKeySaved, [saved] { saved.resolve(); });
            co_await saved;
            QObject::disconnect(connection);
        }
        before = m_settings.providerEndpoint();
        configuration = before;
        // A locked keychain asks the user first, however long that takes; the session goes on meanwhile.
        configuration.apiKey = co_await runInBackground(m_mainQueue, "provider-key",
            [keychain = m_settings.keychain()] { return LumaphoneSettings::readProviderAPIKey(keychain); });
        if (stop.stop_requested()) {
            throw TransportError::cancelled();
        }
        // What the user saved meanwhile may have given the key to another address.
    } while (m_settings.isSavingProviderAPIKey() || before != m_settings.providerEndpoint());
    if (configuration.apiKey.isEmpty() && m_settings.hasProviderAPIKey()) {
        m_isKeyRefused = true;
        throw PlatformError(keyRefused());
    }
    co_return configuration;
}

void SessionTranslator::warm(AppleSystemSpeechLanguage language)
{
    if (m_settings.processingMode() == LumaphoneProcessingMode::appleMode) {
        prepareSilently(m_translator, translationSourceIdentifier(language));
    }
}

} // namespace lumaphone
