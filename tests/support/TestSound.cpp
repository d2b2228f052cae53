#include "support/TestSound.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace lumaphone::test {

namespace {

template<typename Sample> void write(std::byte *to, Sample sample)
{
    std::memcpy(to, &sample, sizeof sample);
}

void write(std::byte *to, SampleType type, double value)
{
    const double limited = std::clamp(value, -1.0, 1.0);
    switch (type) {
    case SampleType::int16:
        return write(to, static_cast<std::int16_t>(std::lround(limited * 32767)));
    case SampleType::int32:
        return write(to, static_cast<std::int32_t>(std::llround(limited * 2147483647)));
    case SampleType::float32:
        return write(to, static_cast<float>(value));
    }
}

} // namespace

TestSound::TestSound(const AudioStreamDescription &description, const std::vector<double> &samples)
    : TestSound(description,
        std::vector<std::vector<double>>(static_cast<std::size_t>(description.channelsPerFrame), samples))
{
}

TestSound::TestSound(
    const AudioStreamDescription &description, const std::vector<std::vector<double>> &channels)
{
    const std::size_t frames = channels.front().size();
    const std::size_t sampleBytes = bytesPerSample(description.sampleType);
    const std::size_t channelsPerPlane = description.isInterleaved ? channels.size() : 1;
    m_bytes.assign(
        channels.size() / channelsPerPlane, std::vector<std::byte>(frames * channelsPerPlane * sampleBytes));
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            std::byte *const plane = m_bytes[description.isInterleaved ? 0 : channel].data();
            const std::size_t sample = description.isInterleaved ? frame * channelsPerPlane + channel : frame;
            write(plane + sample * sampleBytes, description.sampleType, channels[channel][frame]);
        }
    }
    m_planes.assign(m_bytes.begin(), m_bytes.end());
    m_buffer.frames = static_cast<std::int64_t>(frames);
    m_buffer.durationSeconds = static_cast<double>(frames) / description.sampleRateHz;
    m_buffer.description = description;
    m_buffer.planes = m_planes;
}

std::vector<double> tone(
    double frequencyHz, double amplitude, double sampleRateHz, std::int64_t firstFrame, std::size_t frames)
{
    std::vector<double> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double seconds = static_cast<double>(firstFrame + static_cast<std::int64_t>(i)) / sampleRateHz;
        samples[i] = amplitude * std::sin(2 * std::numbers::pi * frequencyHz * seconds);
    }
    return samples;
}

} // namespace lumaphone::test
