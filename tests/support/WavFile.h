#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace lumaphone::test {

/// The samples of a WAV file of 16 kHz mono 16-bit sound. Any other file is a broken test: ends the process.
std::vector<std::int16_t> samplesOfWav(const QString &path);

/// Writes 16 kHz mono 16-bit samples as a WAV file.
void writeWav(const QString &path, const std::vector<std::int16_t> &samples);

} // namespace lumaphone::test
