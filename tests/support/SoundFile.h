#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

namespace lumaphone::test {

/// Writes a 16-bit sound file whose kind follows from the name's ending: wav, flac, ogg, aiff or mp3. The
/// samples (full scale is 1) are the same in every channel. A failure ends the process.
void writeSoundFile(
    const QString &path, const std::vector<double> &samples, int sampleRateHz, int channels = 1);

/// The samples of a sound file of one channel. A failure ends the process.
std::vector<std::int16_t> samplesOfSoundFile(const QString &path);

/// Writes a WAV file of `frames` silent 16-bit mono samples that occupies next to no room on the disk.
void writeSilentWav(const QString &path, std::int64_t frames, int sampleRateHz);

/// The header of a 16-bit mono WAV file of so many bytes of samples.
QByteArray wavHeader(std::uint32_t sampleBytes, int sampleRateHz);

} // namespace lumaphone::test
