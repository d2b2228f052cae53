#include "support/SoundFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <sndfile.h>

#include <map>

namespace lumaphone::test {

namespace {

int formatOf(const QString &path)
{
    static const std::map<QString, int> formats {
        {QStringLiteral("wav"), SF_FORMAT_WAV | SF_FORMAT_PCM_16},
        {QStringLiteral("flac"), SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {QStringLiteral("ogg"), SF_FORMAT_OGG | SF_FORMAT_VORBIS},
        {QStringLiteral("aiff"), SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
        {QStringLiteral("mp3"), SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
    };
    return formats.at(QFileInfo(path).suffix());
}

template<typename Number> void append(QByteArray &bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

} // namespace

void writeSoundFile(const QString &path, const std::vector<double> &samples, int sampleRateHz, int channels)
{
    SF_INFO info = {};
    info.samplerate = sampleRateHz;
    info.channels = channels;
    info.format = formatOf(path);
    SNDFILE *const file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    if (!file) {
        qFatal("%s: %s", qUtf8Printable(path), sf_strerror(nullptr));
    }
    std::vector<double> interleaved;
    for (const double sample : samples) {
        interleaved.insert(interleaved.end(), static_cast<std::size_t>(channels), sample);
    }
    sf_writef_double(file, interleaved.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(file);
}

std::vector<std::int16_t> samplesOfSoundFile(const QString &path)
{
    SF_INFO info = {};
    SNDFILE *const file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(info.frames));
    if (!file || info.channels != 1 || sf_read_short(file, samples.data(), info.frames) != info.frames) {
        qFatal("%s: %s", qUtf8Printable(path), sf_strerror(file));
    }
    sf_close(file);
    return samples;
}

void writeSilentWav(const QString &path, std::int64_t frames, int sampleRateHz)
{
    QFile file(path);
    const QByteArray header = wavHeader(static_cast<std::uint32_t>(frames * 2), sampleRateHz);
    if (!file.open(QIODevice::WriteOnly) || file.write(header) != header.size()
        || !file.resize(header.size() + frames * 2)) {
        qFatal("%s: %s", qUtf8Printable(path), qUtf8Printable(file.errorString()));
    }
}

QByteArray wavHeader(std::uint32_t sampleBytes, int sampleRateHz)
{
    QByteArray header("RIFF");
    append<std::uint32_t>(header, 36 + sampleBytes);
    header.append("WAVEfmt ");
    append<std::uint32_t>(header, 16);
    append<std::uint16_t>(header, 1);
    append<std::uint16_t>(header, 1);
    append<std::uint32_t>(header, static_cast<std::uint32_t>(sampleRateHz));
    append<std::uint32_t>(header, static_cast<std::uint32_t>(sampleRateHz) * 2);
    append<std::uint16_t>(header, 2);
    append<std::uint16_t>(header, 16);
    header.append("data");
    append<std::uint32_t>(header, sampleBytes);
    return header;
}

} // namespace lumaphone::test
