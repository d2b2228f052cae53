#pragma once

#include "platform/AudioSampleBuffer.h"
#include "platform/PcmBuffer.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

struct soxr;

namespace lumaphone {

enum class AudioConverterInputStatus { haveData, noDataNow, endOfStream };

/// Turns sound of one description into 16 kHz mono 16-bit samples. Channels are mixed down equally, what is
/// too loud saturates. State is kept across buffers, so that their seams are not heard. One thread at a time.
class AudioConverter
{
public:
    enum class Status {
        haveData, ///< the output holds at least one frame
        inputRanDry, ///< nothing came out yet
        endOfStream, ///< nothing is left
        error, ///< the input does not fit the description, or the resampler failed
    };

    /// The next buffer together with its status; null unless there is data. A buffer with data is consumed
    /// whole, even when its sound does not fit the output: the rest comes out at the next call.
    using InputBlock = std::function<const AudioSampleBuffer *(AudioConverterInputStatus &)>;

    /// None for a description that makes no sense: rates outside 1 to 768 kHz, channels outside 1 to 64.
    static std::unique_ptr<AudioConverter> create(const AudioStreamDescription &source);
    ~AudioConverter();
    AudioConverter(const AudioConverter &) = delete;
    AudioConverter &operator=(const AudioConverter &) = delete;

    /// Whether a buffer has the source's description and holds as much sound as it says.
    bool accepts(const AudioSampleBuffer &buffer) const;
    /// Frames that an output needs for `sourceFrames` more frames of input, with some headroom.
    std::size_t outputCapacity(std::size_t sourceFrames) const;
    /// Frames of output that are still on their way after what was put in.
    std::size_t pendingFrames() const;

    /// Fills `output` from its beginning, asking for input until there is none. After the end of the stream
    /// the converter accepts nothing more.
    Status convert(PcmBuffer &output, const InputBlock &inputBlock);

private:
    struct ResamplerDeleter
    {
        void operator()(soxr *resampler) const;
    };
    using Resampler = std::unique_ptr<soxr, ResamplerDeleter>;

    AudioConverter(const AudioStreamDescription &source, Resampler resampler);
    bool consume(const AudioSampleBuffer &buffer, PcmBuffer &output, std::size_t &filled);
    bool put(std::span<const float> mono, PcmBuffer &output, std::size_t &filled);
    bool flush(PcmBuffer &output, std::size_t &filled);

    const AudioStreamDescription m_source;
    Resampler m_resampler; ///< none when the rate is already right
};

} // namespace lumaphone
