#include "session/SessionTranslator.h"

#include "base/Completion.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "language/TranslationLanguages.h"
#include "storage/LumaphoneSettings.h"
#include "translation/GlossarySelection.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/LumaphoneGlossaryProtector.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/TransportError.h"
#include "translation/provider/ProviderAddress.h"

namespace lumaphone {

namespace {

QString keyRefused()
{
    return QStringLiteral(
        "鑰匙圈沒有交出 API 金鑰，這段時間不會再詢問。請解鎖鑰匙圈後再試一次，或重新儲存 API 金鑰。");
}

QString keyOfAnotherAddress(const QString &address)
{
    return QStringLiteral(
        "%1 需要 API 金鑰，但已儲存的金鑰屬於另一個位址，沒有送出。請在 API 提供者的設定重新輸入金鑰並儲存。")
        .arg(address);
}

bool asksForAKey(const OpenAICompatibleTranslationError &error)
{
    return error.status() == 401 || error.status() == 403;
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

SessionTranslator::SessionTranslator(LumaphoneSettings &settings, const LumaphoneGlossaryStore &glossaryStore,
    LumaphoneAppleTranslationService &translator, OpenAICompatibleTranslationService &customTranslator,
    std::shared_ptr<Clock> clock, std::shared_ptr<MainQueue> mainQueue)
    : m_settings(settings)
    , m_glossaryStore(glossaryStore)
    , m_translator(translator)
    , m_customTranslator(customTranslator)
    , m_mainQueue(std::move(mainQueue))
    , m_keyReader(settings.providerKey(), std::move(clock), m_mainQueue)
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
        const auto [configuration, otherAddress] = co_await provider(stop);
        const LumaphoneGlossaryPrompt prompt {terms};
        try {
            co_return co_await m_customTranslator.translate(text, source, configuration, prompt, stop);
        } catch (const OpenAICompatibleTranslationError &error) {
            if (!otherAddress.isEmpty() && asksForAKey(error)) {
                throw PlatformError(keyOfAnotherAddress(providerAddress(configuration.baseURL)));
            }
            throw;
        }
    }
    const LumaphoneGlossaryProtector protector(text, terms);
    const QString translation = co_await m_translator.translate(
        protector.protectedText(), source, translationTargetIdentifier(), stop);
    co_return protector.restored(translation);
}

QCoro::Task<SessionTranslator::Provider> SessionTranslator::provider(std::stop_token stop)
{
    if (m_isKeyRefused) {
        throw TranslationWithheld(keyRefused());
    }
    const ProviderKeyStore &store = m_settings.providerKey();
    Provider provider;
    AddressedText key;
    do {
        while (store.isSaving() && !stop.stop_requested()) {
            co_await savedKey(stop);
        }
        provider.configuration = m_settings.providerEndpoint();
        // A locked keychain asks the user first, however long that takes; the session goes on meanwhile.
        key = co_await m_keyReader.read(stop);
        if (stop.stop_requested()) {
            throw TransportError::cancelled();
        }
        // What the user saved meanwhile may have given the key to another address.
    } while (store.isSaving() || provider.configuration != m_settings.providerEndpoint());
    if (key.text.isEmpty() && m_settings.hasProviderAPIKey()) {
        m_isKeyRefused = true;
        throw PlatformError(keyRefused());
    }
    if (key.address == providerAddress(provider.configuration.baseURL)) {
        provider.configuration.apiKey = key.text;
    } else {
        provider.otherAddress = key.address;
    }
    co_return provider;
}

QCoro::Task<> SessionTranslator::savedKey(std::stop_token stop)
{
    const Completion<> saved(m_mainQueue);
    const auto connection
        = QObject::connect(&m_settings.providerKey(), &ProviderKeyStore::saved, [saved] { saved.resolve(); });
    const std::stop_callback onStop(stop, [saved] { saved.resolve(); });
    co_await saved;
    QObject::disconnect(connection);
}

void SessionTranslator::warm(AppleSystemSpeechLanguage language)
{
    if (m_settings.processingMode() == LumaphoneProcessingMode::appleMode) {
        prepareSilently(m_translator, translationSourceIdentifier(language));
    }
}

} // namespace lumaphone
