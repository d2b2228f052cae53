#pragma once

#include "base/MainQueue.h"
#include "base/Record.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "platform/Clock.h"
#include "session/CaptionLineMerger.h"
#include "session/CaptionTranslator.h"
#include "session/CaptureAccess.h"
#include "session/FloatingCaptionMirror.h"
#include "session/FloatingCaptionPresenter.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "session/LumaphoneTranscriptProcessor.h"
#include "session/ProviderChanges.h"
#include "session/SessionCapture.h"
#include "session/SessionFailure.h"
#include "session/SessionKeeper.h"
#include "session/SessionStatus.h"
#include "session/TranslationScheduler.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QDateTime>
#include <QObject>
#include <QUuid>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace lumaphone {

class LumaphoneSettings;

/// Builds the pipeline of one session. The handler may be called on any thread.
using LivePipelineMaker
    = std::function<std::shared_ptr<LumaphoneLiveAudioPipeline>(LumaphoneAudioInputSource source,
        AppleSystemSpeechLanguage language, SystemAudioPipelineEventHandler onEvent)>;

/// What a live session works with. Settings and presenter outlive the controller.
struct LiveSessionCollaborators
{
    LumaphoneSettings &settings;
    FloatingCaptionPresenter &floatingCaptions;
    LumaphoneTranscriptProcessor transcriptProcessor;
    LumaphoneSessionDraftStore draftStore;
    std::shared_ptr<CaptionTranslator> translator;
    CaptureAccess access;
    LivePipelineMaker makePipeline;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<MainQueue> mainQueue;
    UuidGenerator makeUuid;
};

