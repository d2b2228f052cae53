#include "support/WavFile.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <cstring>

namespace lumaphone::test {

namespace {

constexpr qsizetype headerSize = 44;

QByteArray header(quint32 dataSize)
{
    QByteArray bytes(headerSize, '\0');
    char *at = bytes.data();
    std::memcpy(at, "RIFF", 4);
    qToLittleEndian<quint32>(quint32(headerSize) - 8 + dataSize, at + 4);
    std::memcpy(at + 8, "WAVEfmt ", 8);
    qToLittleEndian<quint32>(16, at + 16);
    qToLittleEndian<quint16>(1, at + 20); // PCM
    qToLittleEndian<quint16>(1, at + 22); // channels
    qToLittleEndian<quint32>(16000, at + 24);
    qToLittleEndian<quint32>(32000, at + 28); // bytes per second
    qToLittleEndian<quint16>(2, at + 32); // bytes per frame
    qToLittleEndian<quint16>(16, at + 34);
    std::memcpy(at + 36, "data", 4);
    qToLittleEndian<quint32>(dataSize, at + 40);
    return bytes;
}

} // namespace

std::vector<std::int16_t> samplesOfWav(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(path));
    }
    const QByteArray bytes = file.readAll();
    const qsizetype dataSize = bytes.size() - headerSize;
    if (dataSize < 0 || !bytes.startsWith(header(quint32(dataSize)))) {
        qFatal("%s is not a plain WAV file of 16 kHz mono 16-bit sound", qPrintable(path));
    }
    std::vector<std::int16_t> samples(std::size_t(dataSize) / 2);
    qFromLittleEndian<qint16>(bytes.constData() + headerSize, qsizetype(samples.size()), samples.data());
    return samples;
}

void writeWav(const QString &path, const std::vector<std::int16_t> &samples)
{
    QByteArray data(qsizetype(samples.size()) * 2, '\0');
    qToLittleEndian<qint16>(samples.data(), qsizetype(samples.size()), data.data());
    QFile file(path);
    const QByteArray bytes = header(quint32(data.size())) + data;
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("%s cannot be written", qPrintable(path));
    }
}

} // namespace lumaphone::test
