#include "capture/AudioConverter.h"

#include <soxr.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace lumaphone {

namespace {

constexpr std::size_t blockFrames = 512;
constexpr std::size_t headroomFrames = 16;

// Full scale is 1. A broken float source must not poison the resampler's memory.
float toUnit(std::int16_t sample)
{
    return static_cast<float>(sample) * (1.0F / 32768.0F);
}

float toUnit(std::int32_t sample)
{
    return static_cast<float>(sample) * (1.0F / 2147483648.0F);
}

float toUnit(float sample)
{
    return std::isnan(sample) ? 0.0F : std::clamp(sample, -16.0F, 16.0F);
}

template<typename Sample>
void addChannel(const std::byte *first, std::size_t strideSamples, std::span<float> sums)
{
    for (float &sum : sums) {
        Sample sample;
        std::memcpy(&sample, first, sizeof sample);
        sum += toUnit(sample);
        first += strideSamples * sizeof sample;
    }
}

void addChannel(SampleType type, const std::byte *first, std::size_t strideSamples, std::span<float> sums)
{
    switch (type) {
    case SampleType::int16:
        return addChannel<std::int16_t>(first, strideSamples, sums);
    case SampleType::int32:
        return addChannel<std::int32_t>(first, strideSamples, sums);
    case SampleType::float32:
        return addChannel<float>(first, strideSamples, sums);
    }
}

std::int16_t saturated(float sample)
{
    return static_cast<std::int16_t>(std::lrint(std::clamp(sample * 32768.0F, -32768.0F, 32767.0F)));
}

} // namespace

void AudioConverter::ResamplerDeleter::operator()(soxr *resampler) const
{
    soxr_delete(resampler);
}

std::unique_ptr<AudioConverter> AudioConverter::create(const AudioStreamDescription &source)
{
    const double rate = source.sampleRateHz;
    // Negated so that a rate that is not a number is refused as well.
    if (!(rate >= 1000 && rate <= 768000) || source.channelsPerFrame < 1 || source.channelsPerFrame > 64) {
        return nullptr;
    }
    Resampler resampler;
    if (rate != PcmBuffer::sampleRateHz) {
        // Planar, although there is one channel only: of an interleaved output the resampler would read eight
        // bytes as a pointer, which may lie behind the end of its memory.
        soxr_io_spec_t samples = soxr_io_spec(SOXR_FLOAT32_S, SOXR_INT16_S);
        samples.flags |= SOXR_NO_DITHER;
        // 20 bits keep the band that recognisers use (up to 7.3 kHz) flat; the smallest blocks keep the
        // delay near 15 ms.
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
        soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
        runtime.log2_min_dft_size = 8;
        runtime.log2_large_dft_size = 10;
        resampler.reset(soxr_create(rate, PcmBuffer::sampleRateHz, 1, nullptr, &samples, &quality, &runtime));
        if (!resampler) {
            return nullptr;
        }
    }
    return std::unique_ptr<AudioConverter>(new AudioConverter(source, std::move(resampler)));
}

AudioConverter::AudioConverter(const AudioStreamDescription &source, Resampler resampler)
    : m_source(source)
    , m_resampler(std::move(resampler))
{
}

AudioConverter::~AudioConverter() = default;

std::size_t AudioConverter::outputCapacity(std::size_t sourceFrames) const
{
    const double frames
        = std::ceil(PcmBuffer::sampleRateHz / m_source.sampleRateHz * static_cast<double>(sourceFrames));
    return std::max<std::size_t>(1, static_cast<std::size_t>(frames) + headroomFrames);
}

std::size_t AudioConverter::pendingFrames() const
{
    return m_resampler ? static_cast<std::size_t>(std::ceil(std::max(0.0, soxr_delay(m_resampler.get()))))
                       : 0;
}

