#include "session/TranslationScheduler.h"

#include "base/LocalizedError.h"
#include "base/Text.h"
#include "language/EffectiveTranslationLanguage.h"

#include <algorithm>

namespace lumaphone {

TranslationScheduler::TranslationScheduler(std::shared_ptr<CaptionTranslator> translator,
    std::shared_ptr<Clock> clock, UuidGenerator makeUuid, const CaptionLineList &lines,
    TranslationReceiver &receiver)
    : m_translator(std::move(translator))
    , m_clock(std::move(clock))
    , m_makeUuid(std::move(makeUuid))
    , m_lines(lines)
    , m_receiver(receiver)
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
        m_receiver.translationWasKnown(*m_lastTranslation);
        return;
    }
    const bool isInFlight
        = m_inFlight && !m_inFlight->stop.stop_requested() && text::canonicallyEqual(text, m_inFlight->text);
    if (isInFlight) {
        return;
    }
    const auto burstStartedAt = m_latest ? m_latest->burstStartedAt : m_clock->monotonic();
    m_latest = Pending {text, language, isFinal, burstStartedAt};
    if (m_inFlight && m_inFlight->passedOverLine) {
        // The older line has its turn again when all is quiet.
        m_inFlight->stop.request_stop();
    }
    startWorker();
}

void TranslationScheduler::finishRemaining()
{
    startWorker();
}

void TranslationScheduler::translateRestored()
{
    m_isRestored = true;
    m_failedTexts.clear();
    m_managedLanguages.clear();
    if (m_inFlight) {
        // What has changed may let it succeed: its failure would tell nothing any more.
        m_inFlight->stop.request_stop();
    }
    startWorker();
}

void TranslationScheduler::reset()
{
    m_isRestored = false;
    m_managedLanguages.clear();
    m_translationWorkerID.reset();
    m_latest.reset();
    m_lastTranslation.reset();
    m_failedTexts.clear();
    abandonRequest();
}

void TranslationScheduler::abandonRequest()
{
    if (auto request = std::exchange(m_inFlight, std::nullopt)) {
        request->stop.request_stop();
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
        const Pending pending = *std::exchange(m_latest, std::nullopt);
        const QString text = text::trimmed(pending.text);
        if (!text.isEmpty()) {
            return Request {text, effectiveTranslationLanguage(text, pending.language), std::nullopt, {}};
        }
    }
    if (auto request = requestForPassedOverLine()) {
        return std::move(*request);
    }
    return Rest {};
}

bool TranslationScheduler::isUnmanaged(AppleSystemSpeechLanguage language) const
{
    const auto found = m_managedLanguages.find(language);
    return found != m_managedLanguages.end() && !found->second;
}

std::optional<TranslationScheduler::Request> TranslationScheduler::requestForPassedOverLine() const
{
    const auto &lines = m_lines.lines();
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const LumaphoneCaptionLine &candidate) {
        // Only the last line of a live session may still change: before it, also what the recogniser gave up
        // stands as it is.
        const bool isSettled = candidate.isFinal || m_isRestored || &candidate != &lines.constLast();
        return isSettled && candidate.translatedText == pendingTranslationPlaceholder
            && !m_failedTexts.contains(text::canonicalForm(candidate.sourceText))
            && !isUnmanaged(effectiveTranslationLanguage(candidate.sourceText, candidate.sourceLanguage));
    });
    if (line == lines.end()) {
        return std::nullopt;
    }
    const auto language = effectiveTranslationLanguage(line->sourceText, line->sourceLanguage);
    return Request {line->sourceText, language, line->id, {}};
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
            scheduler->m_receiver.translationRested();
        }
    }
}

QCoro::Task<TranslationScheduler::Answer> TranslationScheduler::answerTo(
    std::shared_ptr<CaptionTranslator> translator, Request request)
{
    Answer answer;
    try {
        answer = co_await translator->translateText(request.text, request.language, request.stop.get_token());
    } catch (...) {
        answer = Failure {localizedDescription(std::current_exception())};
    }
    co_return answer;
}

void TranslationScheduler::receive(const Request &request, const Answer &answer)
{
    if (const auto *translated = std::get_if<QString>(&answer)) {
        const CaptionTranslation translation {request.text, *translated, request.language};
        m_failedTexts.remove(text::canonicalForm(request.text));
        if (m_isRestored) {
            m_managedLanguages[request.language] = true;
        }
        if (request.passedOverLine) {
            m_receiver.passedOverLineTranslated(*request.passedOverLine, translation);
        } else {
            m_lastTranslation = translation;
            m_receiver.translationArrived(translation);
        }
        return;
    }
    if (request.stop.stop_requested()) {
        return;
    }
    m_failedTexts.insert(text::canonicalForm(request.text));
    if (m_isRestored) {
        // One text of a language that is managed may fail alone; the first one tells of all.
        m_managedLanguages.try_emplace(request.language, false);
        return;
    }
    const QString description = std::get<Failure>(answer).description;
    if (request.passedOverLine) {
        m_receiver.passedOverLineFailed(request.text, description);
    } else {
        m_receiver.translationFailed(request.text, description);
    }
}

} // namespace lumaphone
