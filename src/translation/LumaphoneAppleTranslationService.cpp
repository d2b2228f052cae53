#include "translation/LumaphoneAppleTranslationService.h"

#include "base/LruCache.h"
#include "base/Text.h"
#include "translation/LumaphoneAppleTranslationError.h"
#include "translation/LumaphoneTranslationLanguageMatcher.h"

#include <QHash>

namespace lumaphone {

namespace {

bool nameTheSameLanguage(const QString &source, const QString &target)
{
    using LumaphoneTranslationLanguageMatcher::normalizedLanguageIdentifier;
    return text::canonicallyEqual(normalizedLanguageIdentifier(source), normalizedLanguageIdentifier(target));
}

} // namespace

/// Shared with the calls under way, which may end after the service.
struct LumaphoneAppleTranslationService::State
{
    explicit State(TranslationFramework &translationFramework)
        : framework(translationFramework)
    {
    }

    TranslationFramework &framework;
    QHash<QString, std::shared_ptr<TranslationSession>> sessionsByLanguagePair;
    /// The first answer for each pair; it is never asked for again.
    QHash<QString, LanguageAvailabilityStatus> availabilityByLanguagePair;
    LruCache<QString, QString> translatedTextBySource {cacheCapacity};

    static QCoro::Task<QString> translate(
        std::shared_ptr<State> state, QString text, QString source, QString target, std::stop_token stop);
    static QCoro::Task<> prepare(
        std::shared_ptr<State> state, QString source, QString target, std::stop_token stop);
    static QCoro::Task<std::shared_ptr<TranslationSession>> readySession(
        std::shared_ptr<State> state, QString source, QString target, std::stop_token stop);

    QCoro::Task<LanguageAvailabilityStatus> availability(
        QString pair, LocaleLanguage source, LocaleLanguage target);
    std::shared_ptr<TranslationSession> translationSession(
        const QString &pair, const LocaleLanguage &source, const LocaleLanguage &target);
};

LumaphoneAppleTranslationService::LumaphoneAppleTranslationService(TranslationFramework &framework)
    : m_state(std::make_shared<State>(framework))
{
}

LumaphoneAppleTranslationService::~LumaphoneAppleTranslationService() = default;

QCoro::Task<QString> LumaphoneAppleTranslationService::translate(
    QString text, QString source, QString target, std::stop_token stop)
{
    return State::translate(m_state, std::move(text), std::move(source), std::move(target), std::move(stop));
}

QCoro::Task<> LumaphoneAppleTranslationService::prepare(QString source, QString target, std::stop_token stop)
{
    return State::prepare(m_state, std::move(source), std::move(target), std::move(stop));
}

QCoro::Task<QString> LumaphoneAppleTranslationService::State::translate(
    std::shared_ptr<State> state, QString text, QString source, QString target, std::stop_token stop)
{
    const QString trimmed = text::trimmed(text);
    if (trimmed.isEmpty() || nameTheSameLanguage(source, target)) {
        co_return trimmed;
    }
    const QString cacheKey = text::canonicalForm(source + u'\t' + target + u'\t' + trimmed);
    if (const auto known = state->translatedTextBySource.find(cacheKey)) {
        co_return *known;
    }
    const auto session = co_await readySession(state, source, target, stop);
    const TranslationResponse response = co_await session->translate(trimmed, stop);
    state->translatedTextBySource.insert(cacheKey, response.targetText);
    co_return response.targetText;
}

QCoro::Task<> LumaphoneAppleTranslationService::State::prepare(
    std::shared_ptr<State> state, QString source, QString target, std::stop_token stop)
{
    if (!nameTheSameLanguage(source, target)) {
        co_await readySession(state, source, target, stop);
    }
}

QCoro::Task<std::shared_ptr<TranslationSession>> LumaphoneAppleTranslationService::State::readySession(
    std::shared_ptr<State> state, QString source, QString target, std::stop_token stop)
{
    const LocaleLanguage sourceLanguage {source};
    const LocaleLanguage targetLanguage {target};
    const QString pair = text::canonicalForm(source + QStringLiteral("->") + target);

    const auto status = co_await state->availability(pair, sourceLanguage, targetLanguage);
    if (status == LanguageAvailabilityStatus::unsupported) {
        throw LumaphoneAppleTranslationError::unsupportedPair(source, target);
    }
    const auto session = state->translationSession(pair, sourceLanguage, targetLanguage);
    if (!co_await session->isReady()) {
        co_await session->prepareTranslation(stop);
    }
    co_return session;
}

QCoro::Task<LanguageAvailabilityStatus> LumaphoneAppleTranslationService::State::availability(
    QString pair, LocaleLanguage source, LocaleLanguage target)
{
    const auto known = availabilityByLanguagePair.constFind(pair);
    if (known != availabilityByLanguagePair.constEnd()) {
        co_return *known;
    }
    const auto answer = co_await framework.status(source, target);
    // Another call may have asked at the same time and have been answered first.
    co_return availabilityByLanguagePair.contains(pair) ? availabilityByLanguagePair.value(pair)
                                                        : *availabilityByLanguagePair.insert(pair, answer);
}

std::shared_ptr<TranslationSession> LumaphoneAppleTranslationService::State::translationSession(
    const QString &pair, const LocaleLanguage &source, const LocaleLanguage &target)
{
    auto &session = sessionsByLanguagePair[pair];
    if (!session) {
        session = framework.makeSession(source, target);
    }
    return session;
}

} // namespace lumaphone
