#include "app/live/LiveSessionModel.h"

#include "app/live/LiveTexts.h"
#include "base/LocalizedError.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "session/SessionTexts.h"
#include "session/SessionTranscript.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"

#include <utility>

namespace lumaphone {

namespace {

/// The session as the library saves it.
LiveTranscript transcriptOf(
    const SystemAudioCaptureController &controller, const QList<LumaphoneGlossaryTerm> &terms)
{
    const LumaphoneSessionDraft session {
        .lines = controller.captionLines(),
        .sourceLanguage = controller.sourceLanguage(),
        .detectedLanguage = controller.detectedLanguage(),
        .startedAt = controller.sessionStartedAt(),
        .endedAt = controller.sessionEndedAt(),
        .updatedAt = {},
    };
    LiveTranscript transcript = liveTranscript(session, terms);
    transcript.savedTranscriptID = controller.savedTranscriptID();
    return transcript;
}

} // namespace

LiveSessionModel::LiveSessionModel(SystemAudioCaptureController &controller,
    const LumaphoneSettings &settings, TranscriptLibraryStore &library,
    const LumaphoneGlossaryStore &glossary, const LivePatience &patience, QObject *parent)
    : QObject(parent)
    , m_controller(controller)
    , m_settings(settings)
    , m_library(library)
    , m_glossary(glossary)
    , m_soundWatch(patience.withSilence)
    , m_lines(controller)
    , m_lineAnnouncements(controller, m_lines, patience.withTranslation)
    , m_savedFollower(controller, library)
{
    m_endPatience.setSingleShot(true);
    m_endPatience.setInterval(patience.withLastTranslations);
    connect(&m_endPatience, &QTimer::timeout, this, &LiveSessionModel::finishEnding);
    connect(&m_savedFollower, &SavedTranscriptFollower::failed, this, [this](const QString &message) {
        set(m_saveErrorMessage, message, &LiveSessionModel::saveErrorMessageChanged);
    });
    follow(controller);
    followSound(controller);
    for (const auto changed :
        {&CaptionLinesModel::hasPendingTranslationChanged, &CaptionLinesModel::failedCountChanged}) {
        connect(&m_lines, changed, this, &LiveSessionModel::cardStatusTextChanged);
    }
    connect(&m_lineAnnouncements, &LineAnnouncements::announced, this, &LiveSessionModel::announced);
    m_stateTurn.setSingleShot(true);
    m_stateTurn.setInterval(0);
    connect(&m_stateTurn, &QTimer::timeout, this, &LiveSessionModel::announceState);
    m_soundWatch.setRunning(controller.isRunning());
    updateJoinedTexts(0);
    update();
}

void LiveSessionModel::follow(const SystemAudioCaptureController &controller)
{
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::isRunningChanged, this, [this] {
        m_soundWatch.setRunning(m_controller.isRunning());
        m_soundMeter.rest();
        if (m_controller.isRunning()) {
            setFailureMessage({});
            set(m_saveErrorMessage, QString(), &LiveSessionModel::saveErrorMessageChanged);
        }
        update();
    });
    connect(&controller, &Controller::isStartingChanged, this, [this] {
        if (m_controller.isStarting()) {
            setFailureMessage({});
        }
        update();
    });
    connect(
        &controller, &Controller::sessionFailed, this, [this](const QString &message, SessionFailure reason) {
            // Lines that wait to be saved are no failure; the review bar asks for them.
            if (reason != SessionFailure::unsavedTranscript) {
                setFailureMessage(message);
            }
            update();
        });
    connect(&controller, &Controller::isBehindChanged, this, &LiveSessionModel::update);
    connect(&controller, &Controller::savedTranscriptIDChanged, this, &LiveSessionModel::update);
    connect(
        &controller, &Controller::savedTranscriptTitleChanged, this, &LiveSessionModel::savedTitleChanged);
    connect(&controller, &Controller::restoredDraftMessageChanged, this, [this] {
        update();
        emit restoredDraftMessageChanged();
    });
    connect(&controller, &Controller::statusChanged, this, &LiveSessionModel::statusChanged);
    connect(&controller, &Controller::captionLinesChanged, this, &LiveSessionModel::update);
    connect(&controller, &Controller::translationStatesChanged, this, &LiveSessionModel::updateStage);
    connect(&controller, &Controller::detectedLanguageChanged, this, &LiveSessionModel::updateStage);
    connect(&controller, &Controller::sourceLanguageChanged, this, [this] {
        updateStage();
        emit sourceLanguageChanged();
    });
    connect(&controller, &Controller::audioInputSourceChanged, this, [this] {
        updateStage();
        emit audioInputSourceChanged();
    });
    connect(&controller, &Controller::lineInserted, this, &LiveSessionModel::updateJoinedTexts);
    connect(&controller, &Controller::lineChanged, this, &LiveSessionModel::updateJoinedTexts);
    connect(&controller, &Controller::linesReset, this, [this] { updateJoinedTexts(0); });
}

void LiveSessionModel::followSound(const SystemAudioCaptureController &controller)
{
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::soundArrived, &m_soundWatch, &SoundWatch::soundArrived);
    connect(&controller, &Controller::soundMeasured, &m_soundMeter, &SoundMeter::note);
    connect(&m_soundMeter, &SoundMeter::levelChanged, this, &LiveSessionModel::soundLevelChanged);
    connect(&m_soundWatch, &SoundWatch::isWithoutSoundChanged, this, &LiveSessionModel::update);
}

template<typename Value>
void LiveSessionModel::set(Value &member, const Value &value, void (LiveSessionModel::*changed)())
{
    if (member != value) {
        member = value;
        emit(this->*changed)();
    }
}

