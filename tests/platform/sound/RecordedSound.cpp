#include "platform/sound/RecordedSound.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lumaphone::test {

namespace {

bool isConsistent(const AudioSampleBuffer &buffer)
{
    if (!buffer.isValid || !buffer.dataIsReady || !buffer.description || !buffer.durationSeconds
        || buffer.planes.size() != 1 || !buffer.description->isInterleaved) {
        return false;
    }
    const auto &description = *buffer.description;
    const auto bytes = static_cast<std::size_t>(buffer.frames * description.channelsPerFrame)
        * bytesPerSample(description.sampleType);
    return bytes == buffer.planes[0].size()
        && std::abs(*buffer.durationSeconds * description.sampleRateHz - static_cast<double>(buffer.frames))
        < 1e-6;
}

} // namespace

SoundReceiver RecordedSound::receiver()
{
    return {
        .onSound = [this](const AudioSampleBuffer &buffer) { take(buffer); },
        .onEnded = [this](const std::exception_ptr &reason) { takeEnd(reason); },
        .onAwaited =
            [this](const std::optional<QString> &name) {
                const std::lock_guard lock(m_mutex);
                m_awaited << name.value_or(QStringLiteral("-"));
            },
    };
}

void RecordedSound::take(const AudioSampleBuffer &buffer)
{
    const std::lock_guard lock(m_mutex);
    ++m_buffers;
    if (!m_queue.isCurrent() || !isConsistent(buffer)) {
        ++m_wrongBuffers;
        return;
    }
    m_description = buffer.description;
    m_framesPerBuffer = buffer.frames;
    const std::span<const std::byte> bytes = buffer.planes[0];
    const std::size_t size = bytesPerSample(buffer.description->sampleType);
    for (std::size_t offset = 0; offset + size <= bytes.size(); offset += size) {
        if (buffer.description->sampleType == SampleType::int16) {
            std::int16_t sample = 0;
            std::memcpy(&sample, bytes.data() + offset, size);
            m_samples.push_back(static_cast<float>(sample) / 32768.0F);
        } else {
            float sample = 0;
            std::memcpy(&sample, bytes.data() + offset, size);
            m_samples.push_back(sample);
        }
    }
}

void RecordedSound::takeEnd(const std::exception_ptr &reason)
{
    const QString text = localizedDescription(reason);
    const std::lock_guard lock(m_mutex);
    m_errors << text;
}

QStringList RecordedSound::awaited() const
{
    const std::lock_guard lock(m_mutex);
    return m_awaited;
}

std::vector<float> RecordedSound::samples() const
{
    const std::lock_guard lock(m_mutex);
    return m_samples;
}

std::size_t RecordedSound::sampleCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_samples.size();
}

std::vector<float> RecordedSound::latest(std::size_t count) const
{
    const std::lock_guard lock(m_mutex);
    return {
        m_samples.end() - static_cast<std::ptrdiff_t>(std::min(count, m_samples.size())), m_samples.end()};
}

void RecordedSound::clear()
{
    const std::lock_guard lock(m_mutex);
    m_samples.clear();
}

std::size_t RecordedSound::buffers() const
{
    const std::lock_guard lock(m_mutex);
    return m_buffers;
}

std::size_t RecordedSound::wrongBuffers() const
{
    const std::lock_guard lock(m_mutex);
    return m_wrongBuffers;
}

std::optional<AudioStreamDescription> RecordedSound::description() const
{
    const std::lock_guard lock(m_mutex);
    return m_description;
}

std::int64_t RecordedSound::framesPerBuffer() const
{
    const std::lock_guard lock(m_mutex);
    return m_framesPerBuffer;
}

QStringList RecordedSound::errors() const
{
    const std::lock_guard lock(m_mutex);
    return m_errors;
}

} // namespace lumaphone::test
