#pragma once

#include "platform/AudioSampleBuffer.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct sf_private_tag;

namespace lumaphone {

/// Reads a sound file of any common kind, block after block. One thread at a time.
class SoundFileReader
{
public:
    /// Throws SoundFileError.
    explicit SoundFileReader(const QString &path);
    ~SoundFileReader();
    SoundFileReader(const SoundFileReader &) = delete;
    SoundFileReader &operator=(const SoundFileReader &) = delete;

    /// The next 20 ms, fewer at the end, no frames behind it. A file that was cut off ends where it was cut.
    /// The view is valid until the next call.
    const AudioSampleBuffer &readBlock();
    std::int64_t framesRead() const { return m_framesRead; }
    /// The moment at which the next block has been heard to its end, counted from the file's beginning.
    std::chrono::nanoseconds endOfNextBlock() const;

private:
    struct FileCloser
    {
        void operator()(sf_private_tag *file) const;
    };

    std::unique_ptr<sf_private_tag, FileCloser> m_file;
    AudioStreamDescription m_description;
    std::int64_t m_blockFrames = 0;
    std::int64_t m_framesRead = 0;
    std::vector<float> m_samples;
    std::span<const std::byte> m_plane;
    AudioSampleBuffer m_block;
};

} // namespace lumaphone
