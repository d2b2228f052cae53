#pragma once

#include "platform/sound/PulseConnection.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace lumaphone {

/// The microphones a server had when it was asked, less those that have gone since. Made in the background;
/// whoever asks it later never waits for the server.
class PulseSourceDirectory
{
public:
    /// Connects. Throws CaptureServiceError.
    explicit PulseSourceDirectory(const PulseOptions &options);

    /// The server's default source at that time, or none if it was no microphone.
    const std::optional<PulseSource> &defaultMicrophone() const { return m_default; }
    /// Whether a microphone of this name is there. Monitors of outputs are none. Any thread.
    bool hasMicrophone(const std::string &name) const;

private:
    mutable std::mutex m_mutex;
    std::map<std::uint32_t, std::string> m_microphones; ///< by index
    std::set<std::uint32_t> m_removed;
    std::optional<PulseSource> m_default;
    PulseConnection m_connection; ///< its thread uses what stands above
    std::unique_ptr<PulseConnection::Watch> m_watch;
};

} // namespace lumaphone
