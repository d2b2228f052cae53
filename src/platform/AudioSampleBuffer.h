#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace lumaphone {

enum class SampleType { int16, int32, float32 };

constexpr std::size_t bytesPerSample(SampleType type)
{
    return type == SampleType::int16 ? 2 : 4;
}

/// How the bytes of a sound are laid out. Samples are in the machine's byte order.
struct AudioStreamDescription
{
    double sampleRateHz = 0;
    int channelsPerFrame = 0;
    SampleType sampleType = SampleType::int16;
    bool isInterleaved = true;

    bool operator==(const AudioStreamDescription &) const = default;
};

/// One buffer of captured sound as the capture service hands it over: a view, valid during the call only.
struct AudioSampleBuffer
{
    bool isValid = true;
    bool dataIsReady = true;
    std::int64_t frames = 0;
    std::optional<double> durationSeconds; ///< none when the service gave no valid duration
    std::optional<AudioStreamDescription> description; ///< none when the service described no format
    /// Interleaved: one plane of frames × channels samples. Otherwise one plane of `frames` samples per
    /// channel.
    std::span<const std::span<const std::byte>> planes;
};

} // namespace lumaphone
