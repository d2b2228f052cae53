#include "bench/speech/SoundServer.h"

#include "bench/speech/Waiting.h"

#include <QStandardPaths>

namespace lumaphone::bench {

using namespace std::chrono_literals;

SoundServer::SoundServer()
{
    for (const auto &command :
        {QStringLiteral("pulseaudio"), QStringLiteral("pactl"), QStringLiteral("pacat")}) {
        if (QStandardPaths::findExecutable(command).isEmpty()) {
            throw BenchError(
                QStringLiteral("%1 is missing. It is in the packages pulseaudio and pulseaudio-utils.")
                    .arg(command));
        }
    }
    m_server.emplace();
    m_server->addOutput(QString::fromLatin1(output), 48000, 2);
}

test::SoundPlayback SoundServer::play(const Playlist &playlist) const
{
    return m_server->playSamples(playlist.samples(), 16000, 1, QString(), 2s);
}

} // namespace lumaphone::bench
