#pragma once

#include "speech/host/SegmentDecoder.h"
#include "speech/host/SpeechRuntime.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumaphone::host {

/// A network that hears sound as it comes: of a growing segment it decodes only what is new.
class StreamingNetwork final : public SegmentDecoder
{
public:
    /// Throws HostFailure (network).
    StreamingNetwork(const SpeechRuntime &runtime, const Network &network, int threads);

    Hearing decode(std::int64_t start, std::span<const float> samples, bool isComplete) override;
    bool hearsFromTheStart() const override { return false; }

private:
    void accept(std::span<const float> samples);

    const SpeechRuntime &m_runtime;
    SpeechRuntime::Handle m_recognizer;
    SpeechRuntime::Handle m_stream; ///< of the segment under way
    std::int64_t m_start = 0;
    std::size_t m_heard = 0; ///< of its samples
};

} // namespace lumaphone::host
