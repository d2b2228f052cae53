#pragma once

#include "app/live/SessionPhase.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "session/LumaphoneCaptionLine.h"
#include "session/TranslationState.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QList>
#include <QString>

#include <optional>

/// What the live views say, derived from the session's state.
namespace lumaphone::livetexts {

// The stage. `line` is the newest line, or null, and `translation` how far its translation is.
QString sourceText(
    const LumaphoneCaptionLine *line, const SessionFacts &facts, LumaphoneAudioInputSource source);
QString translationText(
    const LumaphoneCaptionLine *line, TranslationState translation, const SessionFacts &facts);
/// In the place of a translation that failed.
QString untranslated();
QString languageStatusText(
    AppleSystemSpeechLanguage chosen, const std::optional<AppleSystemSpeechLanguage> &detected);
QString stageStateText(const SessionFacts &facts);
/// What to check when nothing is heard.
QString withoutSoundText(LumaphoneAudioInputSource source);
/// What to do so that a test of sound has something to hear, and that it has heard it.
QString soundWanted(LumaphoneAudioInputSource source);
QString soundHeard();

// For those who listen instead of reading; empty where nothing is to be told.
QString announcedState(const SessionFacts &facts, const QString &failure);
QString announcedSaving(const QString &title);

// The card with everything heard.
bool hasPendingTranslation(const QList<LumaphoneCaptionLine> &lines);
/// `failed`: how many lines remain without a translation.
QString cardStatusText(bool hasPendingTranslation, int failed);

// The command bar.
QString startStopText(const SessionFacts &facts);
QString startStopSymbol(const SessionFacts &facts);
QString saveHelp(const SessionFacts &facts);
QString newCaptionsHelp(const SessionFacts &facts);

} // namespace lumaphone::livetexts