AudioConverter::Status AudioConverter::convert(PcmBuffer &output, const InputBlock &inputBlock)
{
    std::size_t filled = 0;
    auto status = AudioConverterInputStatus::haveData;
    while (status == AudioConverterInputStatus::haveData) {
        const AudioSampleBuffer *buffer = inputBlock(status);
        const bool succeeded = status == AudioConverterInputStatus::haveData
            ? buffer && accepts(*buffer) && consume(*buffer, output, filled)
            : status != AudioConverterInputStatus::endOfStream || flush(output, filled);
        if (!succeeded) {
            output.setFrameLength(0);
            return Status::error;
        }
    }
    output.setFrameLength(filled);
    if (filled > 0) {
        return Status::haveData;
    }
    return status == AudioConverterInputStatus::endOfStream ? Status::endOfStream : Status::inputRanDry;
}

bool AudioConverter::accepts(const AudioSampleBuffer &buffer) const
{
    if (buffer.description != m_source || buffer.frames < 0) {
        return false;
    }
    const auto channels = static_cast<std::size_t>(m_source.channelsPerFrame);
    const std::size_t planes = m_source.isInterleaved ? 1 : channels;
    const std::size_t bytesPerFrame
        = bytesPerSample(m_source.sampleType) * (m_source.isInterleaved ? channels : 1);
    const auto frames = static_cast<std::size_t>(buffer.frames);
    return buffer.planes.size() >= planes
        && std::all_of(buffer.planes.begin(), buffer.planes.begin() + static_cast<std::ptrdiff_t>(planes),
            [=](std::span<const std::byte> plane) { return plane.size() / bytesPerFrame >= frames; });
}

bool AudioConverter::consume(const AudioSampleBuffer &buffer, PcmBuffer &output, std::size_t &filled)
{
    const auto frames = static_cast<std::size_t>(buffer.frames);
    const auto channels = static_cast<std::size_t>(m_source.channelsPerFrame);
    const std::size_t sampleBytes = bytesPerSample(m_source.sampleType);
    std::array<float, blockFrames> block;
    for (std::size_t begin = 0; begin < frames; begin += blockFrames) {
        const std::span<float> mono = std::span(block).first(std::min(blockFrames, frames - begin));
        std::fill(mono.begin(), mono.end(), 0.0F);
        for (std::size_t channel = 0; channel < channels; ++channel) {
            if (m_source.isInterleaved) {
                const std::size_t firstSample = begin * channels + channel;
                addChannel(
                    m_source.sampleType, buffer.planes[0].data() + firstSample * sampleBytes, channels, mono);
            } else {
                addChannel(m_source.sampleType, buffer.planes[channel].data() + begin * sampleBytes, 1, mono);
            }
        }
        if (channels > 1) {
            for (float &sample : mono) {
                sample /= static_cast<float>(channels);
            }
        }
        if (!put(mono, output, filled)) {
            return false;
        }
    }
    return true;
}

bool AudioConverter::put(std::span<const float> mono, PcmBuffer &output, std::size_t &filled)
{
    const std::span<std::int16_t> room = output.storage().subspan(filled);
    if (!m_resampler) {
        if (mono.size() > room.size()) {
            return false;
        }
        std::transform(mono.begin(), mono.end(), room.begin(), saturated);
        filled += mono.size();
        return true;
    }
    const soxr_cbuf_t input = mono.data();
    soxr_buf_t place = room.data();
    std::size_t produced = 0;
    // Without the count of consumed frames the resampler takes all of them, whatever the room.
    const soxr_error_t error
        = soxr_process(m_resampler.get(), &input, mono.size(), nullptr, &place, room.size(), &produced);
    filled += produced;
    return !error;
}

bool AudioConverter::flush(PcmBuffer &output, std::size_t &filled)
{
    if (!m_resampler) {
        return true;
    }
    const std::span<std::int16_t> room = output.storage().subspan(filled);
    soxr_buf_t place = room.data();
    std::size_t produced = 0;
    const soxr_error_t error
        = soxr_process(m_resampler.get(), nullptr, 0, nullptr, &place, room.size(), &produced);
    filled += produced;
    return !error;
}

} // namespace lumaphone
