#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

/// Sounds whose arrival can be measured, and the measures. Samples are in [-1, 1] or 16-bit integers.
namespace lumaphone::test {

/// A tone of one channel.
std::vector<qint16> sine(double frequencyHz, double amplitude, double seconds, int rateHz);
/// A tone whose frequency rises steadily: each moment of it is known by its pitch.
std::vector<qint16> sweep(double fromHz, double toHz, double amplitude, double seconds, int rateHz);
/// Two channels as one interleaved sound; both have the same length.
std::vector<qint16> interleaved(const std::vector<qint16> &left, const std::vector<qint16> &right);

/// Every `channels`th sample from `channel` on.
std::vector<float> channelOf(std::span<const float> samples, int channel, int channels);
/// Zero crossings counted, in Hz: exact to a half period over the length of the sound.
double frequencyOf(std::span<const float> samples, int rateHz);
/// Root mean square.
double levelOf(std::span<const float> samples);

} // namespace lumaphone::test
