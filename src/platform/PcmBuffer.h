#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lumaphone {

/// A buffer of 16 kHz mono 16-bit samples with a fixed capacity: what a speech analyzer consumes.
class PcmBuffer
{
public:
    static constexpr double sampleRateHz = 16000;

    explicit PcmBuffer(std::size_t frameCapacity);

    std::size_t frameCapacity() const { return m_samples.size(); }
    std::size_t frameLength() const { return m_frameLength; }
    /// At most frameCapacity(); more is a programming error.
    void setFrameLength(std::size_t frames);

    std::span<const std::int16_t> samples() const { return {m_samples.data(), m_frameLength}; }
    std::span<std::int16_t> storage() { return m_samples; }

private:
    std::vector<std::int16_t> m_samples;
    std::size_t m_frameLength = 0;
};

/// Wraps one converted buffer on its way to the analyzer.
struct AnalyzerInput
{
    std::shared_ptr<const PcmBuffer> buffer;
};

} // namespace lumaphone
