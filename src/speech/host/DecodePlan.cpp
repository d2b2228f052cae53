#include "speech/host/DecodePlan.h"

#include <algorithm>
#include <numeric>

namespace lumaphone {

void DecodePlan::opened(const Extent &extent, Time now)
{
    m_open = Open {extent, now};
}

void DecodePlan::nothingOpen()
{
    m_open.reset();
}

void DecodePlan::closed(SpeechSegment segment, Time now)
{
    if (m_open && m_open->extent.start == segment.start) {
        m_open.reset();
    }
    m_waiting.push_back({std::move(segment), now});
}

DecodePlan::Job DecodePlan::next(Time now)
{
    if (!m_waiting.empty()) {
        Waiting oldest = std::move(m_waiting.front());
        m_waiting.pop_front();
        noteWait(now - oldest.since);
        m_current = oldest.segment.start;
        m_started = now;
        return Final {std::move(oldest.segment)};
    }
    const bool isPause = hasNewPause();
    if (!isPause && !hasNewSpeech()) {
        return Nothing {};
    }
    if (m_started) {
        const Time due = *m_started + (isPause ? pauseHop() : hop());
        const bool isFresh = isPause || m_open->grown >= due;
        if (now < due || (!isFresh && now < due + freshness)) {
            return Nothing {isPause ? due : due + freshness};
        }
    }
    m_lastVolatile = m_open->extent;
    m_started = now;
    return Volatile {m_open->extent.start};
}

bool DecodePlan::hasNewSpeech() const
{
    return m_open
        && (!m_lastVolatile || m_lastVolatile->start != m_open->extent.start
            || m_lastVolatile->voiced < m_open->extent.voiced);
}

/// Whether someone has just stopped speaking, and no decode has heard all of it.
bool DecodePlan::hasNewPause() const
{
    return m_open && m_open->extent.silence >= shortPause
        && (hasNewSpeech() || m_lastVolatile->silence < shortPause);
}

void DecodePlan::done(Time now)
{
    m_current.reset();
    m_lastDecode = now - m_started.value_or(now);
}

bool DecodePlan::wantsEarlyClosing(Time now) const
{
    return m_closesEarly || (!m_waiting.empty() && now - m_waiting.front().since > veryLateFinal);
}

std::int64_t DecodePlan::pendingSamples() const
{
    return std::accumulate(
        m_waiting.begin(), m_waiting.end(), std::int64_t {0}, [](std::int64_t sum, const Waiting &waiting) {
            return sum + static_cast<std::int64_t>(waiting.segment.samples.size());
        });
}

std::optional<std::int64_t> DecodePlan::oldestPending() const
{
    if (m_current) {
        return m_current;
    }
    return m_waiting.empty() ? std::nullopt : std::optional(m_waiting.front().segment.start);
}

DecodePlan::Duration DecodePlan::hop() const
{
    const auto share = std::chrono::duration_cast<Duration>(m_lastDecode * hopPerDecode);
    const bool isBeginning = m_open && m_open->extent.voiced < fewWords;
    return std::max(isBeginning ? firstHop : shortestHop, share) * m_hopFactor;
}

DecodePlan::Duration DecodePlan::pauseHop() const
{
    return std::chrono::duration_cast<Duration>(m_lastDecode * pauseHopPerDecode) * m_hopFactor;
}

void DecodePlan::noteWait(Duration wait)
{
    if (wait > lateFinal) {
        m_hopFactor = std::min(m_hopFactor * 2, largestHopFactor);
    } else if (wait <= promptFinal) {
        m_hopFactor = std::max(m_hopFactor / 2, 1);
    }
    if (wait > veryLateFinal) {
        m_closesEarly = true;
    } else if (wait <= promptFinal) {
        m_closesEarly = false;
    }
}

} // namespace lumaphone
