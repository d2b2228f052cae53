#pragma once

#include "session/CaptionTranslator.h"

namespace lumaphone::cli {

/// For sessions that show what is said and nothing else.
class NoTranslation final : public CaptionTranslator
{
public:
    bool translates() const override { return false; }
    QString providerName() const override { return {}; }
    QCoro::Task<QString> translateText(
        QString text, AppleSystemSpeechLanguage /*language*/, std::stop_token /*stop*/) override
    {
        co_return text;
    }
    void warm(AppleSystemSpeechLanguage /*language*/) override { }
};

} // namespace lumaphone::cli
