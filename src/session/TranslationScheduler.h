#pragma once

#include "base/Record.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/Clock.h"
#include "session/CaptionLineList.h"
#include "session/CaptionTranslator.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

namespace lumaphone {

struct CaptionTranslation
{
    QString text;
    QString translation;
    AppleSystemSpeechLanguage language; ///< it was translated from
};

/// Told about every translation on the main thread.
class TranslationReceiver
{
public:
    virtual ~TranslationReceiver() = default;
    virtual void translationArrived(const CaptionTranslation &translation) = 0;
    virtual void translationFailed(const QString &text, const QString &description) = 0;
    /// The text scheduled now is the one translated last, so that nothing is requested.
    virtual void translationWasKnown(const CaptionTranslation &translation) = 0;
    /// A line that newer texts had passed over has its translation.
    virtual void passedOverLineTranslated(const QUuid &line, const CaptionTranslation &translation) = 0;
    virtual void passedOverLineFailed(const QString &text, const QString &description) = 0;
    /// Nothing is left to translate.
    virtual void translationRested() { }
};

/// Decides when which text is translated. The newest text replaces the pending one; a single worker waits out
/// bursts of partial results, translates the newest text, and in quiet moments goes back to lines that were
/// passed over and change no more. At most one request is wanted at a time. Main thread.
class TranslationScheduler final : public QObject
{
public:
    /// A burst of partial results is translated when it has lasted this long.
    static constexpr std::chrono::milliseconds burstDuration {450};
    static constexpr std::chrono::milliseconds pollInterval {70};

    /// Lines and receiver outlive the scheduler.
    TranslationScheduler(std::shared_ptr<CaptionTranslator> translator, std::shared_ptr<Clock> clock,
        UuidGenerator makeUuid, const CaptionLineList &lines, TranslationReceiver &receiver);
    ~TranslationScheduler() override;

    /// Makes `text`, trimmed, the pending one.
    void scheduleTranslation(const QString &text, AppleSystemSpeechLanguage language, bool isFinal);
    /// No more text will come: what is pending and the lines that were passed over are still translated.
    void finishRemaining();
    /// The lines are those of a session that is over: those without a translation get one, as far as it can
    /// be had now. Nobody waits for them, so that a failure is not told. To be called again when more can be
    /// had.
    void translateRestored();
    /// Forgets everything. A request under way is given up, and its answer ignored.
    void reset();
    /// Whether no worker runs: nothing is pending, nothing is under way.
    bool isResting() const { return !m_translationWorkerID; }

private:
    struct Pending
    {
        QString text;
        AppleSystemSpeechLanguage language;
        bool isFinal;
        std::chrono::nanoseconds burstStartedAt; ///< on the continuous clock
    };
    struct Request
    {
        QString text;
        AppleSystemSpeechLanguage language; ///< effective
        std::optional<QUuid> passedOverLine; ///< none for the newest text
        std::stop_source stop;
    };
    struct Rest
    {
    };
    struct Wait
    {
        std::chrono::milliseconds duration;
    };
    using Turn = std::variant<Rest, Wait, Request>;
    struct Failure
    {
        QString description;
    };
    using Answer = std::variant<QString, Failure>;

    /// The worker's loop. It ends when there is nothing to do, or when it is no longer the current worker.
    static QCoro::Task<> processPendingTranslations(QPointer<TranslationScheduler> self, QUuid workerID);
    static QCoro::Task<Answer> answerTo(std::shared_ptr<CaptionTranslator> translator, Request request);

    /// The scheduler, if it is still there and the worker is its current one.
    static TranslationScheduler *employing(const QPointer<TranslationScheduler> &self, const QUuid &workerID);
    void startWorker();
    Turn nextTurn();
    std::optional<Request> requestForPassedOverLine() const;
    bool isUnmanaged(AppleSystemSpeechLanguage language) const;
    void receive(const Request &request, const Answer &answer);
    void abandonRequest();

    std::shared_ptr<CaptionTranslator> m_translator;
    std::shared_ptr<Clock> m_clock;
    UuidGenerator m_makeUuid;
    const CaptionLineList &m_lines;
    TranslationReceiver &m_receiver;
    std::optional<QUuid> m_translationWorkerID;
    std::optional<Pending> m_latest;
    std::optional<Request> m_inFlight;
    std::optional<CaptionTranslation> m_lastTranslation;
    QSet<QString> m_failedTexts; ///< in canonical form
    bool m_isRestored = false; ///< whether the lines are those of a session that is over
    /// Whether the provider manages a language of the restored lines. One that it has failed at is left
    /// alone.
    std::map<AppleSystemSpeechLanguage, bool> m_managedLanguages;
};

} // namespace lumaphone
