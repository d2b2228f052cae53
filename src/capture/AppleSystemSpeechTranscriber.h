#pragma once

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/AppleSystemSpeechTranscriberDelegate.h"
#include "capture/SpeechPreparation.h"
#include "capture/TranscriberInput.h"
#include "capture/TranscriptionTasks.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "platform/AudioSampleBuffer.h"
#include "platform/SpeechFramework.h"

#include <QCoroTask>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
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
    AppleSystemSpeechTranscriber(std::shared_ptr<SpeechFramework> framework,
        std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<DetachedTasks> detachedTasks);

    void run(const PreparedSpeech &speech);
    void endSession();

    std::weak_ptr<AppleSystemSpeechTranscriberDelegate> m_delegate;
    SpeechPreparation m_preparation;
    TranscriptionTasks m_tasks;
    TranscriberInput m_input; ///< shared with the capture queue
};

} // namespace lumaphone
