#pragma once

#include "base/MainQueue.h"
#include "session/CaptionTranslator.h"
#include "storage/ProviderKeyReader.h"
#include "translation/provider/OpenAICompatibleProviderConfiguration.h"

#include <memory>

namespace lumaphone {

class LumaphoneAppleTranslationService;
class LumaphoneGlossaryStore;
class LumaphoneSettings;
class OpenAICompatibleTranslationService;

/// Translates as the settings say: on the device with the glossary's preserved terms protected, or through
/// the chat-completions endpoint with the glossary in the prompt. Settings, store and services outlive it.
class SessionTranslator final : public CaptionTranslator
{
public:
    SessionTranslator(LumaphoneSettings &settings, const LumaphoneGlossaryStore &glossaryStore,
        LumaphoneAppleTranslationService &translator, OpenAICompatibleTranslationService &customTranslator,
        std::shared_ptr<Clock> clock, std::shared_ptr<MainQueue> mainQueue);

    QString providerName() const override;
    QCoro::Task<QString> translateText(
        QString text, AppleSystemSpeechLanguage language, std::stop_token stop) override;
    void askAgain() override { m_isKeyRefused = false; }
    void warm(AppleSystemSpeechLanguage language) override;

private:
    struct Provider
    {
        OpenAICompatibleProviderConfiguration configuration;
        QString otherAddress; ///< of the server that has the key instead of this one; empty if none has
    };
    /// Address, model and the key that was saved for them. Throws when the keychain keeps the key to itself;
    /// after that nobody is asked for it until askAgain().
    QCoro::Task<Provider> provider(std::stop_token stop);
    QCoro::Task<> savedKey(std::stop_token stop);

    LumaphoneSettings &m_settings;
    const LumaphoneGlossaryStore &m_glossaryStore;
    LumaphoneAppleTranslationService &m_translator;
    OpenAICompatibleTranslationService &m_customTranslator;
    const std::shared_ptr<MainQueue> m_mainQueue;
    ProviderKeyReader m_keyReader;
    bool m_isKeyRefused = false;
};

} // namespace lumaphone
