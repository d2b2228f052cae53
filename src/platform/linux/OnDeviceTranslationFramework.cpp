#include "platform/linux/OnDeviceTranslationFramework.h"

namespace lumaphone {

namespace {

class SessionWithoutModel final : public TranslationSession
{
public:
    SessionWithoutModel(const LocaleLanguage &source, const LocaleLanguage &target)
        : m_reason(QStringLiteral("沒有安裝 %1 到 %2 的翻譯模型。").arg(source.identifier, target.identifier))
    {
    }

    QCoro::Task<bool> isReady() override { co_return false; }

    QCoro::Task<> prepareTranslation(std::stop_token) override
    {
        throw TranslationFrameworkError(m_reason);
        co_return;
    }

    QCoro::Task<TranslationResponse> translate(QString, std::stop_token) override
    {
        throw TranslationFrameworkError(m_reason);
        co_return {};
    }

private:
    QString m_reason;
};

} // namespace

QCoro::Task<LanguageAvailabilityStatus> OnDeviceTranslationFramework::status(LocaleLanguage, LocaleLanguage)
{
    co_return LanguageAvailabilityStatus::Unsupported;
}

std::shared_ptr<TranslationSession> OnDeviceTranslationFramework::makeSession(
    const LocaleLanguage &source, const LocaleLanguage &target)
{
    return std::make_shared<SessionWithoutModel>(source, target);
}

} // namespace lumaphone
