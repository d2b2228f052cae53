#pragma once

#include "speech/host/Segmenter.h"

#include <chrono>
#include <deque>
#include <optional>
#include <variant>

namespace lumaphone {

/// Decides what the decoder does next, so that the open segment's text keeps coming and decoding never takes
/// more than its share of the processor. Final texts are never left out: when decoding falls behind, volatile
/// texts become rare first, and then segments are closed early.
class DecodePlan
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    static constexpr Duration shortestHop = std::chrono::milliseconds(400);
    /// The same while the first words are awaited: a segment with less speech than `fewWords`.
    static constexpr Duration firstHop = std::chrono::milliseconds(250);
    static constexpr std::int64_t fewWords = samplesPerSecond * 3 / 2;
    /// The hop is at least so many times the last decode: volatile texts take 36 % of a processor at most.
    static constexpr double hopPerDecode = 2.75;
    /// So much of a pause is enough to decode what was said before it: if the pause ends the segment, its
    /// final text is there already. It waits for no hop, but for so many times the last decode.
    static constexpr std::int64_t shortPause = samplesPerSecond / 16;
    static constexpr double pauseHopPerDecode = 1.5;
    /// A volatile text that is due waits so long for new sound, so that what is decoded is never stale.
    static constexpr Duration freshness = std::chrono::milliseconds(50);
    /// A final text that waited longer for its decoder doubles the hop...
    static constexpr Duration lateFinal = std::chrono::milliseconds(1000);
    /// ... and one that waited no longer than this halves it again.
    static constexpr Duration promptFinal = std::chrono::milliseconds(300);
    static constexpr int largestHopFactor = 4;
    /// A final text that has waited so long makes segments close early, until one is prompt again.
    static constexpr Duration veryLateFinal = std::chrono::milliseconds(3000);

    /// Decode the whole segment.
    struct Final
    {
        SpeechSegment segment;
    };
    /// Decode the open segment as far as it has come.
    struct Volatile
    {
        std::int64_t start;
    };
    /// Nothing to do before this time, unless something happens; none: until something happens.
    struct Nothing
    {
        std::optional<Time> until;
    };
    using Job = std::variant<Nothing, Volatile, Final>;

    /// What of a segment a decode has heard, or could hear.
    struct Extent
    {
        std::int64_t start = 0;
        std::int64_t voiced = 0;
        std::int64_t silence = 0; ///< behind the speech

        /// All that was said, and enough behind it that nothing more can belong to it.
        bool isWholeOf(const SpeechSegment &segment) const
        {
            return start == segment.start && voiced == segment.voiced && silence >= shortPause;
        }
    };

    /// The open segment has grown. Whatever was planned for another open segment is stale.
    void opened(const Extent &extent, Time now);
    /// There is no open segment.
    void nothingOpen();
    void closed(SpeechSegment segment, Time now);

    /// The next job; the decoder is busy until it calls done().
    Job next(Time now);
    void done(Time now);

    bool wantsEarlyClosing(Time now) const;
    /// Finals that wait for the decoder or are in it.
    std::size_t pendingFinals() const { return m_waiting.size() + (m_current ? 1 : 0); }
    /// The sound that waits in them.
    std::int64_t pendingSamples() const;
    /// Where the oldest of them starts.
    std::optional<std::int64_t> oldestPending() const;
    Duration hop() const;

private:
    struct Waiting
    {
        SpeechSegment segment;
        Time since;
    };
    struct Open
    {
        Extent extent;
        Time grown;
    };

    void noteWait(Duration wait);
    bool hasNewSpeech() const;
    bool hasNewPause() const;
    Duration pauseHop() const;

    std::deque<Waiting> m_waiting;
    std::optional<Open> m_open;
    std::optional<Extent> m_lastVolatile; ///< what the last volatile decode heard
    std::optional<std::int64_t> m_current; ///< start of the final in the decoder
    std::optional<Time> m_started; ///< of the last job
    Duration m_lastDecode {};
    int m_hopFactor = 1;
    bool m_closesEarly = false;
};

} // namespace lumaphone
