#include "platform/sound/SoundAccess.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumaphone {

namespace {

/// Where libpulse looks, in its notation: "unix:/path", "/path" or the address of another machine, each
/// perhaps after "{machine}".
QList<QByteArray> serverAddresses()
{
    const QByteArray servers = qgetenv("PULSE_SERVER").simplified();
    if (!servers.isEmpty()) {
        return servers.split(' ');
    }
    const QByteArray folder = qgetenv("PULSE_RUNTIME_PATH");
    return {(folder.isEmpty() ? qgetenv("XDG_RUNTIME_DIR") + "/pulse" : folder) + "/native"};
}

bool answers(const QByteArray &path)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof(address.sun_path))) {
        return false;
    }
    std::copy_n(path.constData(), path.size(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return false;
    }
    const bool isReachable
        = ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0
        || errno == EAGAIN; // a server that is busy
    ::close(socket);
    return isReachable;
}

bool isReachable(QByteArray address)
{
    if (address.startsWith('{')) {
        address = address.mid(address.indexOf('}') + 1);
    }
    if (address.startsWith("unix:")) {
        address = address.mid(5);
    }
    // Another machine's server needs no socket of the sandbox; connecting to it will tell.
    return !address.startsWith('/') || answers(address);
}

} // namespace

bool mayUseSound(const PulseOptions &options)
{
    if (!QFile::exists(options.sandboxMarkerPath)) {
        return true;
    }
    const QList<QByteArray> addresses = serverAddresses();
    return std::any_of(addresses.begin(), addresses.end(), isReachable);
}

} // namespace lumaphone
