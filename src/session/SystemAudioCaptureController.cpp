#include "session/SystemAudioCaptureController.h"

#include "base/LocalizedError.h"
#include "base/Text.h"
#include "capture/SystemAudioCaptureError.h"
#include "session/SessionTexts.h"
#include "storage/LumaphoneSettings.h"
#include "translation/provider/ProviderCapabilities.h"

#include <limits>

namespace lumaphone {

namespace {

QCoro::Task<> stopAndDrop(std::shared_ptr<LumaphoneLiveAudioPipeline> pipeline)
{
    co_await pipeline->stop();
}

SystemAudioCaptureError permissionDenied(LumaphoneAudioInputSource source)
{
    using Case = SystemAudioCaptureError::Case;
    return SystemAudioCaptureError(source == LumaphoneAudioInputSource::microphone
            ? Case::microphonePermissionDenied
            : Case::screenAudioPermissionDenied);
}

} // namespace

SystemAudioCaptureController::SystemAudioCaptureController(
    LiveSessionCollaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_settings(collaborators.settings)
    , m_floatingCaptions(collaborators.floatingCaptions)
    , m_transcriptProcessor(std::move(collaborators.transcriptProcessor))
    , m_draftStore(std::move(collaborators.draftStore))
    , m_translator(std::move(collaborators.translator))
    , m_access(std::move(collaborators.access))
    , m_makePipeline(std::move(collaborators.makePipeline))
    , m_clock(std::move(collaborators.clock))
    , m_mainQueue(std::move(collaborators.mainQueue))
    , m_merger([this](const QString &current,
                   const QString &incoming) { return m_transcriptProcessor.isRevision(current, incoming); },
          *m_clock, collaborators.makeUuid)
    , m_scheduler(m_translator, m_clock, collaborators.makeUuid, m_merger.list(), *this)
    , m_providerChanges(m_settings)
    , m_sourceLanguage(m_settings.sourceLanguage())
    , m_audioInputSource(m_settings.audioInputSource())
    , m_status(texts::initialStatus())
    , m_lastSampleSummary(texts::sampleHint(m_audioInputSource))
    , m_translatedText(texts::translationHint())
{
    m_merger.setListener(this);
    connect(&m_providerChanges, &ProviderChanges::happened, this, [this] { m_scheduler.providerChanged(); });
    restoreDraftIfAvailable();
}

SystemAudioCaptureController::~SystemAudioCaptureController()
{
    m_merger.setListener(nullptr);
    if (const auto running = pipeline()) {
        stopAndDrop(running);
    }
}

template<typename Value>
void SystemAudioCaptureController::set(
    Value &member, const Value &value, void (SystemAudioCaptureController::*changed)())
{
    if (member == value) {
        return;
    }
    member = value;
    emit(this->*changed)();
}

void SystemAudioCaptureController::say(const QString &status)
{
    if (!m_isOutputAwaited) {
        set(m_status, status, &SystemAudioCaptureController::statusChanged);
    }
}

void SystemAudioCaptureController::setSourceLanguage(AppleSystemSpeechLanguage language)
{
    m_settings.setSourceLanguage(language);
    set(m_sourceLanguage, language, &SystemAudioCaptureController::sourceLanguageChanged);
}

void SystemAudioCaptureController::setAudioInputSource(LumaphoneAudioInputSource source)
{
    m_settings.setAudioInputSource(source);
    set(m_audioInputSource, source, &SystemAudioCaptureController::audioInputSourceChanged);
}

bool SystemAudioCaptureController::hasUnsavedTranscript() const
{
    return !isRunning() && !m_savedTranscriptID && !captionLines().isEmpty();
}

bool SystemAudioCaptureController::canStartLiveTranslation() const
{
    return m_settings.processingMode() == LumaphoneProcessingMode::appleMode
        || ProviderCapabilities(m_settings.providerEndpoint()).supportsTextTranslation;
}

QString SystemAudioCaptureController::startStatusText() const
{
    return texts::startStatus(m_audioInputSource, m_settings.processingMode());
}

QString SystemAudioCaptureController::systemAudioErrorMessage(const std::exception_ptr &error) const
{
    return texts::systemAudioErrorMessage(localizedDescription(error), m_audioInputSource);
}

void SystemAudioCaptureController::requestSystemAudioAccessIfNeeded()
{
    const auto sayStatus = [self = QPointer(this)](const QString &status) {
        if (auto *const alive = self.data()) {
            alive->say(status);
        }
    };
    m_access.request(LumaphoneAudioInputSource::systemAudio, sayStatus);
}

void SystemAudioCaptureController::start()
{
    if (!std::holds_alternative<Idle>(m_state)) {
        return;
    }
    if (hasUnsavedTranscript()) {
        refuseToStart(
            texts::panelUnsavedTranscript(), texts::unsavedTranscript(), SessionFailure::unsavedTranscript);
        return;
    }
    enter(Starting {});
    QMetaObject::invokeMethod(
        this, [this, attempt = ++m_attempt] { startSession(this, attempt); }, Qt::QueuedConnection);
}

SystemAudioCaptureController *SystemAudioCaptureController::wanting(
    const QPointer<SystemAudioCaptureController> &self, int attempt)
{
    SystemAudioCaptureController *controller = self.data();
    const bool isWanting = controller && controller->m_attempt == attempt
        && !std::holds_alternative<Idle>(controller->m_state);
    return isWanting ? controller : nullptr;
}

QCoro::Task<> SystemAudioCaptureController::startSession(
    QPointer<SystemAudioCaptureController> self, int attempt)
{
    std::exception_ptr failure;
    try {
        auto *controller = wanting(self, attempt);
        if (!controller) {
            co_return;
        }
        const LumaphoneAudioInputSource source = controller->m_audioInputSource;
        const auto sayStatus = [self, attempt](const QString &status) {
            if (auto *stillWanting = wanting(self, attempt)) {
                stillWanting->say(status);
            }
        };
        const CaptureAccess access = controller->m_access;
        const bool isGranted = co_await access.request(source, sayStatus);
        controller = wanting(self, attempt);
        if (!controller) {
            co_return;
        }
        if (!isGranted) {
            throw permissionDenied(source);
        }
        if (!controller->canStartLiveTranslation()) {
            controller->dropPipeline();
            controller->refuseToStart(texts::panelProvider(controller->m_settings.processingMode()),
                texts::providerNotReady(), SessionFailure::providerNotReady);
            co_return;
        }
        const auto pipeline = controller->makePipeline(source, controller->eventHandler(attempt));
        controller->enter(Starting {pipeline});
        controller->say(texts::preparing(source));
        co_await pipeline->start();
        controller = wanting(self, attempt);
        if (controller) {
            controller->beginSession();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (auto *controller = failure ? wanting(self, attempt) : nullptr) {
        controller->failToStart(failure);
    }
}

std::shared_ptr<LumaphoneLiveAudioPipeline> SystemAudioCaptureController::makePipeline(
    LumaphoneAudioInputSource source, SystemAudioPipelineEventHandler onEvent) const
{
    return m_makePipeline(source, m_sourceLanguage, std::move(onEvent));
}

SystemAudioPipelineEventHandler SystemAudioCaptureController::eventHandler(int attempt)
{
    return [queue = m_mainQueue, self = QPointer(this), attempt](const SystemAudioPipelineEvent &event) {
        queue->post([self, attempt, event] {
            if (auto *controller = wanting(self, attempt)) {
                controller->handlePipelineEvent(event);
            }
        });
    };
}

void SystemAudioCaptureController::beginSession()
{
    using Self = SystemAudioCaptureController;
    enter(Running {pipeline()});
    set(m_sampleBufferCount, qint64(0), &Self::sampleBufferCountChanged);
    set(m_transcript, QString(), &Self::transcriptChanged);
    set(m_detectedLanguage, {}, &Self::detectedLanguageChanged);
    leaveSavedLines();
    m_scheduler.reset();
    m_merger.resetCaptionLines({});
    m_merger.clearCurrentLine();
    set(m_sessionStartedAt, std::optional(m_clock->now()), &Self::sessionStartedAtChanged);
    set(m_sessionEndedAt, {}, &Self::sessionEndedAtChanged);
    forgetSavedTranscript();
    m_draftStore.clear();
    set(m_translatedText, texts::awaitingSpeech(m_audioInputSource), &Self::translatedTextChanged);
    set(m_lastSampleSummary, texts::sampleHint(m_audioInputSource), &Self::lastSampleSummaryChanged);
    say(startStatusText());
    m_translator->askAgain();
    m_translator->warm(recognitionCandidates(m_sourceLanguage).front());
    m_isPanelShowingError = false;
    m_floatingCaptions.show(texts::panelStarted(m_audioInputSource),
        texts::panelStartedDetail(m_audioInputSource, m_sourceLanguage));
}

void SystemAudioCaptureController::failToStart(const std::exception_ptr &error)
{
    dropPipeline();
    refuseToStart(texts::panelStartFailed(), systemAudioErrorMessage(error), SessionFailure::startFailed);
}

void SystemAudioCaptureController::refuseToStart(
    const QString &panelText, const QString &message, SessionFailure reason)
{
    say(message);
    m_isPanelShowingError = false;
    m_floatingCaptions.show(panelText, message);
    emit sessionFailed(message, reason);
}

std::shared_ptr<LumaphoneLiveAudioPipeline> SystemAudioCaptureController::pipeline() const
{
    if (const auto *starting = std::get_if<Starting>(&m_state)) {
        return starting->pipeline;
    }
    if (const auto *running = std::get_if<Running>(&m_state)) {
        return running->pipeline;
    }
    return nullptr;
}

void SystemAudioCaptureController::dropPipeline()
{
    const auto dropped = pipeline();
    ++m_attempt;
    if (dropped) {
        stopAndDrop(dropped);
    }
    set(m_isBehind, false, &SystemAudioCaptureController::isBehindChanged);
    m_isOutputAwaited = false;
    enter(Idle {});
}

void SystemAudioCaptureController::enter(State state)
{
    const bool wasRunning = isRunning();
    const bool wasStarting = isStarting();
    m_state = std::move(state);
    if (wasStarting != isStarting()) {
        emit isStartingChanged();
    }
    if (wasRunning != isRunning()) {
        emit isRunningChanged();
    }
}

void SystemAudioCaptureController::stop(bool updateStatus)
{
    m_merger.finalizeOpenCaptionLine();
    dropPipeline();
    if (!captionLines().isEmpty() && !m_sessionEndedAt) {
        set(m_sessionEndedAt, std::optional(m_clock->now()),
            &SystemAudioCaptureController::sessionEndedAtChanged);
    }
    if (updateStatus) {
        if (captionLines().isEmpty()) {
            say(texts::stoppedWithoutLines());
        } else if (m_savedTranscriptID) {
            say(texts::stoppedAndSaved(m_savedTranscriptTitle));
        } else {
            say(texts::stoppedWithLines());
        }
    }
    saveDraftIfNeeded();
    m_scheduler.finishRemaining();
    clearPanelError();
}

void SystemAudioCaptureController::clearCaptions()
{
    using Self = SystemAudioCaptureController;
    set(m_transcript, QString(), &Self::transcriptChanged);
    set(m_translatedText, texts::translationHint(), &Self::translatedTextChanged);
    leaveSavedLines();
    m_merger.resetCaptionLines({});
    m_merger.clearCurrentLine();
    m_scheduler.reset();
    forgetSavedTranscript();
    m_draftStore.clear();
    say(texts::cleared(isRunning()));
    clearPanelError();
}

void SystemAudioCaptureController::markTranscriptSaved(const QUuid &id, const QString &title)
{
    using Self = SystemAudioCaptureController;
    set(m_savedTranscriptID, std::optional(id), &Self::savedTranscriptIDChanged);
    set(m_savedTranscriptTitle, std::optional(title), &Self::savedTranscriptTitleChanged);
    set(m_restoredDraftMessage, {}, &Self::restoredDraftMessageChanged);
    say(texts::saved(title));
}

void SystemAudioCaptureController::translateAgain()
{
    m_scheduler.tryAgain();
}

void SystemAudioCaptureController::translateAgain(const QUuid &line)
{
    if (const auto index = m_merger.list().firstIndexOf(line)) {
        m_scheduler.tryAgain(captionLines().at(*index));
    }
}

void SystemAudioCaptureController::leaveSavedLines()
{
    if (!m_savedTranscriptID) {
        return;
    }
    for (const LumaphoneCaptionLine &line : captionLines()) {
        if (translationOf(line).state == TranslationState::pending) {
            m_scheduler.translateLater(*m_savedTranscriptID, line);
        }
    }
}

void SystemAudioCaptureController::forgetSavedTranscript()
{
    using Self = SystemAudioCaptureController;
    set(m_savedTranscriptID, {}, &Self::savedTranscriptIDChanged);
    set(m_savedTranscriptTitle, {}, &Self::savedTranscriptTitleChanged);
    set(m_restoredDraftMessage, {}, &Self::restoredDraftMessageChanged);
}

void SystemAudioCaptureController::handlePipelineEvent(const SystemAudioPipelineEvent &event)
{
    std::visit([this](const auto &specific) { handle(specific); }, event);
}

void SystemAudioCaptureController::handle(const pipeline_event::AudioSample &event)
{
    using Self = SystemAudioCaptureController;
    if (m_sampleBufferCount == std::numeric_limits<qint64>::max()) {
        qFatal("The count of sample buffers overflowed.");
    }
    set(m_sampleBufferCount, m_sampleBufferCount + 1, &Self::sampleBufferCountChanged);
    set(m_lastSampleSummary, event.summary.detail, &Self::lastSampleSummaryChanged);
    if (!event.summary.isSilent) {
        emit soundArrived();
    }
    emit soundMeasured(event.summary.peak);
    if (m_transcript.isEmpty()) {
        say(texts::samplesReceived(m_sampleBufferCount, m_audioInputSource));
    }
}

void SystemAudioCaptureController::handle(const pipeline_event::Speech &event)
{
    handleSpeech(event.text, event.language, event.isFinal);
}

void SystemAudioCaptureController::handle(const pipeline_event::Pace &event)
{
    set(m_isBehind, event.isBehind, &SystemAudioCaptureController::isBehindChanged);
    say(event.isBehind ? texts::fellBehind() : texts::caughtUp());
}

void SystemAudioCaptureController::handle(const pipeline_event::Awaited &event)
{
    m_isOutputAwaited = false;
    say(event.output ? texts::outputAwaited(*event.output) : texts::outputReturned());
    m_isOutputAwaited = event.output.has_value();
}

void SystemAudioCaptureController::handle(const pipeline_event::Failed &event)
{
    dropPipeline();
    refuseToStart(texts::panelPipelineFailed(), event.message, SessionFailure::interrupted);
    m_scheduler.finishRemaining();
}

void SystemAudioCaptureController::handleSpeech(
    const QString &text, AppleSystemSpeechLanguage language, bool isFinal)
{
    using Self = SystemAudioCaptureController;
    const QString trimmed = text::trimmed(text);
    if (trimmed.isEmpty()) {
        return;
    }
    set(m_detectedLanguage, std::optional(language), &Self::detectedLanguageChanged);
    set(m_transcript, trimmed, &Self::transcriptChanged);
    say(m_translator->translates() ? texts::recognized(isFinal) : texts::recognizedOnly(isFinal));
    m_merger.upsertCaptionLine(trimmed, language, isFinal);
    updateFloatingCaptionForLiveSource(trimmed, language);
    m_scheduler.scheduleTranslation(trimmed, language, isFinal);
    if (isFinal) {
        m_merger.clearCurrentLine();
    }
}

void SystemAudioCaptureController::updateFloatingCaptionForLiveSource(
    const QString &text, AppleSystemSpeechLanguage language)
{
    if (const auto index = m_merger.list().newestIndexOf(text)) {
        const LumaphoneCaptionLine &line = captionLines().at(*index);
        const QString translation = text::trimmed(line.translatedText);
        if (!translation.isEmpty() && !isPending(line)) {
            showOnPanel({text, translation, language});
            return;
        }
    }
    if (m_floatingCaptions.isOpen()) {
        // A new partial result never blanks the last translation.
        m_floatingCaptions.showSpoken(text, language, m_floatingCaptions.currentTranslationText());
    }
}

void SystemAudioCaptureController::updateCaptionTranslation(const QString &translation, const QString &text)
{
    if (const auto index = m_merger.list().newestIndexOf(text)) {
        m_merger.setTranslation(*index, translation);
    }
}

void SystemAudioCaptureController::publish(const CaptionTranslation &translation)
{
    if (text::canonicallyEqual(translation.text, m_transcript)) {
        set(m_translatedText, translation.translation, &SystemAudioCaptureController::translatedTextChanged);
        if (!m_restoredDraftMessage) {
            say(texts::translated(translation.language, m_translator->providerName()));
        }
    }
    if (m_floatingCaptions.isOpen()) {
        showOnPanel(translation);
    }
}

void SystemAudioCaptureController::followSaved(const CaptionTranslation &translation)
{
    if (m_savedTranscriptID) {
        emit savedLineTranslated(*m_savedTranscriptID, translation.text, translation.translation);
    }
}

void SystemAudioCaptureController::showOnPanel(const CaptionTranslation &translation)
{
    m_isPanelShowingError = false;
    m_floatingCaptions.showSpoken(translation.text, translation.language, translation.translation);
}

void SystemAudioCaptureController::clearPanelError()
{
    if (!m_isPanelShowingError || !m_floatingCaptions.isOpen()) {
        return;
    }
    if (captionLines().isEmpty()) {
        m_isPanelShowingError = false;
        m_floatingCaptions.show({}, {});
        return;
    }
    const LumaphoneCaptionLine &newest = captionLines().constLast();
    showOnPanel(
        {newest.sourceText, isPending(newest) ? QString() : newest.translatedText, newest.sourceLanguage});
}

void SystemAudioCaptureController::translationArrived(const CaptionTranslation &translation)
{
    updateCaptionTranslation(translation.translation, translation.text);
    publish(translation);
    followSaved(translation);
}

void SystemAudioCaptureController::translationWasKnown(const CaptionTranslation &translation)
{
    const auto index = m_merger.list().newestIndexOf(translation.text);
    if (index && isPending(captionLines().at(*index))) {
        translationArrived(translation);
    }
}

void SystemAudioCaptureController::translationFailed(const QString &text, const QString &description)
{
    const QString provider = m_translator->providerName();
    set(m_translatedText, texts::translationFailed(provider, description),
        &SystemAudioCaptureController::translatedTextChanged);
    say(texts::translationFailedStatus(provider, description));
    if (isRunning()) {
        m_isPanelShowingError = true;
        m_floatingCaptions.show(texts::panelTranslationFailed(provider), description);
    }
    emit captionTranslationFailed(text, description);
}

void SystemAudioCaptureController::passedOverLineTranslated(
    const QUuid &line, const CaptionTranslation &translation)
{
    const auto index = m_merger.list().firstIndexOf(line);
    const bool isUnchanged = index && isPending(captionLines().at(*index))
        && text::canonicallyEqual(captionLines().at(*index).sourceText, translation.text);
    if (isUnchanged) {
        m_merger.setTranslation(*index, translation.translation);
    }
    // An older line's translation must not take the newest caption's place on the panel.
    if (text::canonicallyEqual(translation.text, m_transcript)) {
        publish(translation);
    }
    followSaved(translation);
}

void SystemAudioCaptureController::passedOverLineFailed(const QString &text, const QString &description)
{
    say(texts::translationFailedStatus(m_translator->providerName(), description));
    emit captionTranslationFailed(text, description);
}

void SystemAudioCaptureController::lateTranslationArrived(
    const QUuid &transcript, const CaptionTranslation &translation)
{
    emit savedLineTranslated(transcript, translation.text, translation.translation);
}

void SystemAudioCaptureController::translationStatesDidChange()
{
    emit translationStatesChanged();
}

void SystemAudioCaptureController::translationPaused()
{
    say(texts::translationPaused());
}

void SystemAudioCaptureController::translationRested()
{
    emit translationsSettled();
}

void SystemAudioCaptureController::captionLineInserted(qsizetype index)
{
    // Before anyone is told: what has been shown survives the end of the process.
    saveDraftIfNeeded();
    emit lineInserted(index);
    emit captionLinesChanged();
}

void SystemAudioCaptureController::captionLineChanged(qsizetype index)
{
    saveDraftIfNeeded();
    emit lineChanged(index);
    emit captionLinesChanged();
}

void SystemAudioCaptureController::captionLinesReset()
{
    emit linesReset();
    emit captionLinesChanged();
}

void SystemAudioCaptureController::saveDraftIfNeeded()
{
    if (m_savedTranscriptID || captionLines().isEmpty()) {
        m_draftStore.clear();
        return;
    }
    m_draftStore.save({
        .lines = captionLines(),
        .sourceLanguage = m_sourceLanguage,
        .detectedLanguage = m_detectedLanguage,
        .startedAt = m_sessionStartedAt,
        .endedAt = m_sessionEndedAt,
        .updatedAt = m_clock->now(),
    });
}

void SystemAudioCaptureController::restoreDraftIfAvailable()
{
    using Self = SystemAudioCaptureController;
    const auto draft = m_draftStore.load();
    if (!draft || draft->lines.isEmpty()) {
        return;
    }
    setSourceLanguage(draft->sourceLanguage);
    set(m_detectedLanguage, draft->detectedLanguage, &Self::detectedLanguageChanged);
    m_merger.resetCaptionLines(draft->lines);
    set(m_sessionStartedAt, draft->startedAt, &Self::sessionStartedAtChanged);
    set(m_sessionEndedAt, draft->endedAt, &Self::sessionEndedAtChanged);
    set(m_savedTranscriptID, {}, &Self::savedTranscriptIDChanged);
    set(m_savedTranscriptTitle, {}, &Self::savedTranscriptTitleChanged);
    set(m_transcript, draft->lines.constLast().sourceText, &Self::transcriptChanged);
    set(m_translatedText, draft->lines.constLast().translatedText, &Self::translatedTextChanged);
    set(m_restoredDraftMessage, std::optional(texts::draftRestored()), &Self::restoredDraftMessageChanged);
    say(texts::draftRestoredStatus());
    m_scheduler.translateRestored();
}

} // namespace lumaphone
