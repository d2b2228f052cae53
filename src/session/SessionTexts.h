#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "storage/LumaphoneAudioInputSource.h"
#include "storage/LumaphoneProcessingMode.h"

#include <QString>

#include <optional>

/// What a live session says to the user.
namespace lumaphone::texts {

QString sourceName(LumaphoneAudioInputSource source);
/// What the user should do so that something is heard.
QString sourceHint(LumaphoneAudioInputSource source);

// Before the first session.
QString initialStatus();
QString translationHint();
QString sampleHint(LumaphoneAudioInputSource source);

// On the way to a session.
QString requestingAccess(LumaphoneAudioInputSource source);
QString accessGranted(LumaphoneAudioInputSource source);
QString accessNotGranted(LumaphoneAudioInputSource source);
QString preparing(LumaphoneAudioInputSource source);
QString startStatus(LumaphoneAudioInputSource source, LumaphoneProcessingMode mode);
QString awaitingSpeech(LumaphoneAudioInputSource source);
QString panelStarted(LumaphoneAudioInputSource source);
QString panelStartedDetail(LumaphoneAudioInputSource source, AppleSystemSpeechLanguage language);

// Why there is no session.
QString unsavedTranscript();
QString panelUnsavedTranscript();
QString providerNotReady();
QString panelProvider(LumaphoneProcessingMode mode);
QString panelStartFailed();
QString panelPipelineFailed();
/// The message for an error's description.
QString systemAudioErrorMessage(const QString &description, LumaphoneAudioInputSource source);

// While it runs.
QString samplesReceived(qint64 count, LumaphoneAudioInputSource source);
QString recognized(bool isFinal);
/// The same where nothing is translated.
QString recognizedOnly(bool isFinal);
/// Recognition is slower than the sound, and no more.
QString fellBehind();
QString caughtUp();
QString outputAwaited(const QString &output);
QString outputReturned();
QString translated(AppleSystemSpeechLanguage language, const QString &provider);
QString translationFailed(const QString &provider, const QString &description);
QString translationFailedStatus(const QString &provider, const QString &description);
QString panelTranslationFailed(const QString &provider);
QString translationPaused();

// The test of sound.
QString noOutput();

// Afterwards.
QString stoppedAndSaved(const std::optional<QString> &title);
QString stoppedWithLines();
QString stoppedWithoutLines();
QString cleared(bool isRunning);
QString saved(const QString &title);
QString draftRestored();
QString draftRestoredStatus();

} // namespace lumaphone::texts
