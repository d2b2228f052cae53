#pragma once

#include "platform/sound/PulseConnection.h"

#include <pulse/stream.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

namespace lumaphone {

/// A recording of one source, which it never leaves. The thread rules are the connection's.
class PulseRecorder
{
public:
    /// Called on the connection's thread with whole frames; no data means that much silence.
    using Sink = std::function<void(const std::byte *data, std::size_t bytes)>;

    /// Opens the source, paused, in pieces of about 20 ms, and makes sure that it is that source and no
    /// other. Throws CaptureServiceError.
    PulseRecorder(
        PulseConnection &connection, PulseSource source, const pa_sample_spec &sampleSpec, Sink sink);
    /// Afterwards the sink is not called again.
    ~PulseRecorder();
    PulseRecorder(const PulseRecorder &) = delete;
    PulseRecorder &operator=(const PulseRecorder &) = delete;

    /// Lets the sound flow. Throws CaptureServiceError.
    void start();

    const PulseSource &source() const { return m_source; }
    /// The source has gone, the server has ended the recording, or somebody has moved it elsewhere. A change
    /// wakes who waits on the connection.
    bool hasEnded() const { return m_hasEnded; }

private:
    struct StreamDeleter
    {
        pa_threaded_mainloop *loop;
        void operator()(pa_stream *stream) const;
    };

    void open(const pa_sample_spec &sampleSpec);
    void verify(const pa_sample_spec &sampleSpec);
    void takeState();
    void takeMove();
    void takeEvent(pa_subscription_event_type_t event, std::uint32_t index);
    void takeSound();
    void end();
    void setAccepting(bool accepting);

    PulseConnection &m_connection;
    const PulseSource m_source;
    std::atomic<bool> m_hasEnded {false};
    bool m_isReady = false; ///< under the connection's lock
    std::mutex m_sinkMutex;
    bool m_isAccepting = false;
    const Sink m_sink;
    std::unique_ptr<pa_stream, StreamDeleter> m_stream;
    std::unique_ptr<PulseConnection::Watch> m_watch;
};

} // namespace lumaphone
