#pragma once

#include "app/live/CaptionLinesModel.h"
#include "app/live/JoinedText.h"
#include "app/live/LineAnnouncements.h"
#include "app/live/SessionPhase.h"
#include "app/live/SoundMeter.h"
#include "app/live/SoundWatch.h"
#include "app/live/TranscriptModel.h"
#include "session/SavedTranscriptFollower.h"
#include "session/SystemAudioCaptureController.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

namespace lumaphone {

class LumaphoneGlossaryStore;
class LumaphoneSettings;
class TranscriptLibraryStore;

/// How long the live views wait for what may not come.
struct LivePatience
{
    std::chrono::milliseconds withSilence = SoundWatch::defaultPatience;
    /// At the end of the program.
    std::chrono::milliseconds withLastTranslations = std::chrono::seconds(2);
    /// While lines behind it wait to be read aloud.
    std::chrono::milliseconds withTranslation = LineAnnouncements::defaultPatience;
};

/// The live session as the command bar and the live workspace show it: every text, state and permission,
/// derived from the controller, and the actions of the user. Main thread.
class LiveSessionModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    // The session.
    Q_PROPERTY(bool isStarting READ isStarting NOTIFY factsChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY factsChanged)
    Q_PROPERTY(bool hasUnsavedTranscript READ hasUnsavedTranscript NOTIFY factsChanged)
    Q_PROPERTY(bool isSaved READ isSaved NOTIFY factsChanged)
    Q_PROPERTY(bool isReviewing READ isReviewing NOTIFY factsChanged)
    Q_PROPERTY(bool isWithoutSound READ isWithoutSound NOTIFY factsChanged)
    Q_PROPERTY(bool isBehind READ isBehind NOTIFY factsChanged)
    Q_PROPERTY(bool hasFailed READ hasFailed NOTIFY factsChanged)
    Q_PROPERTY(QString failureMessage READ failureMessage NOTIFY failureMessageChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString restoredDraftMessage READ restoredDraftMessage NOTIFY restoredDraftMessageChanged)
    Q_PROPERTY(QString savedTitle READ savedTitle NOTIFY savedTitleChanged)
    Q_PROPERTY(QString saveErrorMessage READ saveErrorMessage NOTIFY saveErrorMessageChanged)
    // The command bar.
    Q_PROPERTY(QString startStopText READ startStopText NOTIFY factsChanged)
    Q_PROPERTY(QString startStopSymbol READ startStopSymbol NOTIFY factsChanged)
    Q_PROPERTY(QString saveHelp READ saveHelp NOTIFY factsChanged)
    Q_PROPERTY(bool canSave READ canSave NOTIFY factsChanged)
    Q_PROPERTY(QString newCaptionsHelp READ newCaptionsHelp NOTIFY factsChanged)
    Q_PROPERTY(bool canStartNew READ canStartNew NOTIFY factsChanged)
    Q_PROPERTY(bool canClear READ canClear NOTIFY factsChanged)
    // The source.
    Q_PROPERTY(QString sourceLanguage READ sourceLanguage NOTIFY sourceLanguageChanged)
    Q_PROPERTY(QString audioInputSource READ audioInputSource NOTIFY audioInputSourceChanged)
    Q_PROPERTY(QString audioSourceTitle READ audioSourceTitle NOTIFY audioInputSourceChanged)
    Q_PROPERTY(QString audioSourceSymbol READ audioSourceSymbol NOTIFY audioInputSourceChanged)
    Q_PROPERTY(QString withoutSoundText READ withoutSoundText NOTIFY audioInputSourceChanged)
    Q_PROPERTY(int soundLevel READ soundLevel NOTIFY soundLevelChanged)
    // The stage.
    Q_PROPERTY(QString sourceText READ sourceText NOTIFY sourceTextChanged)
    Q_PROPERTY(QString translationText READ translationText NOTIFY translationTextChanged)
    Q_PROPERTY(QString stageLanguage READ stageLanguage NOTIFY stageLanguageChanged)
    Q_PROPERTY(bool isStageFinal READ isStageFinal NOTIFY isStageFinalChanged)
    Q_PROPERTY(bool isStageTranslated READ isStageTranslated NOTIFY isStageTranslatedChanged)
    Q_PROPERTY(QString languageStatusText READ languageStatusText NOTIFY languageStatusTextChanged)
    Q_PROPERTY(QString stageStateText READ stageStateText NOTIFY factsChanged)
    Q_PROPERTY(QString behindText READ behindText CONSTANT)
    // The card.
    Q_PROPERTY(lumaphone::CaptionLinesModel *lines READ lines CONSTANT)
    Q_PROPERTY(lumaphone::TranscriptModel *transcript READ transcript CONSTANT)
    Q_PROPERTY(QString cardStatusText READ cardStatusText NOTIFY cardStatusTextChanged)
    Q_PROPERTY(lumaphone::JoinedText *joinedSourceText READ joinedSourceText CONSTANT)
    Q_PROPERTY(lumaphone::JoinedText *joinedTranslatedText READ joinedTranslatedText CONSTANT)

public:
    /// Everything given must outlive the model.
    LiveSessionModel(SystemAudioCaptureController &controller, const LumaphoneSettings &settings,
        TranscriptLibraryStore &library, const LumaphoneGlossaryStore &glossary,
        const LivePatience &patience = {}, QObject *parent = nullptr);

