#include "support/ScriptedTranslationFramework.h"

#include <utility>

namespace lumaphone::test {

namespace {

QString pairOf(const LocaleLanguage &source, const LocaleLanguage &target)
{
    return source.identifier + QStringLiteral("->") + target.identifier;
}

void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested()) {
        throw TranslationFrameworkError(QStringLiteral("cancelled"));
    }
}

} // namespace

void Door::open()
{
    m_isOpen = true;
    for (const auto caller : std::exchange(m_waiting, {})) {
        caller.resume();
    }
}

void Door::letLastThrough()
{
    const auto caller = m_waiting.back();
    m_waiting.pop_back();
    caller.resume();
}

class ScriptedTranslationFramework::Session final : public TranslationSession
{
public:
    Session(ScriptedTranslationFramework &framework, QString pair)
        : m_framework(framework)
        , m_pair(std::move(pair))
    {
    }

    QCoro::Task<bool> isReady() override
    {
        co_await m_framework.readinessGate.passed();
        co_return m_framework.isReady;
    }

    QCoro::Task<> prepareTranslation(std::stop_token stop) override
    {
        m_framework.preparations.append(m_pair);
        co_await m_framework.prepareGate.passed();
        throwIfStopped(stop);
        if (m_framework.prepareError) {
            std::rethrow_exception(m_framework.prepareError);
        }
        m_framework.isReady = m_framework.preparingMakesReady;
    }

    QCoro::Task<TranslationResponse> translate(QString text, std::stop_token stop) override
    {
        m_framework.translations.append({m_pair, text});
        co_await m_framework.translateGate.passed();
        throwIfStopped(stop);
        if (m_framework.translateError) {
            std::rethrow_exception(m_framework.translateError);
        }
        co_return {
            m_framework.translation ? m_framework.translation(text) : m_pair + QStringLiteral(":") + text};
    }

private:
    ScriptedTranslationFramework &m_framework;
    QString m_pair;
};

QCoro::Task<LanguageAvailabilityStatus> ScriptedTranslationFramework::status(
    LocaleLanguage source, LocaleLanguage target)
{
    statusQuestions.append(pairOf(source, target));
    const LanguageAvailabilityStatus answer = availability;
    co_await statusGate.passed();
    co_return answer;
}

std::shared_ptr<TranslationSession> ScriptedTranslationFramework::makeSession(
    const LocaleLanguage &source, const LocaleLanguage &target)
{
    sessionsMade.append(pairOf(source, target));
    return std::make_shared<Session>(*this, pairOf(source, target));
}

} // namespace lumaphone::test
