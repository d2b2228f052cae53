#pragma once

#include "speech/host/SegmentDecoder.h"
#include "speech/host/SpeechRuntime.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <cstdint>
#include <span>
#include <string>

namespace lumaphone::host {

/// A network that hears whole segments: decodes a segment from its start each time. Some name its language.
class OfflineNetwork final : public SegmentDecoder
{
public:
    /// `language`: empty to let the network find out; one that knows a single language does not ask. Throws
    /// HostFailure (network).
    OfflineNetwork(
        const SpeechRuntime &runtime, const Network &network, const std::string &language, int threads);

    Hearing decode(std::int64_t start, std::span<const float> samples, bool isComplete) override;
    bool hearsFromTheStart() const override { return true; }

private:
    Hearing hear(std::span<const float> samples) const;

    const SpeechRuntime &m_runtime;
    const NetworkKind m_kind;
    SpeechRuntime::Handle m_recognizer;
};

} // namespace lumaphone::host
