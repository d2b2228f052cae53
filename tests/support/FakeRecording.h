#pragma once

#include "platform/SoundRecorder.h"
#include "support/CoroutineGate.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace lumaphone::test {

/// What the recorders of a fake service record, with sound that the test plays. Outlives them. Main thread.
class FakeRecording : public std::enable_shared_from_this<FakeRecording>
{
public:
    std::optional<QString> startFailure;
    CoroutineGate startGate; ///< every start passes it
    QStringList steps; ///< such as "start speakers", "stop"; a stop of what does not run is no step

    std::unique_ptr<SoundRecorder> makeRecorder();

    int recordersMade() const { return m_recordersMade; }
    bool isRunning() const { return m_isRunning; }
    /// Whether somebody would hear of sound or of an end.
    bool hasReceiver() const { return m_receiver.onSound || m_receiver.onEnded; }
    SerialQueue *queue() const { return m_queue; }
    /// Delivers a buffer on the queue and returns when it was taken.
    void deliver(const AudioSampleBuffer &buffer) const;
    /// Tells that the device of this name is waited for, or with none that sound flows again.
    void await(const std::optional<QString> &name);
    /// Ends by itself, on a thread of its own.
    void endBySelf(const QString &reason);

private:
    class Recorder;

    void forgetReceiver();

    int m_recordersMade = 0;
    int m_start = 0; ///< counts starts and stops
    bool m_isRunning = false;
    SerialQueue *m_queue = nullptr;
    SoundReceiver m_receiver;
};

} // namespace lumaphone::test
