#pragma once

#include "platform/sound/PulseConnection.h"
#include "platform/sound/PulseRecorder.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace lumaphone {

/// Records what an output plays, and goes along when the server makes another output the default. Only ever
/// records monitors of outputs. One thread uses it, which is neither the main thread nor libpulse's.
///
/// An output computes its sound ahead, up to two seconds, and a monitor opened later has missed that. Hence
/// the monitors of the other outputs are kept open but paused: nothing is recorded and nothing keeps an
/// output awake, but each works no more than a buffer ahead, and going along loses next to nothing.
class PulseMonitorFollower
{
public:
    /// Called by follow(): the name for people of the output that has gone and is waited for, or none when
    /// the sound of an output flows again.
    using AwaitedHandler = std::function<void(const std::optional<QString> &name)>;

    /// Connects. Throws CaptureServiceError.
    PulseMonitorFollower(const PulseOptions &options, std::stop_token stop, const pa_sample_spec &sampleSpec,
        PulseRecorder::Sink sink, AwaitedHandler onAwaited);

    /// Begins with this output. Returns when its sound flows. Throws CaptureServiceError.
    void start(const std::string &sinkName);
    /// Keeps recording the default output, and waits for one where the last has gone. Throws
    /// CaptureServiceError when that is no longer possible, or when a stop is requested.
    [[noreturn]] void follow();

private:
    PulseSink sinkNamed(const std::string &name);
    PulseSource monitorOf(const PulseSink &sink);
    void record(const std::string &sinkName);
    void goToDefault();
    bool hasOutputGone();
    bool waitForChange(std::chrono::steady_clock::time_point deadline);
    void prepareOthers();
    std::unique_ptr<PulseRecorder> recorderOf(const PulseSource &monitor);
    std::string currentDefault();
    std::string askForDefault();
    bool hasUntoldDefault();

    const PulseOptions m_options;
    const std::stop_token m_stop;
    PulseConnection m_connection;
    const bool m_isPipeWire;
    const pa_sample_spec m_sampleSpec;
    const PulseRecorder::Sink m_sink;
    const AwaitedHandler m_onAwaited;
    bool m_defaultMayHaveChanged = true; ///< under the connection's lock
    bool m_outputsMayHaveChanged = true; ///< under the connection's lock
    bool m_hasStirred = false; ///< under the connection's lock: something may have followed a new default
    std::string m_sinkName;
    QString m_sinkTitle; ///< for people
    std::unique_ptr<PulseRecorder> m_recorder;
    std::vector<std::unique_ptr<PulseRecorder>> m_prepared; ///< paused, of other outputs
    std::unique_ptr<PulseConnection::Watch> m_watch;
};

} // namespace lumaphone
