#include "session/TranslationScheduler.h"

#include "base/LocalizedError.h"
#include "base/Text.h"
#include "language/EffectiveTranslationLanguage.h"
#include "translation/TransportError.h"

#include <algorithm>

namespace lumaphone {

namespace {

AppleSystemSpeechLanguage languageOf(const LumaphoneCaptionLine &line)
{
    return effectiveTranslationLanguage(line.sourceText, line.sourceLanguage);
}

} // namespace

TranslationScheduler::TranslationScheduler(std::shared_ptr<CaptionTranslator> translator,
    std::shared_ptr<Clock> clock, UuidGenerator makeUuid, const CaptionLineList &lines)
    : m_translator(std::move(translator))
    , m_clock(std::move(clock))
    , m_makeUuid(std::move(makeUuid))
    , m_lines(lines)
{
}

TranslationScheduler::~TranslationScheduler()
{
    reset();
}

void TranslationScheduler::scheduleTranslation(
    const QString &text, AppleSystemSpeechLanguage language, bool isFinal)
{
    if (m_lastTranslation && text::canonicallyEqual(text, m_lastTranslation->text)) {
        const auto newest = m_lines.newestIndexOf(text);
        if (newest && isPending(m_lines.lines().at(*newest))) {
            emit translationArrived(*m_lastTranslation);
        }
        return;
    }
    const bool isInFlight
        = m_inFlight && !m_inFlight->stop.stop_requested() && text::canonicallyEqual(text, m_inFlight->text);
    if (isInFlight) {
        return;
    }
    const auto burstStartedAt = m_latest ? m_latest->burstStartedAt : m_clock->monotonic();
    m_latest = Pending {text, language, isFinal, burstStartedAt};
    m_outcomes.forget(text);
    if (m_inFlight && !m_inFlight->isForNewest()) {
        // The older line has its turn again when all is quiet.
        m_inFlight->stop.request_stop();
    }
    emit translationStatesChanged();
    startWorker();
}

void TranslationScheduler::finishRemaining()
{
    m_isOver = true;
    startWorker();
}

void TranslationScheduler::translateRestored()
{
    m_isOver = true;
    for (const LumaphoneCaptionLine &line : m_lines.lines()) {
        if (isPending(line)) {
            m_outcomes.giveSecondChance(line, languageOf(line));
        }
    }
    startWorker();
}

void TranslationScheduler::tryAgain()
{
    for (const LumaphoneCaptionLine &line : m_lines.lines()) {
        if (translationOf(line).state == TranslationState::failed) {
            m_outcomes.giveSecondChance(line, languageOf(line));
        }
    }
    m_outcomes.trustAgain();
    m_translator->askAgain();
    emit translationStatesChanged();
    startWorker();
}

void TranslationScheduler::tryAgain(const QUuid &line)
{
    const auto index = m_lines.firstIndexOf(line);
    if (index && translationOf(m_lines.lines().at(*index)).state == TranslationState::failed) {
        m_outcomes.giveSecondChance(m_lines.lines().at(*index), languageOf(m_lines.lines().at(*index)));
        m_translator->askAgain();
        emit translationStatesChanged();
        startWorker();
    }
}

void TranslationScheduler::providerChanged()
{
    interruptRequest();
    tryAgain();
}

void TranslationScheduler::translateLater(const QUuid &transcript)
{
    for (const LumaphoneCaptionLine &line : m_lines.lines()) {
        if (translationOf(line).state == TranslationState::pending) {
            m_late.push_back({line.sourceText, languageOf(line), transcript});
            startWorker();
        }
    }
}

void TranslationScheduler::reset()
{
    m_translationWorkerID.reset();
    m_latest.reset();
    m_lastTranslation.reset();
    m_outcomes = {};
    m_isOver = false;
    abandonRequest();
    if (!m_late.empty()) {
        startWorker();
    }
}

void TranslationScheduler::abandonRequest()
{
    if (auto request = std::exchange(m_inFlight, std::nullopt)) {
        request->stop.request_stop();
    }
}

void TranslationScheduler::interruptRequest()
{
    if (!m_inFlight || m_inFlight->stop.stop_requested()) {
        return;
    }
    m_inFlight->stop.request_stop();
    if (m_inFlight->isForNewest() && !m_latest) {
        m_latest = Pending {m_inFlight->text, m_inFlight->language, true, m_clock->monotonic()};
    }
}

void TranslationScheduler::startWorker()
{
    if (m_translationWorkerID || !m_translator->translates()) {
        return;
    }
    m_translationWorkerID = m_makeUuid();
    QMetaObject::invokeMethod(
        this, [this, workerID = *m_translationWorkerID] { processPendingTranslations(this, workerID); },
        Qt::QueuedConnection);
}

TranslationScheduler::Turn TranslationScheduler::nextTurn()
{
    if (m_latest) {
        const bool isBurstOver
            = m_latest->isFinal || m_clock->monotonic() - m_latest->burstStartedAt >= burstDuration;
        if (!isBurstOver) {
            return Wait {pollInterval};
        }
    }
    if (auto request = requestForNewest()) {
        return std::move(*request);
    }
    if (auto request = requestForPassedOverLine()) {
        return std::move(*request);
    }
    if (auto request = requestForLateText()) {
        return std::move(*request);
    }
    return Rest {};
}

std::optional<TranslationScheduler::Request> TranslationScheduler::requestForNewest()
{
    const auto pending = std::exchange(m_latest, std::nullopt);
    if (!pending) {
        return std::nullopt;
    }
    const QString text = text::trimmed(pending->text);
    const bool isKnown = m_lastTranslation && text::canonicallyEqual(text, m_lastTranslation->text);
    if (text.isEmpty() || isKnown) {
        return std::nullopt;
    }
    return Request {text, effectiveTranslationLanguage(text, pending->language), Newest {}, {}};
}

std::optional<TranslationScheduler::Request> TranslationScheduler::requestForPassedOverLine() const
{
    const auto &lines = m_lines.lines();
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const LumaphoneCaptionLine &candidate) {
        // Only the last line of a live session may still change: before it, also what the recogniser gave up
        // stands as it is.
        const bool isSettled = candidate.isFinal || m_isOver || &candidate != &lines.constLast()
            || m_outcomes.isSecondChance(candidate.sourceText);
        return isSettled && m_outcomes.of(candidate).state == TranslationState::pending;
    });
    if (line == lines.end()) {
        return std::nullopt;
    }
    return Request {line->sourceText, languageOf(*line), PassedOver {line->id}, {}};
}