void LiveSessionModel::update()
{
    const SessionFacts facts {
        .isStarting = m_controller.isStarting(),
        .isRunning = m_controller.isRunning(),
        .hasLines = !m_controller.captionLines().isEmpty(),
        .isSaved = m_controller.savedTranscriptID().has_value(),
        .isRestored = m_controller.restoredDraftMessage().has_value(),
        .isWithoutSound = m_soundWatch.isWithoutSound(),
        .isBehind = m_controller.isBehind(),
        .hasFailed = !m_failureMessage.isEmpty(),
    };
    if (m_facts != facts) {
        m_stateTurn.start();
    }
    set(m_facts, facts, &LiveSessionModel::factsChanged);
    updateStage();
}

void LiveSessionModel::announceState()
{
    const QString state = livetexts::announcedState(m_facts, m_failureMessage);
    if (std::exchange(m_announcedState, state) != state && !state.isEmpty()) {
        emit announced(state);
    }
}

void LiveSessionModel::updateStage()
{
    const auto &lines = m_controller.captionLines();
    const LumaphoneCaptionLine *newest = lines.isEmpty() ? nullptr : &lines.constLast();
    set(m_sourceText, livetexts::sourceText(newest, m_facts, m_controller.audioInputSource()),
        &LiveSessionModel::sourceTextChanged);
    const auto translation = newest ? m_controller.translationOf(*newest).state : TranslationState::unwanted;
    set(m_translationText, livetexts::translationText(newest, translation, m_facts),
        &LiveSessionModel::translationTextChanged);
    set(m_stageLanguage, newest ? rawValue(newest->sourceLanguage) : QString(),
        &LiveSessionModel::stageLanguageChanged);
    set(m_isStageFinal, newest && newest->isFinal, &LiveSessionModel::isStageFinalChanged);
    set(m_isStageTranslated, translation == TranslationState::arrived,
        &LiveSessionModel::isStageTranslatedChanged);
    set(m_languageStatusText,
        livetexts::languageStatusText(m_controller.sourceLanguage(), m_controller.detectedLanguage()),
        &LiveSessionModel::languageStatusTextChanged);
}

void LiveSessionModel::updateJoinedTexts(qsizetype first)
{
    const auto &lines = m_controller.captionLines();
    m_joinedSource.follow(lines, first);
    m_joinedTranslation.follow(lines, first);
}

void LiveSessionModel::setFailureMessage(const QString &message)
{
    set(m_failureMessage, message, &LiveSessionModel::failureMessageChanged);
}

QString LiveSessionModel::startStopText() const
{
    return livetexts::startStopText(m_facts);
}

QString LiveSessionModel::startStopSymbol() const
{
    return livetexts::startStopSymbol(m_facts);
}

QString LiveSessionModel::saveHelp() const
{
    return livetexts::saveHelp(m_facts);
}

QString LiveSessionModel::newCaptionsHelp() const
{
    return livetexts::newCaptionsHelp(m_facts);
}

QString LiveSessionModel::withoutSoundText() const
{
    return livetexts::withoutSoundText(m_controller.audioInputSource());
}

QString LiveSessionModel::stageStateText() const
{
    return livetexts::stageStateText(m_facts);
}

QString LiveSessionModel::behindText() const
{
    return texts::fellBehind();
}

QString LiveSessionModel::cardStatusText() const
{
    return livetexts::cardStatusText(m_lines.hasPendingTranslation(), m_lines.failedCount());
}

void LiveSessionModel::startOrStop()
{
    if (m_controller.isRunning() || m_controller.isStarting()) {
        m_controller.stop(true);
    } else {
        m_controller.start();
    }
}

void LiveSessionModel::endSession()
{
    if (m_controller.isRunning() || m_controller.isStarting()) {
        m_controller.stop(true);
    }
    if (!m_controller.isTranslating()) {
        finishEnding();
        return;
    }
    connect(&m_controller, &SystemAudioCaptureController::translationsSettled, this,
        &LiveSessionModel::finishEnding, Qt::UniqueConnection);
    m_endPatience.start();
}

void LiveSessionModel::finishEnding()
{
    m_endPatience.stop();
    m_savedFollower.write();
    emit ended();
}

void LiveSessionModel::saveTranscript()
{
    if (!canSave()) {
        return;
    }
    QString failure;
    try {
        const TranscriptRecordMetadata record
            = m_library.save(transcriptOf(m_controller, m_glossary.enabledTerms()), m_settings);
        m_controller.markTranscriptSaved(record.id, record.title);
        // The library has it now: a draft that stayed would be offered as unsaved at the next start.
        m_controller.saveDraftIfNeeded();
        setFailureMessage({});
        update();
        emit announced(livetexts::announcedSaving(record.title));
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
        emit announced(failure);
    }
    set(m_saveErrorMessage, failure, &LiveSessionModel::saveErrorMessageChanged);
}

void LiveSessionModel::clearCaptions()
{
    setFailureMessage({});
    set(m_saveErrorMessage, QString(), &LiveSessionModel::saveErrorMessageChanged);
    m_controller.clearCaptions();
    update();
}

void LiveSessionModel::startNew()
{
    clearCaptions();
    m_controller.start();
}

void LiveSessionModel::translateAgain()
{
    m_controller.translateAgain();
}

void LiveSessionModel::translateLineAgain(int row)
{
    const auto &lines = m_controller.captionLines();
    if (row >= 0 && row < lines.size()) {
        m_controller.translateAgain(lines[row].id);
    }
}

void LiveSessionModel::setSourceLanguage(const QString &language)
{
    if (const auto known = speechLanguageFromRawValue(language)) {
        m_controller.setSourceLanguage(*known);
    }
}

void LiveSessionModel::requestSystemAudioAccessIfNeeded()
{
    m_controller.requestSystemAudioAccessIfNeeded();
}

} // namespace lumaphone
