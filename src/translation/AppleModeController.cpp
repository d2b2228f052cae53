#include "translation/AppleModeController.h"

#include "language/SpokenLanguage.h"

#include <QTimeZone>

namespace lumaphone {

namespace {

std::shared_ptr<SpeechModule> englishRecognizer(SpeechFramework &framework)
{
    try {
        return framework.makeTranscriber(
            localeIdentifier(SpokenLanguage::english), SpeechModuleOptions {true, true});
    } catch (const SpeechFrameworkError &) {
        return nullptr;
    }
}

} // namespace

AppleModeController::AppleModeController(MicrophoneCapture &microphoneCapture,
    SpeechFramework &speechFramework, TranslationFramework &translationFramework, QObject *parent)
    : QObject(parent)
    , m_status(QStringLiteral("Apple Mode 尚未開始"))
    , m_translatedText(QStringLiteral("開始 Apple Mode 後，台灣繁中翻譯會顯示在這裡。"))
    , m_audioEngine(microphoneCapture.makeRecorder())
    , m_speechRecognizer(englishRecognizer(speechFramework))
    , m_translationBurstStartedAt(distantPast())
    , m_translator(translationFramework)
{
}

QDateTime AppleModeController::distantPast()
{
    return QDateTime(QDate(1, 1, 1), QTime(0, 0), QTimeZone::utc());
}

void AppleModeController::setIsRunning(bool isRunning)
{
    if (m_isRunning != isRunning) {
        m_isRunning = isRunning;
        emit isRunningChanged();
    }
}

void AppleModeController::setStatus(const QString &status)
{
    if (m_status != status) {
        m_status = status;
        emit statusChanged();
    }
}

void AppleModeController::setTranscript(const QString &transcript)
{
    if (m_transcript != transcript) {
        m_transcript = transcript;
        emit transcriptChanged();
    }
}

void AppleModeController::setTranslatedText(const QString &translatedText)
{
    if (m_translatedText != translatedText) {
        m_translatedText = translatedText;
        emit translatedTextChanged();
    }
}

} // namespace lumaphone
