#pragma once

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/AnalysisEnd.h"
#include "capture/AppleSystemSpeechTranscriberDelegate.h"
#include "capture/AppleSystemSpeechTranscriberEntry.h"
#include "capture/AudioConverter.h"
#include "capture/PcmBufferPool.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/AudioSampleBuffer.h"
#include "platform/SpeechFramework.h"

#include <QCoroTask>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

namespace lumaphone {

/// Turns a live stream of sound into texts with the on-device speech framework: one analyzer, one module per
/// language. setDelegate(), start() and stop() belong to the main thread; the sound comes in on one capture
/// queue; results go to the delegate from one background task per language.
class AppleSystemSpeechTranscriber : public std::enable_shared_from_this<AppleSystemSpeechTranscriber>
{
public:
    /// Inputs that may wait for the analyzer; for a newer one the oldest is dropped.
    static constexpr std::size_t pendingInputs = 32;

    static std::shared_ptr<AppleSystemSpeechTranscriber> create(std::shared_ptr<SpeechFramework> framework,
        std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks);
    /// Ends the session as stop() does. May happen on one of the transcriber's own tasks.
    ~AppleSystemSpeechTranscriber();
    AppleSystemSpeechTranscriber(const AppleSystemSpeechTranscriber &) = delete;
    AppleSystemSpeechTranscriber &operator=(const AppleSystemSpeechTranscriber &) = delete;

    /// Set before start(), and not changed while running.
    void setDelegate(std::weak_ptr<AppleSystemSpeechTranscriberDelegate> delegate);

    /// Returns when the analyzer runs and results are being read; a running session is ended first. Several
    /// languages are tried together, then one by one in their order. Throws
    /// AppleSystemSpeechTranscriberError. A stop() or another start() meanwhile ends this one without an
    /// error.
    QCoro::Task<> start(std::vector<AppleSystemSpeechLanguage> languages);
    /// Ends the session, or what a start() loads for it, at once; the recogniser and its reservations are let
    /// go behind the call. Idempotent.
    void stop();

    /// Capture queue: converts one buffer and hands it to the analyzer. Never waits; drops what it cannot
    /// convert and what comes while nothing runs.
    void append(const AudioSampleBuffer &sample);

    /// Capture queue: how much of the sound is not recognised yet.
    std::chrono::milliseconds waitingSound();

    /// Capture queue, for a source that can wait, such as a file: returns when append() would drop nothing.
    /// False when nothing runs any more, or after `stop` is requested.
    bool waitForRoom(const std::stop_token &stop);
    /// Capture queue, after waitForRoom(): the sound is complete. The last texts follow, and then `ended` is
    /// called once on a background task. It is not called after a failure or a stop().
    void finishInput(std::function<void()> ended);

private:
    using Entry = AppleSystemSpeechTranscriberEntry;
    enum class LanguageFallback { notAllowed, allowed };
    struct Superseded;
    struct PreparedSession
    {
        std::vector<Entry> entries;
        std::shared_ptr<SpeechAnalyzer> analyzer;
    };

    AppleSystemSpeechTranscriber(std::shared_ptr<SpeechFramework> framework,
        std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks);

    QCoro::Task<bool> requestAuthorization();
    QCoro::Task<PreparedSession> prepareTranscribers(
        std::vector<AppleSystemSpeechLanguage> languages, int attempt);
    QCoro::Task<std::optional<PreparedSession>> tryToPrepare(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<PreparedSession> prepare(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<std::vector<Entry>> makeTranscriberEntries(
        std::vector<AppleSystemSpeechLanguage> languages, LanguageFallback fallback, int attempt);
    QCoro::Task<> reserve(QString locale, int attempt);
    QCoro::Task<std::shared_ptr<SpeechAnalyzer>> prepareAnalyzer(std::vector<Entry> entries, int attempt);
    void throwIfSuperseded(int attempt) const;

    void run(PreparedSession session);
    void startAnalyzeTask(std::shared_ptr<AnalyzerInputStream> input);
    void startResultTask(const Entry &entry);
    void endSession();
    void endPreparation();
    void endTasks();
    void releaseReservations(std::vector<QString> locales);

    std::shared_ptr<PcmBuffer> pcmBuffer(const AudioSampleBuffer &sample);
    AudioConverter *audioConverter(const AudioStreamDescription &source);
    std::shared_ptr<PcmBuffer> remainingSound();
    void resetReusablePCMBuffers();

    const std::shared_ptr<SpeechFramework> m_framework;
    const std::shared_ptr<MainQueue> m_mainQueue;
    const std::shared_ptr<DetachedTasks> m_detachedTasks;

    // Main thread.
    std::weak_ptr<AppleSystemSpeechTranscriberDelegate> m_delegate;
    std::shared_ptr<SpeechAnalyzer> m_preparedAnalyzer; ///< while it loads
    std::shared_ptr<SpeechAnalyzer> m_analyzer;
    std::vector<std::shared_ptr<SpeechModule>> m_transcribers;
    std::jthread m_analyzeTask;
    std::vector<std::jthread> m_resultTasks;
    std::vector<QString> m_reservedLocales;
    int m_attempt = 0; ///< counts start() and stop(): a start that is not the latest one ends quietly

    // Shared with the capture queue.
    std::mutex m_conversionLock;
    std::shared_ptr<AnalyzerInputStream> m_inputContinuation;
    std::shared_ptr<const SpeechAnalyzer> m_listeningAnalyzer;
    std::shared_ptr<AnalysisEnd> m_analysisEnd;
    std::unique_ptr<AudioConverter> m_audioBufferConverter;
    std::optional<AudioStreamDescription> m_audioBufferConverterSourceFormat;
    PcmBufferPool m_reusablePCMBuffers;
};

} // namespace lumaphone
