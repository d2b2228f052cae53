#pragma once

#include "bench/speech/Playlist.h"
#include "support/PrivateSoundServer.h"

#include <optional>

namespace lumaphone::bench {

/// A sound server without loudspeakers, with one output.
class SoundServer
{
public:
    static constexpr auto output = "speakers";

    /// Throws BenchError if its programs are not installed.
    SoundServer();

    test::SoundPlayback play(const Playlist &playlist) const;

private:
    std::optional<test::PrivateSoundServer> m_server;
};

} // namespace lumaphone::bench
