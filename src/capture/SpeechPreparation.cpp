#include "capture/SpeechPreparation.h"

#include "capture/AppleSystemSpeechTranscriberError.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

using Error = AppleSystemSpeechTranscriberError;

namespace {

QCoro::Task<> releaseInTurn(std::shared_ptr<SpeechFramework> framework, std::vector<QString> locales)
{
    for (const QString &locale : locales) {
        try {
            co_await framework->release(locale);
        } catch (...) {
            // The framework keeps the reservation; nobody is left to be told.
        }
    }
}

QString displayNames(const std::vector<AppleSystemSpeechTranscriberEntry> &entries)
{
    std::vector<AppleSystemSpeechLanguage> languages;
    std::transform(entries.begin(), entries.end(), std::back_inserter(languages),
        [](const AppleSystemSpeechTranscriberEntry &entry) { return entry.language; });
    return displayNames(languages);
}

} // namespace

SpeechPreparation::SpeechPreparation(std::shared_ptr<SpeechFramework> framework,
    std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks)
    : m_framework(std::move(framework))
    , m_mainQueue(std::move(mainQueue))
    , m_detachedTasks(std::move(detachedTasks))
{
}

void SpeechPreparation::throwIfSuperseded(int attempt) const
{
    if (!m_attempts.isLatest(attempt)) {
        throw Superseded();
    }
}

QCoro::Task<bool> SpeechPreparation::requestAuthorization()
{
    if (m_framework->authorizationStatus() == SpeechAuthorization::authorized) {
        co_return true;
    }
    const SpeechAuthorization answer = co_await m_framework->requestAuthorization();
    co_return answer == SpeechAuthorization::authorized;
}

QCoro::Task<PreparedSpeech> SpeechPreparation::prepareTranscribers(
    std::vector<AppleSystemSpeechLanguage> languages, int attempt)
{
    if (languages.size() == 1) {
        std::exception_ptr error;
        try {
            co_return co_await prepare(std::move(languages), LanguageFallback::notAllowed, attempt);
        } catch (const Superseded &) {
            throw;
        } catch (...) {
            error = std::current_exception();
        }
        letGo();
        std::rethrow_exception(error);
    }
    auto together = co_await tryToPrepare(languages, LanguageFallback::allowed, attempt);
    if (together) {
        co_return std::move(*together);
    }
    for (const AppleSystemSpeechLanguage language : languages) {
        std::vector<AppleSystemSpeechLanguage> one(1, language);
        auto alone = co_await tryToPrepare(std::move(one), LanguageFallback::notAllowed, attempt);
        if (alone) {
            co_return std::move(*alone);
        }
    }
    throw Error::automaticLanguagesUnavailable();
}

QCoro::Task<std::optional<PreparedSpeech>> SpeechPreparation::tryToPrepare(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    try {
        co_return std::optional(co_await prepare(std::move(languages), fallback, attempt));
    } catch (const Superseded &) {
        throw;
    } catch (...) {
        letGo();
    }
    co_return std::optional<PreparedSpeech>();
}

QCoro::Task<PreparedSpeech> SpeechPreparation::prepare(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    PreparedSpeech session;
    session.entries = co_await makeTranscriberEntries(std::move(languages), fallback, attempt);
    session.analyzer = co_await prepareAnalyzer(session.entries, attempt);
    co_return session;
}

QCoro::Task<std::vector<AppleSystemSpeechTranscriberEntry>> SpeechPreparation::makeTranscriberEntries(
    std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt)
{
    constexpr SpeechModuleOptions options {.reportsVolatileResults = true, .reportsFastResults = true};
    std::vector<Entry> entries;
    for (const AppleSystemSpeechLanguage language : languages) {
        const std::optional<QString> locale
            = co_await m_framework->supportedLocale(localeIdentifier(language));
        throwIfSuperseded(attempt);
        if (!locale) {
            if (fallback == LanguageFallback::allowed) {
                continue;
            }
            throw Error::recognizerUnavailable();
        }
        std::exception_ptr failure;
        try {
            co_await reserve(*locale, attempt);
        } catch (...) {
            failure = std::current_exception();
        }
        throwIfSuperseded(attempt);
        if (failure) {
            if (fallback == LanguageFallback::allowed) {
                continue;
            }
            throw Error::assetUnavailable(displayName(language), failure);
        }
        entries.push_back({language, *locale, m_framework->makeTranscriber(*locale, options)});
    }
    if (entries.empty()) {
        throw Error::recognizerUnavailable();
    }
    co_return entries;
}

QCoro::Task<> SpeechPreparation::reserve(QString locale, int attempt)
{
    co_await m_framework->reserve(locale);
    if (m_attempts.isLatest(attempt)) {
        m_reservedLocales.push_back(locale);
    } else {
        // Whoever overtook this attempt could not know of the reservation.
        releaseReservations({locale});
    }
}

QCoro::Task<std::shared_ptr<SpeechAnalyzer>> SpeechPreparation::prepareAnalyzer(
    std::vector<Entry> entries, int attempt)
{
    std::vector<std::shared_ptr<SpeechModule>> modules;
    std::transform(entries.begin(), entries.end(), std::back_inserter(modules),
        [](const Entry &entry) { return entry.transcriber; });
    std::shared_ptr<SpeechAnalyzer> analyzer;
    std::exception_ptr failure;
    try {
        analyzer = m_framework->makeAnalyzer(std::move(modules));
        m_preparedAnalyzer = analyzer;
        co_await analyzer->prepareToAnalyze(PcmBuffer::sampleRateHz);
    } catch (...) {
        failure = std::current_exception();
    }
    throwIfSuperseded(attempt);
    m_preparedAnalyzer = nullptr;
    if (failure) {
        throw Error::assetUnavailable(displayNames(entries), failure);
    }
    co_return analyzer;
}

void SpeechPreparation::letGo()
{
    if (m_preparedAnalyzer) {
        // Whoever waits for it ends as superseded.
        m_detachedTasks->run("speech-ending",
            [analyzer = std::exchange(m_preparedAnalyzer, nullptr)] { analyzer->cancelAndFinishNow(); });
    }
    if (!m_reservedLocales.empty()) {
        releaseReservations(std::exchange(m_reservedLocales, {}));
    }
}

void SpeechPreparation::releaseReservations(std::vector<QString> locales)
{
    auto release = [framework = m_framework, locales = std::move(locales)] {
        releaseInTurn(framework, locales);
    };
    if (m_mainQueue->isCurrent()) {
        release();
    } else {
        m_mainQueue->post(std::move(release));
    }
}

} // namespace lumaphone
