#include "platform/sound/PulseSourceDirectory.h"

#include <algorithm>

namespace lumaphone {

PulseSourceDirectory::PulseSourceDirectory(const PulseOptions &options)
    : m_connection(options, {})
{
    // Watching begins before listing, so that no removal slips through between them.
    m_watch = m_connection.watch(
        PA_SUBSCRIPTION_MASK_SOURCE, [this](pa_subscription_event_type_t event, std::uint32_t index) {
            if ((event & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_REMOVE) {
                const std::lock_guard lock(m_mutex);
                m_removed.insert(index);
            }
        });
    const std::string defaultName = m_connection.defaultSourceName();
    for (PulseSource &source : m_connection.sources()) {
        if (source.isMonitor()) {
            continue;
        }
        const std::lock_guard lock(m_mutex);
        m_microphones.emplace(source.index, source.name);
        if (source.name == defaultName) {
            m_default = std::move(source);
        }
    }
}

bool PulseSourceDirectory::hasMicrophone(const std::string &name) const
{
    if (m_connection.isLost()) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_microphones.begin(), m_microphones.end(), [&](const auto &microphone) {
        return microphone.second == name && !m_removed.contains(microphone.first);
    });
}

} // namespace lumaphone
