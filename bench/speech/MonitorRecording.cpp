#include "bench/speech/MonitorRecording.h"

#include <cstring>

namespace lumaphone::bench {

namespace {

constexpr pa_sample_spec speechSpec {PA_SAMPLE_S16NE, 16000, 1};

PulseSource monitorOf(PulseConnection &connection, const std::string &output)
{
    const auto monitor = connection.source(output + ".monitor");
    if (!monitor) {
        throw CaptureServiceError(
            QStringLiteral("The sound server has no output %1.").arg(QString::fromStdString(output)));
    }
    return *monitor;
}

} // namespace

MonitorRecording::MonitorRecording(const std::string &output)
    : m_clock(speechSpec.rate)
    , m_connection({.timeLimit = std::chrono::seconds(20)}, {})
    , m_recorder(m_connection, monitorOf(m_connection, output), speechSpec,
          [this](const std::byte *data, std::size_t bytes) { append(data, bytes); })
{
    m_recorder.start();
}

std::vector<std::int16_t> MonitorRecording::samples() const
{
    const std::lock_guard lock(m_mutex);
    return m_samples;
}

test::TraceTime MonitorRecording::timeOf(std::size_t sample) const
{
    const std::lock_guard lock(m_mutex);
    return m_clock.timeOf(sample);
}

void MonitorRecording::append(const std::byte *data, std::size_t bytes)
{
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard lock(m_mutex);
    const std::size_t before = m_samples.size();
    m_samples.resize(before + bytes / sizeof(std::int16_t));
    if (data != nullptr) {
        std::memcpy(m_samples.data() + before, data, bytes);
    }
    m_clock.arrived(m_samples.size(), now);
}

} // namespace lumaphone::bench
