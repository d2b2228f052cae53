#pragma once

#include "base/Record.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/Clock.h"
#include "session/CaptionLineList.h"
#include "session/CaptionTranslation.h"
#include "session/CaptionTranslator.h"
#include "session/TranslationOutcomes.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

namespace lumaphone {

/// Decides when which text is translated. The newest text replaces the pending one; a single worker waits out
/// bursts of partial results, translates the newest text, and in quiet moments goes back to lines that were
/// passed over and change no more, and at last to those of saved sessions. At most one request is wanted at a
/// time, and a text that failed is tried again only when it is asked for. Main thread.
class TranslationScheduler final : public QObject
{
    Q_OBJECT

public:
    /// A burst of partial results is translated when it has lasted this long.
    static constexpr std::chrono::milliseconds burstDuration {450};
    static constexpr std::chrono::milliseconds pollInterval {70};

    /// The lines outlive the scheduler.
    TranslationScheduler(std::shared_ptr<CaptionTranslator> translator, std::shared_ptr<Clock> clock,
        UuidGenerator makeUuid, const CaptionLineList &lines);
    ~TranslationScheduler() override;

    /// Makes `text`, trimmed, the pending one.
    void scheduleTranslation(const QString &text, AppleSystemSpeechLanguage language, bool isFinal);
    /// No more text will come: what is pending and the lines that were passed over are still translated,
    /// unless the provider is found not to answer.
    void finishRemaining();
    /// The lines are those of a session that is over: those without a translation get one, as far as it can
    /// be had now.
    void translateRestored();
    /// Tries once more what has failed. The first failure in a language stands for all others of that
    /// language, so that a provider that is of no use still is asked once.
    void tryAgain();
    void tryAgain(const QUuid &line);
    /// The same when another provider is asked from now on, also for what is under way.
    void providerChanged();
    /// The session was saved as `transcript`, and its lines leave the list: the translations that are pending
    /// still are to follow.
    void translateLater(const QUuid &transcript);
    /// Forgets everything but what is to follow saved sessions. A request under way is given up, and its
    /// answer ignored.
    void reset();

    /// How far a line of the list is.
    LineTranslation translationOf(const LumaphoneCaptionLine &line) const;
    /// Whether no worker runs: nothing is pending, nothing is under way.
    bool isResting() const { return !m_translationWorkerID; }

signals:
    /// Of the newest text. It is known already when the same text is scheduled again.
    void translationArrived(const CaptionTranslation &translation);
    void translationFailed(const QString &text, const QString &description);
    /// A line that newer texts had passed over has its translation.
    void passedOverLineTranslated(const QUuid &line, const CaptionTranslation &translation);
    void passedOverLineFailed(const QString &text, const QString &description);
    /// A line that was on the screen when its session was saved has its translation.
    void lateTranslationArrived(const QUuid &transcript, const CaptionTranslation &translation);
    /// What is known of lines without a translation has changed.
    void translationStatesChanged();
    /// The provider has left several requests in a row unanswered: only new texts are tried, until one of
    /// them succeeds or the user asks. Told once.
    void paused();
    /// Nothing is left to translate.
    void rested();

private:
    struct Pending
    {
        QString text;
        AppleSystemSpeechLanguage language;
        bool isFinal;
        std::chrono::nanoseconds burstStartedAt; ///< on the continuous clock
    };
    struct Newest
    {
    };
    struct PassedOver
    {
        QUuid line;
    };
    struct Later
    {
        QUuid transcript;
    };
    using Purpose = std::variant<Newest, PassedOver, Later>;
    struct Request
    {
        QString text;
        AppleSystemSpeechLanguage language; ///< effective
        Purpose purpose;
        std::stop_source stop;

        bool isForNewest() const { return std::holds_alternative<Newest>(purpose); }
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
        bool hasTimedOut = false;
        bool wasTold = false;
    };
    using Answer = std::variant<QString, Failure>;
    struct LateText
    {
        QString text;
        AppleSystemSpeechLanguage language;
        QUuid transcript;
    };

    /// The worker's loop. It ends when there is nothing to do, or when it is no longer the current worker.
    static QCoro::Task<> processPendingTranslations(QPointer<TranslationScheduler> self, QUuid workerID);
    static QCoro::Task<Answer> answerTo(std::shared_ptr<CaptionTranslator> translator, Request request);

    /// The scheduler, if it is still there and the worker is its current one.
    static TranslationScheduler *employing(const QPointer<TranslationScheduler> &self, const QUuid &workerID);
    void startWorker();
    Turn nextTurn();
    std::optional<Request> requestForNewest();
    std::optional<Request> requestForPassedOverLine() const;
    std::optional<Request> requestForLateText() const;
    /// Whether the text of a line is what comes next, or is under way.
    bool isAwaited(const QString &text) const;
    void receive(const Request &request, const Answer &answer);
    void receiveTranslation(const Request &request, const QString &translation);
    void receiveFailure(const Request &request, const Failure &failure);
    void noteWhatStaysPending(const Request &request);
    void abandonRequest();
    /// Ends the request under way; what it asked for has its turn again.
    void interruptRequest();

    std::shared_ptr<CaptionTranslator> m_translator;
    std::shared_ptr<Clock> m_clock;
    UuidGenerator m_makeUuid;
    const CaptionLineList &m_lines;
    std::optional<QUuid> m_translationWorkerID;
    std::optional<Pending> m_latest;
    std::optional<Request> m_inFlight;
    std::optional<CaptionTranslation> m_lastTranslation;
    TranslationOutcomes m_outcomes; ///< of the lines in the list
    std::deque<LateText> m_late;
    bool m_isOver = false; ///< the lines are those of a session that is over
};

} // namespace lumaphone