std::optional<TranslationScheduler::Request> TranslationScheduler::requestForLateText() const
{
    if (m_late.empty() || m_outcomes.isPaused()) {
        return std::nullopt;
    }
    const LateText &late = m_late.front();
    return Request {late.text, late.language, Later {late.transcript}, {}};
}

bool TranslationScheduler::isAwaited(const QString &text) const
{
    return (m_latest && text::canonicallyEqual(text, m_latest->text))
        || (m_inFlight && !m_inFlight->stop.stop_requested()
            && text::canonicallyEqual(text, m_inFlight->text));
}

LineTranslation TranslationScheduler::translationOf(const LumaphoneCaptionLine &line) const
{
    LineTranslation outcome = m_outcomes.of(line);
    if (outcome.state == TranslationState::arrived) {
        return outcome;
    }
    if (!m_translator->translates()) {
        return {TranslationState::unwanted};
    }
    return isAwaited(line.sourceText) ? LineTranslation {} : outcome;
}

TranslationScheduler *TranslationScheduler::employing(
    const QPointer<TranslationScheduler> &self, const QUuid &workerID)
{
    TranslationScheduler *scheduler = self.data();
    return scheduler && scheduler->m_translationWorkerID == workerID ? scheduler : nullptr;
}

QCoro::Task<> TranslationScheduler::processPendingTranslations(
    QPointer<TranslationScheduler> self, QUuid workerID)
{
    while (auto *scheduler = employing(self, workerID)) {
        const Turn turn = scheduler->nextTurn();
        if (const auto *wait = std::get_if<Wait>(&turn)) {
            const std::shared_ptr<Clock> clock = scheduler->m_clock;
            co_await clock->sleepFor(wait->duration);
        } else if (const auto *request = std::get_if<Request>(&turn)) {
            scheduler->m_inFlight = *request;
            const Answer answer = co_await answerTo(scheduler->m_translator, *request);
            // A worker that was replaced meanwhile leaves no trace.
            if (auto *stillEmploying = employing(self, workerID)) {
                stillEmploying->m_inFlight.reset();
                stillEmploying->receive(*request, answer);
            }
        } else {
            scheduler->m_translationWorkerID.reset();
            emit scheduler->rested();
        }
    }
}

