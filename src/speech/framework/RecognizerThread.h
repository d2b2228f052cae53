#pragma once

#include "speech/framework/LocalSpeechModule.h"
#include "speech/framework/SampleQueue.h"
#include "speech/framework/SpeechEngine.h"

#include <thread>

namespace lumaphone {

/// Runs one recogniser on a thread of its own and ends its modules' results with it. Whatever the recogniser
/// throws becomes the error of those results and goes no further.
class RecognizerThread
{
public:
    using Modules = std::vector<std::shared_ptr<LocalSpeechModule>>;

    /// `capacity`: how many samples may wait for the recogniser.
    RecognizerThread(std::shared_ptr<StreamingRecognizer> recognizer, Modules modules, std::size_t capacity);
    /// Cancels, and waits for the recogniser to notice.
    ~RecognizerThread();
    RecognizerThread(const RecognizerThread &) = delete;
    RecognizerThread &operator=(const RecognizerThread &) = delete;

    /// "speech-" and the first locale.
    std::string name() const;

    // Any thread.
    /// Loads the recogniser, once, and not after cancel(). Throws SpeechFrameworkError.
    void load();
    /// Ends the results at once, without a last final text.
    void cancel();
    /// Samples that wait for the recogniser.
    std::size_t waitingSamples() const { return m_queue.pendingSamples(); }
    /// Returns when nobody is in load().
    void waitUntilLoadingEnds();

    // The thread that feeds.
    /// Starts recognising. Throws std::system_error if there is no thread to be had.
    void start();
    /// Waits for room. After the recogniser has ended, samples are dropped.
    void append(std::span<const std::int16_t> samples, const std::stop_token &stop);
    void finishInput();
    /// Waits until the recogniser has given its last result, or `stop` is requested.
    void waitUntilDone(const std::stop_token &stop);

private:
    void run();
    void recognize();
    void markDone();
    bool isCancelled() const;

    const std::shared_ptr<StreamingRecognizer> m_recognizer;
    const Modules m_modules;
    SampleQueue m_queue;

    std::mutex m_loadMutex;
    bool m_isLoaded = false;

    mutable std::mutex m_stateMutex;
    std::condition_variable_any m_stateChanged;
    bool m_isCancelled = false;
    bool m_isDone = false;
    std::thread m_thread;
};

} // namespace lumaphone
