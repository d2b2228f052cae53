#pragma once

#include "speech/protocol/SpeechHostMessages.h"

#include <chrono>
#include <deque>
#include <optional>

namespace lumaphone {

/// Decides what happens when the speech host has died: whether it is started again, and which sound it must
/// not be given a second time because it seems to die of it.
class HostRecovery
{
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr int restartsPerMinute = 3;
    /// Hosts in a row that say nothing although they owe something.
    static constexpr int mostStalls = 2;

    // What the host reported.
    void closed(const host::Closed &segment);
    void decoded(const host::Decoded &text);
    /// It has listened to sound for which there will be no text.
    void settled() { m_stalls = 0; }
    /// Whether a closed segment waits for its final text.
    bool isOwedText() const { return !m_closed.empty(); }

    struct Restart
    {
        /// Sound before it is left out; none: all of it is given again.
        std::optional<std::int64_t> skipTo;
    };
    /// None: it has died too often. `sent`: the position up to which the dead one had been given sound.
    std::optional<Restart> died(Time now, std::int64_t sent);
    /// The same for one that had to be ended because it had stopped reading or answering.
    std::optional<Restart> stalled(Time now, std::int64_t sent);

private:
    std::deque<host::Closed> m_closed; ///< without a final text yet
    bool m_hasProgressed = true; ///< a final text came since the last death
    std::deque<Time> m_restarts; ///< of the last minute
    int m_stalls = 0; ///< in a row
};

} // namespace lumaphone
