#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace lumaphone {

/// Tells a source that can wait, such as a file read as fast as it is recognised, from one that gives sound
/// as it happens: the former runs ahead of the clock.
class SourcePace
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// So many samples have arrived now.
    void arrived(std::int64_t samples, Time now);
    bool isAheadOfTime(Time now) const;

private:
    std::optional<Time> m_since; ///< start of the time under observation
    std::int64_t m_samples = 0; ///< that arrived in it
};

} // namespace lumaphone
