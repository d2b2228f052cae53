#pragma once

#include "platform/MicrophoneCapture.h"
#include "platform/SpeechFramework.h"
#include "platform/TranslationFramework.h"
#include "translation/LumaphoneAppleTranslationService.h"

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace lumaphone {

/// The state of a simpler mode of its own: English speech from the microphone, translated on the device.
/// Nothing starts or stops it yet; its texts keep their first values unless the owner writes them.
/// Main thread.
class AppleModeController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning WRITE setIsRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(QString transcript READ transcript WRITE setTranscript NOTIFY transcriptChanged)
    Q_PROPERTY(
        QString translatedText READ translatedText WRITE setTranslatedText NOTIFY translatedTextChanged)

public:
    /// The services outlive the controller.
    AppleModeController(MicrophoneCapture &microphoneCapture, SpeechFramework &speechFramework,
        TranslationFramework &translationFramework, QObject *parent = nullptr);

    bool isRunning() const { return m_isRunning; }
    void setIsRunning(bool isRunning);
    const QString &status() const { return m_status; }
    void setStatus(const QString &status);
    const QString &transcript() const { return m_transcript; }
    void setTranscript(const QString &transcript);
    const QString &translatedText() const { return m_translatedText; }
    void setTranslatedText(const QString &translatedText);

    /// A recorder of its own, which records nothing.
    const SoundRecorder &audioEngine() const { return *m_audioEngine; }
    /// For English; null when the platform refuses that locale.
    const std::shared_ptr<SpeechModule> &speechRecognizer() const { return m_speechRecognizer; }
    /// The stream of buffers that a running recognition reads, or null.
    const std::shared_ptr<AnalyzerInputStream> &recognitionRequest() const { return m_recognitionRequest; }
    /// The running recognition, or null.
    const std::shared_ptr<SpeechAnalyzer> &recognitionTask() const { return m_recognitionTask; }
    bool hasTranslationWorkerTask() const { return m_translationWorkerTask.has_value(); }
    const std::optional<QString> &latestTranslationSourceText() const
    {
        return m_latestTranslationSourceText;
    }
    /// The distant past means that no burst has begun.
    const QDateTime &translationBurstStartedAt() const { return m_translationBurstStartedAt; }
    const QString &lastTranslationSource() const { return m_lastTranslationSource; }
    /// Shares no cache with any other.
    LumaphoneAppleTranslationService &translator() { return m_translator; }

    static QDateTime distantPast();

signals:
    void isRunningChanged();
    void statusChanged();
    void transcriptChanged();
    void translatedTextChanged();

private:
    bool m_isRunning = false;
    QString m_status;
    QString m_transcript;
    QString m_translatedText;
    std::unique_ptr<SoundRecorder> m_audioEngine;
    std::shared_ptr<SpeechModule> m_speechRecognizer;
    std::shared_ptr<AnalyzerInputStream> m_recognitionRequest;
    std::shared_ptr<SpeechAnalyzer> m_recognitionTask;
    std::optional<QCoro::Task<>> m_translationWorkerTask;
    std::optional<QString> m_latestTranslationSourceText;
    QDateTime m_translationBurstStartedAt;
    QString m_lastTranslationSource;
    LumaphoneAppleTranslationService m_translator;
};

} // namespace lumaphone
