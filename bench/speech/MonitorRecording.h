#pragma once

#include "platform/sound/PulseConnection.h"
#include "platform/sound/PulseRecorder.h"
#include "support/speech-scores/SampleClock.h"

#include <mutex>
#include <vector>

namespace lumaphone::bench {

/// Records what an output of the sound server plays, 16 kHz and mono, beside the program, on the same clock
/// as the program's answers.
class MonitorRecording
{
public:
    /// Begins at once. Throws CaptureServiceError.
    explicit MonitorRecording(const std::string &output);

    std::vector<std::int16_t> samples() const;
    /// When this sample was heard.
    test::TraceTime timeOf(std::size_t sample) const;

private:
    void append(const std::byte *data, std::size_t bytes);

    mutable std::mutex m_mutex;
    std::vector<std::int16_t> m_samples;
    test::SampleClock m_clock;
    PulseConnection m_connection;
    PulseRecorder m_recorder; ///< last: its thread uses what stands above
};

} // namespace lumaphone::bench
