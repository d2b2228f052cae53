#pragma once

#include "base/MainQueue.h"
#include "session/CaptionTranslator.h"

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
    SessionTranslator(const LumaphoneSettings &settings, const LumaphoneGlossaryStore &glossaryStore,
        LumaphoneAppleTranslationService &translator, OpenAICompatibleTranslationService &customTranslator,
        std::shared_ptr<MainQueue> mainQueue);

    QString providerName() const override;
    QCoro::Task<QString> translateText(
        QString text, AppleSystemSpeechLanguage language, std::stop_token stop) override;
    void warm(AppleSystemSpeechLanguage language) override;

private:
    const LumaphoneSettings &m_settings;
    const LumaphoneGlossaryStore &m_glossaryStore;
    LumaphoneAppleTranslationService &m_translator;
    OpenAICompatibleTranslationService &m_customTranslator;
    const std::shared_ptr<MainQueue> m_mainQueue;
};

} // namespace lumaphone
