#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace lumaphone::host {

/// What a network heard in a segment.
struct Hearing
{
    std::string text;
    std::string language; ///< empty if the network names none
    std::string event; ///< likewise
};

/// Decodes segments, one after another, on the host's decoding thread; before that runs, once on the thread
/// that starts it.
class SegmentDecoder
{
public:
    virtual ~SegmentDecoder() = default;
    /// Decodes a segment so far. `start` names it; of one segment, `samples` only grow from call to call.
    /// No more calls follow for a segment that is complete. Throws HostFailure (decoding).
    virtual Hearing decode(std::int64_t start, std::span<const float> samples, bool isComplete) = 0;
    /// Whether each call hears the segment from its start, so that one with all of its speech in it says the
    /// same whether it is said to be complete or not. Throws nothing.
    virtual bool hearsFromTheStart() const = 0;
};

} // namespace lumaphone::host
