// Runs speech networks for the program that started it, over the socket it inherited. What goes wrong in the
// networks' library ends this process and no other.

#include "speech/host/HostFailure.h"
#include "speech/host/Sandbox.h"
#include "speech/host/SpeechHost.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

using namespace lumaphone::host;

namespace {

constexpr int socketNumber = 3;
constexpr int failed = 1;
constexpr int misused = 64;

bool isSocket(int number)
{
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(number, SOL_SOCKET, SO_TYPE, &type, &size) == 0;
}

/// Ends the process without destructors: the library's threads may be busy.
[[noreturn]] void serve(HostConnection &connection)
{
    try {
        Sandbox::close();
        SpeechHost host(connection);
        host.run();
        ::_exit(EXIT_SUCCESS);
    } catch (const HostFailure &failure) {
        connection.send(Failure {failure.kind(), failure.what()});
    } catch (const std::exception &error) {
        connection.send(Failure {FailureKind::protocol, error.what()});
    }
    ::_exit(failed);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 || !isSocket(socketNumber)) {
        std::cerr << "lumaphone-speech-host is started by Lumaphone, which talks to it over a socket.\n";
        return misused;
    }
    if (!Sandbox::bindTo(std::atoi(argv[1]), socketNumber)) {
        return failed;
    }
    HostConnection connection(socketNumber);
    serve(connection);
}
