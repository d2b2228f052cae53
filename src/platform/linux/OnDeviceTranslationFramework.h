#pragma once

#include "platform/TranslationFramework.h"

namespace lumaphone {

/// Translation by models that are installed on this machine. No pair has a model so far: every pair is
/// unsupported, and a session made all the same fails with a text that names its pair.
class OnDeviceTranslationFramework final : public TranslationFramework
{
public:
    QCoro::Task<LanguageAvailabilityStatus> status(LocaleLanguage source, LocaleLanguage target) override;
    std::shared_ptr<TranslationSession> makeSession(
        const LocaleLanguage &source, const LocaleLanguage &target) override;
};

} // namespace lumaphone
