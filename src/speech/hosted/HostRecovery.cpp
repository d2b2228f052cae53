#include "speech/hosted/HostRecovery.h"

namespace lumaphone {

void HostRecovery::closed(const host::Closed &segment)
{
    m_stalls = 0;
    m_closed.push_back(segment);
}

void HostRecovery::decoded(const host::Decoded &text)
{
    m_stalls = 0;
    if (!text.isFinal) {
        return;
    }
    m_hasProgressed = true;
    while (!m_closed.empty() && m_closed.front().start <= text.start) {
        m_closed.pop_front();
    }
}

std::optional<HostRecovery::Restart> HostRecovery::died(Time now, std::int64_t sent)
{
    while (!m_restarts.empty() && now - m_restarts.front() >= std::chrono::minutes(1)) {
        m_restarts.pop_front();
    }
    if (m_restarts.size() >= restartsPerMinute) {
        return std::nullopt;
    }
    m_restarts.push_back(now);
    Restart restart;
    // Twice in a row at the same place: the sound there is what it dies of.
    if (!m_hasProgressed) {
        restart.skipTo = m_closed.empty() ? sent : m_closed.front().end;
    }
    m_hasProgressed = false;
    m_closed.clear();
    return restart;
}

std::optional<HostRecovery::Restart> HostRecovery::stalled(Time now, std::int64_t sent)
{
    return ++m_stalls >= mostStalls ? std::nullopt : died(now, sent);
}

} // namespace lumaphone
