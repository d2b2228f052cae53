#pragma once

#include "base/MainQueue.h"
#include "models/ModelStore.h"
#include "platform/TranslationFramework.h"

#include <memory>

namespace lumaphone {

/// Translation by models that are installed on this machine, directly or through English. What is installed
/// is looked up anew whenever a session is made ready, so a model that arrives later is found.
class OnDeviceTranslationFramework final : public TranslationFramework
{
public:
    /// `store` outlives the framework and its sessions. `threads` per translation, at least 1.
    OnDeviceTranslationFramework(
        const ModelStore &store, std::shared_ptr<MainQueue> mainQueue, int threads = 2);
    ~OnDeviceTranslationFramework() override;

    QCoro::Task<LanguageAvailabilityStatus> status(LocaleLanguage source, LocaleLanguage target) override;
    std::shared_ptr<TranslationSession> makeSession(
        const LocaleLanguage &source, const LocaleLanguage &target) override;

    struct Services;

private:
    std::shared_ptr<Services> m_services;
};

} // namespace lumaphone
