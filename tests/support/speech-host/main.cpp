// Speaks the protocol of the speech host. The configuration's runtime folder names the script; "echo" makes
// of each message of sound a closed segment whose final text is its first sample.

#include "speech/host/HostConnection.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <string>

using namespace lumaphone;
using namespace lumaphone::host;

namespace {

constexpr std::int16_t poison = 666;
constexpr std::int16_t fatal = 667;

void sayGarbage()
{
    const Bytes garbage(4096, 0xFF);
    [[maybe_unused]] const ssize_t count = ::write(3, garbage.data(), garbage.size());
}

void echo(HostConnection &connection, const Sound &sound, const std::string &script)
{
    const std::int64_t end = sound.position + static_cast<std::int64_t>(sound.samples.size());
    connection.send(Closed {sound.position, end});
    // Of this sound every host dies, of the other one only a host that is told so.
    if (sound.samples.front() == poison || (script == "mortal" && sound.samples.front() == fatal)) {
        ::_exit(255);
    }
    if (script == "fails" && sound.samples.front() == fatal) {
        connection.send(Failure {FailureKind::decoding, "it cannot be heard"});
        return;
    }
    connection.send(Decoded {sound.position, end, end - sound.position, true, false, false, 1, "en", "Speech",
        std::to_string(sound.samples.front())});
    connection.send(Settled {end});
}

void serve(HostConnection &connection, const std::string &script)
{
    if (script == "exits") {
        ::_exit(255);
    }
    if (script == "garbage") {
        sayGarbage();
        ::pause();
    }
    if (script == "refuses") {
        connection.send(Failure {FailureKind::network, "model.onnx"});
        return;
    }
    if (script == "loads for ever") {
        ::pause();
    }
    connection.send(Loading {LoadStage::network});
    connection.send(Ready {script == "newer" ? "1.14.0" : "1.13.8"});
    while (const auto request = connection.receive()) {
        if (const auto *const sound = std::get_if<Sound>(&*request)) {
            if (script == "deaf") {
                ::pause();
            }
            echo(connection, *sound, script);
        } else {
            connection.send(Finished {});
        }
    }
}

} // namespace

int main()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    HostConnection connection(3);
    const auto first = connection.receive();
    if (first) {
        serve(connection, std::get<Configure>(*first).runtimeFolder);
    }
    ::_exit(0);
}
