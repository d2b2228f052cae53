#pragma once

#include "app/live/SessionPhase.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "session/LumaphoneCaptionLine.h"
#include "storage/LumaphoneAudioInputSource.h"

#include <QList>
#include <QString>

#include <optional>

/// What the live views say, derived from the session's state.
namespace lumaphone::livetexts {

// The stage. `line` is the newest line, or null.
QString sourceText(
    const LumaphoneCaptionLine *line, const SessionFacts &facts, LumaphoneAudioInputSource source);
QString translationText(const LumaphoneCaptionLine *line, const SessionFacts &facts);
QString languageStatusText(
    AppleSystemSpeechLanguage chosen, const std::optional<AppleSystemSpeechLanguage> &detected);
QString stageStateText(const SessionFacts &facts);
/// What to check when nothing is heard.
QString withoutSoundText(LumaphoneAudioInputSource source);

// The card with everything heard.
QString joinedSourceText(const QList<LumaphoneCaptionLine> &lines);
QString joinedTranslatedText(const QList<LumaphoneCaptionLine> &lines);
bool hasPendingTranslation(const QList<LumaphoneCaptionLine> &lines);
QString cardStatusText(bool hasPendingTranslation);

// The command bar.
QString startStopText(const SessionFacts &facts);
QString startStopSymbol(const SessionFacts &facts);
QString saveHelp(const SessionFacts &facts);
QString newCaptionsHelp(const SessionFacts &facts);

} // namespace lumaphone::livetexts
