#include "capture/SoundFileReader.h"

#include "capture/AudioConverter.h"
#include "capture/SoundFileError.h"

#include <QFile>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace lumaphone {

namespace {

QString systemText(int errorNumber)
{
    return QString::fromStdString(std::generic_category().message(errorNumber));
}

/// A descriptor of a regular file with content. Opened without blocking: a pipe must not hold the program up.
int openRegularFile(const QString &path)
{
    using enum SoundFileError::Case;
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        throw errno == ENOENT || errno == ENOTDIR ? SoundFileError(notFound, path)
                                                  : SoundFileError(unreadable, path, systemText(errno));
    }
    struct stat status = {};
    const bool isKnown = ::fstat(descriptor, &status) == 0;
    if (isKnown && S_ISREG(status.st_mode) && status.st_size > 0) {
        return descriptor;
    }
    const int statError = errno;
    ::close(descriptor);
    if (!isKnown) {
        throw SoundFileError(unreadable, path, systemText(statError));
    }
    if (S_ISREG(status.st_mode)) {
        throw SoundFileError(empty, path);
    }
    throw SoundFileError(
        unreadable, path, S_ISDIR(status.st_mode) ? systemText(EISDIR) : QStringLiteral("不是一般檔案。"));
}

} // namespace

void SoundFileReader::FileCloser::operator()(sf_private_tag *file) const
{
    sf_close(file);
}

SoundFileReader::SoundFileReader(const QString &path)
{
    using enum SoundFileError::Case;
    SF_INFO info = {};
    m_file.reset(sf_open_fd(openRegularFile(path), SFM_READ, &info, SF_TRUE));
    if (!m_file) {
        throw SoundFileError(notSound, path, QString::fromUtf8(sf_strerror(nullptr)).trimmed());
    }
    if (info.frames <= 0) {
        throw SoundFileError(empty, path);
    }
    m_description = {.sampleRateHz = static_cast<double>(info.samplerate),
        .channelsPerFrame = info.channels,
        .sampleType = SampleType::float32,
        .isInterleaved = true};
    if (!AudioConverter::create(m_description)) {
        throw SoundFileError(unsupportedFormat, path,
            QStringLiteral("%1 Hz、%2 聲道。").arg(info.samplerate).arg(info.channels));
    }
    m_blockFrames = std::max(1, info.samplerate / 50);
    m_samples.resize(static_cast<std::size_t>(m_blockFrames) * static_cast<std::size_t>(info.channels));
}

SoundFileReader::~SoundFileReader() = default;

const AudioSampleBuffer &SoundFileReader::readBlock()
{
    const std::int64_t frames
        = std::max<std::int64_t>(0, sf_readf_float(m_file.get(), m_samples.data(), m_blockFrames));
    const auto channels = static_cast<std::size_t>(m_description.channelsPerFrame);
    m_framesRead += frames;
    m_plane = std::as_bytes(std::span(m_samples).first(static_cast<std::size_t>(frames) * channels));
    m_block.frames = frames;
    m_block.durationSeconds = static_cast<double>(frames) / m_description.sampleRateHz;
    m_block.description = m_description;
    m_block.planes = std::span(&m_plane, 1);
    return m_block;
}

std::chrono::nanoseconds SoundFileReader::endOfNextBlock() const
{
    const std::chrono::duration<double> heard(
        static_cast<double>(m_framesRead + m_blockFrames) / m_description.sampleRateHz);
    return std::chrono::round<std::chrono::nanoseconds>(heard);
}

} // namespace lumaphone
