#pragma once

#include <pulse/channelmap.h>
#include <pulse/def.h>
#include <pulse/sample.h>

#include <cstdint>
#include <string>

namespace lumaphone {

/// An output of the sound server.
struct PulseSink
{
    std::uint32_t index = PA_INVALID_INDEX;
    std::string name; ///< the server's identifier
    std::string description; ///< for people
    std::string monitorName; ///< the source that records what this output plays
};

/// Something the sound server can record from: a microphone, or the monitor of an output.
struct PulseSource
{
    std::uint32_t index = PA_INVALID_INDEX;
    std::string name;
    std::string description;
    std::uint32_t monitorOfSink = PA_INVALID_INDEX; ///< the sink's index if this is a monitor
    pa_sample_spec sampleSpec {};
    pa_channel_map channelMap {};

    bool isMonitor() const { return monitorOfSink != PA_INVALID_INDEX; }
};

} // namespace lumaphone
