#pragma once

#include "platform/AudioSampleBuffer.h"

#include <cstdint>
#include <vector>

namespace lumaphone::test {

/// A captured buffer that owns its bytes. The view stays valid while the sound lives and is not moved.
class TestSound
{
public:
    /// The same samples (full scale is 1) in every channel.
    TestSound(const AudioStreamDescription &description, const std::vector<double> &samples);
    /// A sound of each channel on its own, all of one length.
    TestSound(const AudioStreamDescription &description, const std::vector<std::vector<double>> &channels);
    TestSound(const TestSound &) = delete;
    TestSound &operator=(const TestSound &) = delete;

    AudioSampleBuffer &buffer() { return m_buffer; }

private:
    std::vector<std::vector<std::byte>> m_bytes;
    std::vector<std::span<const std::byte>> m_planes;
    AudioSampleBuffer m_buffer;
};

/// `frames` samples of a tone, from sample `firstFrame` of it.
std::vector<double> tone(
    double frequencyHz, double amplitude, double sampleRateHz, std::int64_t firstFrame, std::size_t frames);

/// 16 kHz mono 16-bit, as the system's sound arrives.
inline constexpr AudioStreamDescription analysisDescription {16000, 1, SampleType::int16, true};

} // namespace lumaphone::test
