#include "translation/ondevice/OnDeviceTranslationFramework.h"

#include "base/Completion.h"
#include "translation/engine/EngineError.h"
#include "translation/ondevice/LoadedLegs.h"
#include "translation/ondevice/TranslationRoute.h"

#include <utility>

namespace lumaphone {

struct OnDeviceTranslationFramework::Services
{
    const ModelStore &store;
    std::shared_ptr<MainQueue> mainQueue;
    LoadedLegs loaded;
};

namespace {

using Services = OnDeviceTranslationFramework::Services;

/// Carries out `work` on a thread of its own; what it throws becomes the framework's error.
template<typename Work>
QCoro::Task<std::invoke_result_t<Work>> inBackground(std::shared_ptr<MainQueue> mainQueue, Work work)
{
    const auto translated = [work = std::move(work)] {
        try {
            return work();
        } catch (const LocalizedError &error) {
            throw TranslationFrameworkError(error.errorDescription());
        }
    };
    return runInBackground(std::move(mainQueue), "translating", translated);
}

class OnDeviceSession final : public TranslationSession
{
public:
    OnDeviceSession(
        std::shared_ptr<Services> services, const LocaleLanguage &source, const LocaleLanguage &target)
        : m_services(std::move(services))
        , m_pair(source.identifier, target.identifier)
        , m_route(translationRoute(m_services->store.catalogue(), source, target))
    {
    }

    QCoro::Task<bool> isReady() override { co_return m_translator != nullptr; }

    QCoro::Task<> prepareTranslation(std::stop_token stop) override
    {
        const std::shared_ptr<Services> services = m_services;
        const QList<InstalledLeg> legs = installedLegs();
        const auto load = [services, legs, written = m_route.written] {
            return services->loaded.translator(legs, written);
        };
        std::shared_ptr<engine::Translator> translator = co_await inBackground(services->mainQueue, load);
        if (stop.stop_requested()) {
            throw TranslationFrameworkError(QStringLiteral("翻譯已取消。"));
        }
        m_translator = std::move(translator);
    }

    QCoro::Task<TranslationResponse> translate(QString text, std::stop_token stop) override
    {
        if (!m_translator) {
            co_await prepareTranslation(stop);
        }
        const auto work = [translator = m_translator, text, stop] {
            return translator->translate(text, stop);
        };
        QString translation = co_await inBackground(m_services->mainQueue, work);
        TranslationResponse response {std::move(translation)};
        co_return response;
    }

private:
    /// Throws TranslationFrameworkError if a leg is not in place.
    QList<InstalledLeg> installedLegs() const
    {
        const auto &[source, target] = m_pair;
        if (m_route.legs.isEmpty()) {
            throw TranslationFrameworkError(QStringLiteral("沒有 %1 到 %2 的翻譯模型。").arg(source, target));
        }
        QList<InstalledLeg> legs;
        for (const ModelEntry *entry : m_route.legs) {
            const auto model = m_services->store.installed(*entry);
            if (!model) {
                throw TranslationFrameworkError(howToInstall());
            }
            legs.append({entry->id, *model});
        }
        return legs;
    }

    QString howToInstall() const
    {
        const QString way
            = QStringLiteral("請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install %1-%2」。")
                  .arg(m_pair.first, m_pair.second);
        switch (routeState(m_services->store, m_route)) {
        case ModelState::missing:
        case ModelState::installed:
            return QStringLiteral("尚未安裝 %1 到 %2 的翻譯模型。").arg(m_pair.first, m_pair.second) + way;
        case ModelState::partial:
            return QStringLiteral("%1 到 %2 的翻譯模型還沒有安裝完成。").arg(m_pair.first, m_pair.second)
                + way;
        case ModelState::damaged:
            return QStringLiteral("%1 到 %2 的翻譯模型已損壞。").arg(m_pair.first, m_pair.second) + way;
        }
        Q_UNREACHABLE();
    }

    std::shared_ptr<Services> m_services;
    std::pair<QString, QString> m_pair;
    TranslationRoute m_route;
    std::shared_ptr<engine::Translator> m_translator; ///< null until it has been prepared
};

} // namespace

OnDeviceTranslationFramework::OnDeviceTranslationFramework(
    const ModelStore &store, std::shared_ptr<MainQueue> mainQueue, int threads)
    : m_services(std::shared_ptr<Services>(new Services {store, std::move(mainQueue), LoadedLegs(threads)}))
{
}

OnDeviceTranslationFramework::~OnDeviceTranslationFramework() = default;

QCoro::Task<LanguageAvailabilityStatus> OnDeviceTranslationFramework::status(
    LocaleLanguage source, LocaleLanguage target)
{
    const TranslationRoute route = translationRoute(m_services->store.catalogue(), source, target);
    if (route.legs.isEmpty()) {
        co_return LanguageAvailabilityStatus::unsupported;
    }
    co_return routeState(m_services->store, route) == ModelState::installed
        ? LanguageAvailabilityStatus::installed
        : LanguageAvailabilityStatus::supported;
}

std::shared_ptr<TranslationSession> OnDeviceTranslationFramework::makeSession(
    const LocaleLanguage &source, const LocaleLanguage &target)
{
    return std::make_shared<OnDeviceSession>(m_services, source, target);
}

} // namespace lumaphone