QCoro::Task<TranslationScheduler::Answer> TranslationScheduler::answerTo(
    std::shared_ptr<CaptionTranslator> translator, Request request)
{
    Answer answer;
    try {
        answer = co_await translator->translateText(request.text, request.language, request.stop.get_token());
    } catch (const TransportError &error) {
        answer = Failure {error.errorDescription(), error.reason() == TransportError::Reason::timedOut};
    } catch (const TranslationWithheld &reason) {
        answer = Failure {reason.errorDescription(), false, true};
    } catch (...) {
        answer = Failure {localizedDescription(std::current_exception())};
    }
    co_return answer;
}

void TranslationScheduler::receive(const Request &request, const Answer &answer)
{
    if (const auto *translation = std::get_if<QString>(&answer)) {
        receiveTranslation(request, *translation);
    } else if (!request.stop.stop_requested()) {
        receiveFailure(request, std::get<Failure>(answer));
    }
    emit translationStatesChanged();
}

void TranslationScheduler::receiveTranslation(const Request &request, const QString &translation)
{
    const CaptionTranslation arrived {request.text, translation, request.language};
    m_outcomes.noteSuccess(request.text, request.language);
    if (const auto *later = std::get_if<Later>(&request.purpose)) {
        m_late.pop_front();
        emit lateTranslationArrived(later->transcript, arrived);
        return;
    }
    if (const auto *passedOver = std::get_if<PassedOver>(&request.purpose)) {
        emit passedOverLineTranslated(passedOver->line, arrived);
    } else {
        m_lastTranslation = arrived;
        emit translationArrived(arrived);
    }
    noteWhatStaysPending(request);
}

/// A line that shows the placeholder also after its answer would be found and requested for ever.
void TranslationScheduler::noteWhatStaysPending(const Request &request)
{
    const auto *passedOver = std::get_if<PassedOver>(&request.purpose);
    const auto newest = passedOver ? std::nullopt : m_lines.newestIndexOf(request.text);
    const auto &lines = m_lines.lines();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool isMeant = passedOver
            ? lines[i].id == passedOver->line && text::canonicallyEqual(lines[i].sourceText, request.text)
            : newest == i;
        if (isMeant && isPending(lines[i])) {
            m_outcomes.noteAnswered(lines[i]);
        }
    }
}

void TranslationScheduler::receiveFailure(const Request &request, const Failure &failure)
{
    const bool isLate = std::holds_alternative<Later>(request.purpose);
    const bool wasTold = failure.wasTold || isLate || m_outcomes.isSecondChance(request.text);
    if (isLate) {
        m_late.pop_front();
    } else {
        m_outcomes.noteFailure(request.text, request.language, failure.description);
    }
    if (request.isForNewest() && !failure.wasTold) {
        emit translationFailed(request.text, failure.description);
    } else if (!wasTold) {
        emit passedOverLineFailed(request.text, failure.description);
    }
    if (!failure.hasTimedOut) {
        m_outcomes.noteReply();
    } else if (m_isOver) {
        // Whoever has stopped waits for one time-out at most.
        m_latest.reset();
        m_outcomes.noteTimeOut(failure.description, 1);
    } else if (m_outcomes.noteTimeOut(failure.description)) {
        emit paused();
    }
}

} // namespace lumaphone
