#include "support/Signals.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace lumaphone::test {

std::vector<qint16> sine(double frequencyHz, double amplitude, double seconds, int rateHz)
{
    return sweep(frequencyHz, frequencyHz, amplitude, seconds, rateHz);
}

std::vector<qint16> sweep(double fromHz, double toHz, double amplitude, double seconds, int rateHz)
{
    std::vector<qint16> samples(static_cast<std::size_t>(seconds * rateHz));
    const double slope = (toHz - fromHz) / seconds;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double t = static_cast<double>(i) / rateHz;
        const double phase = 2 * std::numbers::pi * (fromHz * t + slope * t * t / 2);
        samples[i] = static_cast<qint16>(std::lround(amplitude * 32767 * std::sin(phase)));
    }
    return samples;
}

std::vector<qint16> interleaved(const std::vector<qint16> &left, const std::vector<qint16> &right)
{
    std::vector<qint16> samples;
    samples.reserve(left.size() * 2);
    for (std::size_t i = 0; i < left.size(); ++i) {
        samples.push_back(left[i]);
        samples.push_back(right[i]);
    }
    return samples;
}

std::vector<float> channelOf(std::span<const float> samples, int channel, int channels)
{
    std::vector<float> picked;
    for (auto i = static_cast<std::size_t>(channel); i < samples.size();
         i += static_cast<std::size_t>(channels)) {
        picked.push_back(samples[i]);
    }
    return picked;
}

double frequencyOf(std::span<const float> samples, int rateHz)
{
    std::size_t crossings = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        crossings += std::signbit(samples[i - 1]) != std::signbit(samples[i]);
    }
    return static_cast<double>(crossings) * rateHz / (2.0 * static_cast<double>(samples.size()));
}

double levelOf(std::span<const float> samples)
{
    double sum = 0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

} // namespace lumaphone::test
