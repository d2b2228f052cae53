#include "speech/DecodePlan.h"

#include <algorithm>
#include <numeric>

namespace lumaphone {

void DecodePlan::opened(std::int64_t start, std::int64_t voiced, Time now)
{
    m_open = Open {start, voiced, now};
}

void DecodePlan::nothingOpen()
{
    m_open.reset();
}

void DecodePlan::closed(SpeechSegment segment, Time now)
{
    if (m_open && m_open->start == segment.start) {
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
    const bool hasNews = m_open
        && (!m_lastVolatile || m_lastVolatile->start != m_open->start
            || m_lastVolatile->voiced < m_open->voiced);
    if (!hasNews) {
        return Nothing {};
    }
    if (m_started) {
        const Time due = *m_started + hop();
        const bool isFresh = m_open->grown >= due;
        if (now < due || (!isFresh && now < due + freshness)) {
            return Nothing {due + freshness};
        }
    }
    m_lastVolatile = m_open;
    m_started = now;
    return Volatile {m_open->start};
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
    return std::max(shortestHop, share) * m_hopFactor;
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