/// The live session: what the interface observes, and what it asks for. Main thread.
class SystemAudioCaptureController final : public QObject, private CaptionLineListener
{
    Q_OBJECT
    Q_PROPERTY(lumaphone::AppleSystemSpeechLanguage sourceLanguage READ sourceLanguage WRITE setSourceLanguage
            NOTIFY sourceLanguageChanged)
    Q_PROPERTY(lumaphone::LumaphoneAudioInputSource audioInputSource READ audioInputSource WRITE
            setAudioInputSource NOTIFY audioInputSourceChanged)
    Q_PROPERTY(std::optional<lumaphone::AppleSystemSpeechLanguage> detectedLanguage READ detectedLanguage
            NOTIFY detectedLanguageChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(qint64 sampleBufferCount READ sampleBufferCount NOTIFY sampleBufferCountChanged)
    Q_PROPERTY(QString lastSampleSummary READ lastSampleSummary NOTIFY lastSampleSummaryChanged)
    Q_PROPERTY(QString transcript READ transcript NOTIFY transcriptChanged)
    Q_PROPERTY(QString translatedText READ translatedText NOTIFY translatedTextChanged)
    Q_PROPERTY(
        QList<lumaphone::LumaphoneCaptionLine> captionLines READ captionLines NOTIFY captionLinesChanged)
    Q_PROPERTY(std::optional<QDateTime> sessionStartedAt READ sessionStartedAt NOTIFY sessionStartedAtChanged)
    Q_PROPERTY(std::optional<QDateTime> sessionEndedAt READ sessionEndedAt NOTIFY sessionEndedAtChanged)
    Q_PROPERTY(std::optional<QUuid> savedTranscriptID READ savedTranscriptID NOTIFY savedTranscriptIDChanged)
    Q_PROPERTY(std::optional<QString> savedTranscriptTitle READ savedTranscriptTitle NOTIFY
            savedTranscriptTitleChanged)
    Q_PROPERTY(std::optional<QString> restoredDraftMessage READ restoredDraftMessage NOTIFY
            restoredDraftMessageChanged)

public:
    /// Restores the draft of a session that was interrupted, if there is one.
    explicit SystemAudioCaptureController(LiveSessionCollaborators collaborators, QObject *parent = nullptr);
    ~SystemAudioCaptureController() override;

    AppleSystemSpeechLanguage sourceLanguage() const { return m_sourceLanguage; }
    void setSourceLanguage(AppleSystemSpeechLanguage language);
    LumaphoneAudioInputSource audioInputSource() const { return m_audioInputSource; }
    void setAudioInputSource(LumaphoneAudioInputSource source);
    /// Of the newest recognised text.
    const std::optional<AppleSystemSpeechLanguage> &detectedLanguage() const { return m_detectedLanguage; }
    bool isRunning() const { return m_capture.isRunning(); }
    /// From start() until the session runs or could not start.
    bool isStarting() const { return m_capture.isStarting(); }
    /// Whether recognition is seconds behind the sound.
    bool isBehind() const { return m_isBehind; }
    const QString &status() const { return m_status.text(); }
    /// Received in this session.
    qint64 sampleBufferCount() const { return m_sampleBufferCount; }
    const QString &lastSampleSummary() const { return m_lastSampleSummary; }
    /// The newest recognised text.
    const QString &transcript() const { return m_transcript; }
    /// The newest translation, or a hint.
    const QString &translatedText() const { return m_translatedText; }
    const QList<LumaphoneCaptionLine> &captionLines() const { return m_merger.captionLines(); }
    const std::optional<QDateTime> &sessionStartedAt() const { return m_keeper.startedAt(); }
    const std::optional<QDateTime> &sessionEndedAt() const { return m_keeper.endedAt(); }
    /// The library record this session was saved as.
    const std::optional<QUuid> &savedTranscriptID() const { return m_keeper.savedTranscriptID(); }
    const std::optional<QString> &savedTranscriptTitle() const { return m_keeper.savedTranscriptTitle(); }
    const std::optional<QString> &restoredDraftMessage() const { return m_keeper.restoredDraftMessage(); }

    /// Whether some text still waits for its translation, also after a stop().
    bool isTranslating() const { return !m_scheduler.isResting(); }
    /// How far the translation of one of the lines is.
    LineTranslation translationOf(const LumaphoneCaptionLine &line) const
    {
        return m_scheduler.translationOf(line);
    }

    bool hasUnsavedTranscript() const;
    bool canStartLiveTranslation() const;
    QString startStatusText() const;
    QString systemAudioErrorMessage(const std::exception_ptr &error) const;

    /// Asks for the right to capture the computer's sound, unless it is there. Returns at once; every step is
    /// a status.
    void requestSystemAudioAccessIfNeeded() { m_capture.requestSystemAudioAccess(); }
    /// Returns at once; the session begins when access is granted and the pipeline captures.
    void start();
    /// Ends the session, or its beginning. What was recognised is still translated.
    void stop(bool updateStatus);
    void clearCaptions();
    /// Tries failed translations once more: those of all lines, or of one. By itself that happens when the
    /// provider in use has changed.
    void translateAgain() { m_scheduler.tryAgain(); }
    void translateAgain(const QUuid &line) { m_scheduler.tryAgain(line); }
    /// A model for translation on the device has come or gone.
    void translationModelsChanged() { m_providerChanges.noteModelChange(); }
    /// The library has saved the session under this identity.
    void markTranscriptSaved(const QUuid &id, const QString &title);
    /// A save point of the draft: keeps the session, unless the library has it.
    void saveDraftIfNeeded() { m_keeper.saveDraftIfNeeded(m_sourceLanguage, m_detectedLanguage); }
    /// Takes whatever a pipeline reports.
    void handlePipelineEvent(const SystemAudioPipelineEvent &event);

signals:
    void sourceLanguageChanged();
    void audioInputSourceChanged();
    void detectedLanguageChanged();
    void isRunningChanged();
    void statusChanged();
    void sampleBufferCountChanged();
    void lastSampleSummaryChanged();
    void transcriptChanged();
    void translatedTextChanged();
    void captionLinesChanged();
    void sessionStartedAtChanged();
    void sessionEndedAtChanged();
    void savedTranscriptIDChanged();
    void savedTranscriptTitleChanged();
    void restoredDraftMessageChanged();
    /// The session could not start, or ended by itself; `message` is the status that says why.
    void sessionFailed(const QString &message, lumaphone::SessionFailure reason);
    void isStartingChanged();
    void isBehindChanged();
    /// A buffer that is not silent has come.
    void soundArrived();
    /// The peak of a buffer that has come, from 0 to 1.
    void soundMeasured(double peak);
    /// A text remains without its translation.
    void captionTranslationFailed(const QString &sourceText, const QString &description);
    /// What translationOf() says of some lines has changed.
    void translationStatesChanged();
    /// A line of a session that the library has was translated after the saving.
    void savedLineTranslated(
        const QUuid &transcript, const QString &sourceText, const QString &translatedText);
    /// Nothing is left to translate.
    void translationsSettled();
    // What exactly changed in the lines, before captionLinesChanged().
    void lineInserted(qsizetype index);
    void lineChanged(qsizetype index);
    void linesReset();

private:
    using Self = SystemAudioCaptureController;

    void forwardChanges();
    void followCapture();
    void followTranslations();

    std::shared_ptr<LumaphoneLiveAudioPipeline> makePipeline(
        LumaphoneAudioInputSource source, SystemAudioPipelineEventHandler onEvent) const;
    void beginSession();
    void failToStart(const std::exception_ptr &error);
    void refuseWithoutProvider();
    void refuseToStart(const QString &panelText, const QString &message, SessionFailure reason);
    /// Becomes idle and lets the pipeline stop by itself.
    void dropPipeline();

    void handle(const pipeline_event::AudioSample &event);
    void handle(const pipeline_event::Speech &event);
    void handle(const pipeline_event::Pace &event);
    void handle(const pipeline_event::Awaited &event) { m_status.awaitOutput(event.output); }
    void handle(const pipeline_event::Failed &event);
    void handleSpeech(const QString &text, AppleSystemSpeechLanguage language, bool isFinal);
    void updateCaptionTranslation(const QString &translation, const QString &text);
    /// Publishes a translation whose line has it already.
    void publish(const CaptionTranslation &translation);
    void followSaved(const CaptionTranslation &translation);
    /// Empties the session, of which the library may have a record that still waits for translations.
    void leaveLines();
    void restoreDraftIfAvailable();

    void captionLineInserted(qsizetype index) override;
    void captionLineChanged(qsizetype index) override;
    void captionLinesReset() override;
    void takeTranslation(const CaptionTranslation &translation);
    void takePassedOverTranslation(const QUuid &line, const CaptionTranslation &translation);
    void takeFailure(const QString &text, const QString &description);
    void takePassedOverFailure(const QString &text, const QString &description);

    LumaphoneSettings &m_settings;
    const LumaphoneTranscriptProcessor m_transcriptProcessor;
    const std::shared_ptr<CaptionTranslator> m_translator;
    const LivePipelineMaker m_makePipeline;
    const std::shared_ptr<Clock> m_clock;
    CaptionLineMerger m_merger;
    FloatingCaptionMirror m_mirror;
    SessionKeeper m_keeper;
    TranslationScheduler m_scheduler;
    ProviderChanges m_providerChanges;
    SessionStatus m_status;
    SessionCapture m_capture;

    AppleSystemSpeechLanguage m_sourceLanguage;
    LumaphoneAudioInputSource m_audioInputSource;
    std::optional<AppleSystemSpeechLanguage> m_detectedLanguage;
    qint64 m_sampleBufferCount = 0;
    QString m_lastSampleSummary;
    QString m_transcript;
    QString m_translatedText;
    bool m_isBehind = false;
};

} // namespace lumaphone
