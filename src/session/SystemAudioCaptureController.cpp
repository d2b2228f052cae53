#include "session/SystemAudioCaptureController.h"

#include "base/LocalizedError.h"
#include "base/SetAndNotify.h"
#include "base/Text.h"
#include "session/SessionTexts.h"
#include "storage/LumaphoneSettings.h"
#include "translation/provider/ProviderCapabilities.h"

#include <limits>

namespace lumaphone {

SystemAudioCaptureController::SystemAudioCaptureController(
    LiveSessionCollaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_settings(collaborators.settings)
    , m_transcriptProcessor(std::move(collaborators.transcriptProcessor))
    , m_translator(std::move(collaborators.translator))
    , m_makePipeline(std::move(collaborators.makePipeline))
    , m_clock(std::move(collaborators.clock))
    , m_merger([this](const QString &current,
                   const QString &incoming) { return m_transcriptProcessor.isRevision(current, incoming); },
          *m_clock, collaborators.makeUuid)
    , m_mirror(collaborators.floatingCaptions, m_merger.list())
    , m_keeper(std::move(collaborators.draftStore), m_clock, m_merger.list())
    , m_scheduler(m_translator, m_clock, collaborators.makeUuid, m_merger.list())
    , m_providerChanges(m_settings)
    , m_status(texts::initialStatus())
    , m_capture(std::move(collaborators.access), std::move(collaborators.mainQueue),
          {.source = [this] { return m_audioInputSource; },
              .isReady = [this] { return canStartLiveTranslation(); },
              .makePipeline =
                  [this](LumaphoneAudioInputSource source, SystemAudioPipelineEventHandler onEvent) {
                      return makePipeline(source, std::move(onEvent));
                  }})
    , m_sourceLanguage(m_settings.sourceLanguage())
    , m_audioInputSource(m_settings.audioInputSource())
    , m_lastSampleSummary(texts::sampleHint(m_audioInputSource))
    , m_translatedText(texts::translationHint())
{
    m_merger.setListener(this);
    forwardChanges();
    followCapture();
    followTranslations();
    restoreDraftIfAvailable();
}

SystemAudioCaptureController::~SystemAudioCaptureController()
{
    m_merger.setListener(nullptr);
}

void SystemAudioCaptureController::forwardChanges()
{
    connect(&m_status, &SessionStatus::changed, this, &Self::statusChanged);
    connect(&m_keeper, &SessionKeeper::startedAtChanged, this, &Self::sessionStartedAtChanged);
    connect(&m_keeper, &SessionKeeper::endedAtChanged, this, &Self::sessionEndedAtChanged);
    connect(&m_keeper, &SessionKeeper::savedTranscriptIDChanged, this, &Self::savedTranscriptIDChanged);
    connect(&m_keeper, &SessionKeeper::savedTranscriptTitleChanged, this, &Self::savedTranscriptTitleChanged);
    connect(&m_keeper, &SessionKeeper::restoredDraftMessageChanged, this, &Self::restoredDraftMessageChanged);
}

void SystemAudioCaptureController::followCapture()
{
    connect(&m_capture, &SessionCapture::isStartingChanged, this, &Self::isStartingChanged);
    connect(&m_capture, &SessionCapture::isRunningChanged, this, &Self::isRunningChanged);
    connect(&m_capture, &SessionCapture::said, &m_status, &SessionStatus::say);
    connect(&m_capture, &SessionCapture::began, this, &Self::beginSession);
    connect(&m_capture, &SessionCapture::foundNotReady, this, &Self::refuseWithoutProvider);
    connect(&m_capture, &SessionCapture::failed, this, &Self::failToStart);
    connect(&m_capture, &SessionCapture::reported, this, &Self::handlePipelineEvent);
}

void SystemAudioCaptureController::followTranslations()
{
    using Scheduler = TranslationScheduler;
    connect(&m_scheduler, &Scheduler::translationArrived, this, &Self::takeTranslation);
    connect(&m_scheduler, &Scheduler::passedOverLineTranslated, this, &Self::takePassedOverTranslation);
    connect(&m_scheduler, &Scheduler::translationFailed, this, &Self::takeFailure);
    connect(&m_scheduler, &Scheduler::passedOverLineFailed, this, &Self::takePassedOverFailure);
    connect(&m_scheduler, &Scheduler::lateTranslationArrived, this,
        [this](const QUuid &transcript, const CaptionTranslation &translation) {
            emit savedLineTranslated(transcript, translation.text, translation.translation);
        });
    connect(&m_scheduler, &Scheduler::translationStatesChanged, this, &Self::translationStatesChanged);
    connect(&m_scheduler, &Scheduler::paused, this, [this] { m_status.say(texts::translationPaused()); });
    connect(&m_scheduler, &Scheduler::rested, this, &Self::translationsSettled);
    connect(&m_providerChanges, &ProviderChanges::happened, &m_scheduler, &Scheduler::providerChanged);
}

void SystemAudioCaptureController::setSourceLanguage(AppleSystemSpeechLanguage language)
{
    m_settings.setSourceLanguage(language);
    setAndNotify(this, m_sourceLanguage, language, &Self::sourceLanguageChanged);
}

void SystemAudioCaptureController::setAudioInputSource(LumaphoneAudioInputSource source)
{
    m_settings.setAudioInputSource(source);
    setAndNotify(this, m_audioInputSource, source, &Self::audioInputSourceChanged);
}

bool SystemAudioCaptureController::hasUnsavedTranscript() const
{
    return !isRunning() && !savedTranscriptID() && !captionLines().isEmpty();
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

void SystemAudioCaptureController::start()
{
    if (!m_capture.isIdle()) {
        return;
    }
    if (hasUnsavedTranscript()) {
        refuseToStart(
            texts::panelUnsavedTranscript(), texts::unsavedTranscript(), SessionFailure::unsavedTranscript);
        return;
    }
    m_capture.begin();
}

std::shared_ptr<LumaphoneLiveAudioPipeline> SystemAudioCaptureController::makePipeline(
    LumaphoneAudioInputSource source, SystemAudioPipelineEventHandler onEvent) const
{
    return m_makePipeline(source, m_sourceLanguage, std::move(onEvent));
}

void SystemAudioCaptureController::beginSession()
{
    setAndNotify(this, m_sampleBufferCount, 0, &Self::sampleBufferCountChanged);
    setAndNotify(this, m_transcript, {}, &Self::transcriptChanged);
    setAndNotify(this, m_detectedLanguage, {}, &Self::detectedLanguageChanged);
    leaveLines();
    m_keeper.begin();
    setAndNotify(
        this, m_translatedText, texts::awaitingSpeech(m_audioInputSource), &Self::translatedTextChanged);
    setAndNotify(
        this, m_lastSampleSummary, texts::sampleHint(m_audioInputSource), &Self::lastSampleSummaryChanged);
    m_status.say(startStatusText());
    m_translator->askAgain();
    m_translator->warm(recognitionCandidates(m_sourceLanguage).front());
    m_mirror.showNotice(texts::panelStarted(m_audioInputSource),
        texts::panelStartedDetail(m_audioInputSource, m_sourceLanguage));
}

void SystemAudioCaptureController::failToStart(const std::exception_ptr &error)
{
    dropPipeline();
    refuseToStart(texts::panelStartFailed(), systemAudioErrorMessage(error), SessionFailure::startFailed);
}

void SystemAudioCaptureController::refuseWithoutProvider()
{
    dropPipeline();
    refuseToStart(texts::panelProvider(m_settings.processingMode()), texts::providerNotReady(),
        SessionFailure::providerNotReady);
}

void SystemAudioCaptureController::refuseToStart(
    const QString &panelText, const QString &message, SessionFailure reason)
{
    m_status.say(message);
    m_mirror.showNotice(panelText, message);
    emit sessionFailed(message, reason);
}

void SystemAudioCaptureController::dropPipeline()
{
    setAndNotify(this, m_isBehind, false, &Self::isBehindChanged);
    m_status.awaitNothing();
    m_capture.end();
}

void SystemAudioCaptureController::stop(bool updateStatus)
{
    m_merger.finalizeOpenCaptionLine();
    dropPipeline();
    m_keeper.end();
    if (updateStatus) {
        if (captionLines().isEmpty()) {
            m_status.say(texts::stoppedWithoutLines());
        } else if (savedTranscriptID()) {
            m_status.say(texts::stoppedAndSaved(savedTranscriptTitle()));
        } else {
            m_status.say(texts::stoppedWithLines());
        }
    }
    saveDraftIfNeeded();
    m_scheduler.finishRemaining();
    m_mirror.clearTranslationError();
}

void SystemAudioCaptureController::clearCaptions()
{
    setAndNotify(this, m_transcript, {}, &Self::transcriptChanged);
    setAndNotify(this, m_translatedText, texts::translationHint(), &Self::translatedTextChanged);
    leaveLines();
    m_keeper.forget();
    m_status.say(texts::cleared(isRunning()));
    m_mirror.clearTranslationError();
}

void SystemAudioCaptureController::leaveLines()
{
    if (savedTranscriptID()) {
        m_scheduler.translateLater(*savedTranscriptID());
    }
    m_scheduler.reset();
    m_merger.resetCaptionLines({});
    m_merger.clearCurrentLine();
}

void SystemAudioCaptureController::markTranscriptSaved(const QUuid &id, const QString &title)
{
    m_keeper.markSaved(id, title);
    m_status.say(texts::saved(title));
}

void SystemAudioCaptureController::handlePipelineEvent(const SystemAudioPipelineEvent &event)
{
    std::visit([this](const auto &specific) { handle(specific); }, event);
}

void SystemAudioCaptureController::handle(const pipeline_event::AudioSample &event)
{
    if (m_sampleBufferCount == std::numeric_limits<qint64>::max()) {
        qFatal("The count of sample buffers overflowed.");
    }
    setAndNotify(this, m_sampleBufferCount, m_sampleBufferCount + 1, &Self::sampleBufferCountChanged);
    setAndNotify(this, m_lastSampleSummary, event.summary.detail, &Self::lastSampleSummaryChanged);
    if (!event.summary.isSilent) {
        emit soundArrived();
    }
    emit soundMeasured(event.summary.peak);
    if (m_transcript.isEmpty()) {
        m_status.say(texts::samplesReceived(m_sampleBufferCount, m_audioInputSource));
    }
}

void SystemAudioCaptureController::handle(const pipeline_event::Speech &event)
{
    handleSpeech(event.text, event.language, event.isFinal);
}

void SystemAudioCaptureController::handle(const pipeline_event::Pace &event)
{
    setAndNotify(this, m_isBehind, event.isBehind, &Self::isBehindChanged);
    m_status.say(event.isBehind ? texts::fellBehind() : texts::caughtUp());
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
    const QString trimmed = text::trimmed(text);
    if (trimmed.isEmpty()) {
        return;
    }
    setAndNotify(this, m_detectedLanguage, std::optional(language), &Self::detectedLanguageChanged);
    setAndNotify(this, m_transcript, trimmed, &Self::transcriptChanged);
    m_status.say(m_translator->translates() ? texts::recognized(isFinal) : texts::recognizedOnly(isFinal));
    m_merger.upsertCaptionLine(trimmed, language, isFinal);
    m_mirror.updateFloatingCaptionForLiveSource(trimmed, language);
    m_scheduler.scheduleTranslation(trimmed, language, isFinal);
    if (isFinal) {
        m_merger.clearCurrentLine();
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
        setAndNotify(this, m_translatedText, translation.translation, &Self::translatedTextChanged);
        if (!restoredDraftMessage()) {
            m_status.say(texts::translated(translation.language, m_translator->providerName()));
        }
    }
    m_mirror.showTranslation(translation);
}

void SystemAudioCaptureController::followSaved(const CaptionTranslation &translation)
{
    if (savedTranscriptID()) {
        emit savedLineTranslated(*savedTranscriptID(), translation.text, translation.translation);
    }
}

void SystemAudioCaptureController::takeTranslation(const CaptionTranslation &translation)
{
    updateCaptionTranslation(translation.translation, translation.text);
    publish(translation);
    followSaved(translation);
}

void SystemAudioCaptureController::takeFailure(const QString &text, const QString &description)
{
    const QString provider = m_translator->providerName();
    setAndNotify(this, m_translatedText, texts::translationFailed(provider, description),
        &Self::translatedTextChanged);
    m_status.say(texts::translationFailedStatus(provider, description));
    if (isRunning()) {
        m_mirror.showTranslationError(texts::panelTranslationFailed(provider), description);
    }
    emit captionTranslationFailed(text, description);
}

void SystemAudioCaptureController::takePassedOverTranslation(
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

void SystemAudioCaptureController::takePassedOverFailure(const QString &text, const QString &description)
{
    m_status.say(texts::translationFailedStatus(m_translator->providerName(), description));
    emit captionTranslationFailed(text, description);
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

void SystemAudioCaptureController::restoreDraftIfAvailable()
{
    const auto draft = m_keeper.restoreDraft();
    if (!draft) {
        return;
    }
    setSourceLanguage(draft->sourceLanguage);
    setAndNotify(this, m_detectedLanguage, draft->detectedLanguage, &Self::detectedLanguageChanged);
    m_merger.resetCaptionLines(draft->lines);
    setAndNotify(this, m_transcript, draft->lines.constLast().sourceText, &Self::transcriptChanged);
    setAndNotify(
        this, m_translatedText, draft->lines.constLast().translatedText, &Self::translatedTextChanged);
    m_status.say(texts::draftRestoredStatus());
    m_scheduler.translateRestored();
}

} // namespace lumaphone
