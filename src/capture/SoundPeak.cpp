#include "capture/SoundPeak.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace lumaphone {

namespace {

/// The bytes may begin anywhere.
template<typename Sample> double peakOf(std::span<const std::byte> bytes, double fullScale)
{
    double peak = 0;
    for (std::size_t at = 0; at + sizeof(Sample) <= bytes.size(); at += sizeof(Sample)) {
        Sample sample;
        std::memcpy(&sample, &bytes[at], sizeof(Sample));
        peak = std::fmax(peak, std::fabs(double(sample))); // passes over what is not a number
    }
    return std::min(peak / fullScale, 1.0);
}

double peakOf(std::span<const std::byte> bytes, SampleType type)
{
    switch (type) {
    case SampleType::int16:
        return peakOf<std::int16_t>(bytes, -double(std::numeric_limits<std::int16_t>::min()));
    case SampleType::int32:
        return peakOf<std::int32_t>(bytes, -double(std::numeric_limits<std::int32_t>::min()));
    case SampleType::float32:
        return peakOf<float>(bytes, 1);
    }
    return 0;
}

} // namespace

double soundPeak(const AudioSampleBuffer &buffer)
{
    double peak = 0;
    for (const std::span<const std::byte> plane : buffer.planes) {
        peak = buffer.description ? std::max(peak, peakOf(plane, buffer.description->sampleType)) : 0;
    }
    return peak;
}

} // namespace lumaphone