    bool isStarting() const { return m_facts.isStarting; }
    bool isRunning() const { return m_facts.isRunning; }
    bool hasLines() const { return m_facts.hasLines; }
    bool hasUnsavedTranscript() const { return lumaphone::hasUnsavedTranscript(m_facts); }
    bool isSaved() const { return m_facts.isSaved; }
    bool isReviewing() const { return lumaphone::isReviewing(m_facts); }
    bool isWithoutSound() const { return m_facts.isWithoutSound; }
    bool isBehind() const { return m_facts.isBehind; }
    bool hasFailed() const { return m_facts.hasFailed; }
    const QString &failureMessage() const { return m_failureMessage; }
    const QString &status() const { return m_controller.status(); }
    QString restoredDraftMessage() const { return m_controller.restoredDraftMessage().value_or(QString()); }
    QString savedTitle() const { return m_controller.savedTranscriptTitle().value_or(QString()); }
    /// Why the last save failed; empty when it did not.
    const QString &saveErrorMessage() const { return m_saveErrorMessage; }

    QString startStopText() const;
    QString startStopSymbol() const;
    QString saveHelp() const;
    bool canSave() const { return isReviewing(); }
    QString newCaptionsHelp() const;
    bool canStartNew() const { return isReviewing(); }
    bool canClear() const { return hasLines(); }

    QString sourceLanguage() const { return rawValue(m_controller.sourceLanguage()); }
    QString audioInputSource() const { return rawValue(m_controller.audioInputSource()); }
    QString audioSourceTitle() const { return title(m_controller.audioInputSource()); }
    QString audioSourceSymbol() const { return symbolName(m_controller.audioInputSource()); }
    QString withoutSoundText() const;
    /// How loud it is, up to SoundMeter::steps.
    int soundLevel() const { return m_soundMeter.level(); }

    const QString &sourceText() const { return m_sourceText; }
    const QString &translationText() const { return m_translationText; }
    /// The raw value of the language of `sourceText`; empty for what the program itself says.
    const QString &stageLanguage() const { return m_stageLanguage; }
    bool isStageFinal() const { return m_isStageFinal; }
    /// Whether `translationText` is a translation and not a remark of the program.
    bool isStageTranslated() const { return m_isStageTranslated; }
    const QString &languageStatusText() const { return m_languageStatusText; }
    QString stageStateText() const;
    QString behindText() const;

    CaptionLinesModel *lines() { return &m_lines; }
    /// The same lines with what their reader marks in them.
    TranscriptModel *transcript() { return &m_transcript; }
    QString cardStatusText() const;
    JoinedText *joinedSourceText() { return &m_joinedSource; }
    JoinedText *joinedTranslatedText() { return &m_joinedTranslation; }

    /// Starts a session, or ends the one that runs or starts. Unsaved lines are not lost: the controller
    /// refuses then.
    Q_INVOKABLE void startOrStop();
    /// Ends a session that runs or starts; its draft stays. `ended` follows when the last translations have
    /// come, or after a moment.
    Q_INVOKABLE void endSession();
    /// Saves the lines into the library, again if they were saved before. A failure is `saveErrorMessage`.
    Q_INVOKABLE void saveTranscript();
    Q_INVOKABLE void clearCaptions();
    /// Drops the lines, saved or not, and starts the next session.
    Q_INVOKABLE void startNew();
    /// Tries what has no translation once more: every line, or the one in a row of `lines`.
    Q_INVOKABLE void translateAgain();
    Q_INVOKABLE void translateLineAgain(int row);
    Q_INVOKABLE void setSourceLanguage(const QString &language);
    Q_INVOKABLE void requestSystemAudioAccessIfNeeded();

signals:
    void ended();
    void factsChanged();
    void failureMessageChanged();
    void statusChanged();
    void restoredDraftMessageChanged();
    void savedTitleChanged();
    void saveErrorMessageChanged();
    void sourceLanguageChanged();
    void audioInputSourceChanged();
    void soundLevelChanged();
    void sourceTextChanged();
    void translationTextChanged();
    void stageLanguageChanged();
    void isStageFinalChanged();
    void isStageTranslatedChanged();
    void languageStatusTextChanged();
    void cardStatusTextChanged();
    /// Worth telling someone who listens instead of reading: a finished line, and how the session goes on.
    /// Each comes once, in order.
    void announced(const QString &text);

private:
    template<typename Value> void set(Value &member, const Value &value, void (LiveSessionModel::*changed)());
    void follow(const SystemAudioCaptureController &controller);
    void followSound(const SystemAudioCaptureController &controller);
    void update();
    void updateStage();
    /// The lines from `first` on have changed.
    void updateJoinedTexts(qsizetype first);
    void setFailureMessage(const QString &message);
    void finishEnding();
    void announceState();

    SystemAudioCaptureController &m_controller;
    const LumaphoneSettings &m_settings;
    TranscriptLibraryStore &m_library;
    const LumaphoneGlossaryStore &m_glossary;
    SoundWatch m_soundWatch;
    SoundMeter m_soundMeter;
    CaptionLinesModel m_lines;
    JoinedText m_joinedSource {&LumaphoneCaptionLine::sourceText};
    JoinedText m_joinedTranslation {&LumaphoneCaptionLine::translatedText};
    TranscriptModel m_transcript {m_lines};
    LineAnnouncements m_lineAnnouncements;
    SavedTranscriptFollower m_savedFollower;
    QTimer m_endPatience; ///< with the last translations
    QTimer m_stateTurn; ///< once for all that changes in one turn
    QString m_announcedState;
    SessionFacts m_facts;
    QString m_failureMessage;
    QString m_saveErrorMessage;
    QString m_sourceText;
    QString m_translationText;
    QString m_stageLanguage;
    QString m_languageStatusText;
    bool m_isStageFinal = false;
    bool m_isStageTranslated = false;
};

} // namespace lumaphone
