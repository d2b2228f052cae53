#pragma once

#include "platform/SpeechFramework.h"
#include "support/CoroutineGate.h"

#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lumaphone::test {

/// One language of a FakeSpeechFramework: texts and failures go in from the test. Any thread.
class FakeSpeechModule final : public SpeechModule
{
public:
    FakeSpeechModule(QString locale, const SpeechModuleOptions &options)
        : m_locale(std::move(locale))
        , m_options(options)
    {
    }

    std::optional<SpeechResult> nextResult(const std::stop_token &stop) override
    {
        return m_results.next(stop);
    }

    const QString &locale() const { return m_locale; }
    const SpeechModuleOptions &options() const { return m_options; }
    void emitResult(const QString &text, bool isFinal) { m_results.yield({text, isFinal}); }
    void fail(const QString &message);
    void end() { m_results.finish(); }
    /// A final text that is given when the input has ended.
    void setLastText(const QString &text);
    void finishWithLastText();

private:
    const QString m_locale;
    const SpeechModuleOptions m_options;
    AsyncStream<SpeechResult> m_results;
    std::mutex m_mutex;
    QString m_lastText;
};

/// Takes the input of a FakeSpeechFramework and keeps what it heard. Any thread.
class FakeSpeechAnalyzer final : public SpeechAnalyzer
{
public:
    FakeSpeechAnalyzer(std::vector<std::shared_ptr<FakeSpeechModule>> modules,
        std::optional<QString> preparationFailure, CoroutineGate &preparationGate, bool isHeld,
        bool keepsSamples)
        : m_modules(std::move(modules))
        , m_preparationFailure(std::move(preparationFailure))
        , m_preparationGate(preparationGate)
        , m_keepsSamples(keepsSamples)
        , m_isHeld(isHeld)
    {
    }

    QCoro::Task<> prepareToAnalyze(double sampleRateHz) override;
    void start(AnalyzerInputStream &input, const std::stop_token &stop) override;
    void cancelAndFinishNow() override;
    std::chrono::milliseconds waitingSound() const override { return unheard; }

    const std::vector<std::shared_ptr<FakeSpeechModule>> &modules() const { return m_modules; }
    std::atomic<std::chrono::milliseconds> unheard {}; ///< what waitingSound() says
    double preparedRateHz() const { return m_preparedRateHz; }
    /// Lets a held analyzer take its input.
    void release();
    /// Makes start() throw, as soon as it waits for nothing.
    void fail(const QString &message);
    int inputs() const;
    std::vector<std::int16_t> samples() const;
    /// The buffers in the order of their arrival, as addresses: which ones are reused can be seen.
    std::vector<const PcmBuffer *> buffers() const;
    bool isCancelled() const;
    bool hasEnded() const;

private:
    void take(const AnalyzerInput &input);
    void throwIfFailed() const;

    const std::vector<std::shared_ptr<FakeSpeechModule>> m_modules;
    const std::optional<QString> m_preparationFailure;
    CoroutineGate &m_preparationGate;
    const bool m_keepsSamples;
    double m_preparedRateHz = 0;
    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::stop_source m_failing;
    bool m_isHeld;
    std::optional<QString> m_failure;
    int m_inputs = 0;
    std::vector<std::int16_t> m_samples;
    std::vector<const PcmBuffer *> m_buffers;
    bool m_isCancelled = false;
    bool m_hasEnded = false;
};

/// A speech framework that does what the test says. Main thread; modules and analyzers on any.
class FakeSpeechFramework final : public SpeechFramework
{
public:
    SpeechAuthorization authorization = SpeechAuthorization::authorized;
    SpeechAuthorization answer = SpeechAuthorization::authorized; ///< what the user says when asked
    /// Asked locale to supported locale. All four languages unless changed.
    std::map<QString, QString> supported {{QStringLiteral("ja-JP"), QStringLiteral("ja_JP")},
        {QStringLiteral("en-US"), QStringLiteral("en_US")},
        {QStringLiteral("ko-KR"), QStringLiteral("ko_KR")},
        {QStringLiteral("zh-Hant-TW"), QStringLiteral("zh_TW")}};
    std::map<QString, QString> reservationFailures; ///< supported locale to message
    std::map<QStringList, QString> preparationFailures; ///< supported locales of the modules to message
    bool holdsAnalyzers = false; ///< new analyzers take no input before they are released
    bool keepsSamples = true;
    CoroutineGate authorizationGate;
    CoroutineGate reservationGate;
    CoroutineGate preparationGate; ///< of all analyzers

    /// Supports the locales asked for as `locales` and no others.
    void supportOnly(const QStringList &locales);

    SpeechAuthorization authorizationStatus() override { return authorization; }
    QCoro::Task<SpeechAuthorization> requestAuthorization() override;
    QCoro::Task<std::optional<QString>> supportedLocale(QString localeIdentifier) override;
    QCoro::Task<> reserve(QString localeIdentifier) override;
    QCoro::Task<> release(QString localeIdentifier) override;
    std::shared_ptr<SpeechModule> makeTranscriber(
        const QString &localeIdentifier, const SpeechModuleOptions &options) override;
    std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::vector<std::shared_ptr<SpeechModule>> modules) override;

    int authorizationRequests() const { return m_authorizationRequests; }
    /// What was asked of the reservations, such as "reserve ja_JP" and "release ja_JP".
    const QStringList &reservationLog() const { return m_reservationLog; }
    /// Locales reserved and not yet released, sorted.
    QStringList reserved() const;
    const std::vector<std::shared_ptr<FakeSpeechAnalyzer>> &analyzers() const { return m_analyzers; }
    /// The newest analyzer, which must exist, and its module of a supported locale, or null.
    FakeSpeechAnalyzer &analyzer() const { return *m_analyzers.back(); }
    std::shared_ptr<FakeSpeechModule> module(const QString &locale) const;
    /// The supported locales of the newest analyzer.
    QStringList locales() const;

private:
    int m_authorizationRequests = 0;
    QStringList m_reservationLog;
    QStringList m_reserved;
    std::vector<std::shared_ptr<FakeSpeechAnalyzer>> m_analyzers;
};

} // namespace lumaphone::test
