// What recognition costs and how late texts come, with any network, over continuous speech at the speed of
// sound:
//     HostLoad NETWORK TOKENS VOICE-DETECTOR MINUTES SPEECH.wav...
// The network of random_network.py costs what the real one does.

#include "bench/speech/ProcessUse.h"
#include "bench/speech/Statistics.h"
#include "speech/host/Segmenter.h"
#include "speech/hosted/HostedRecognizer.h"
#include "support/WavFile.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cstdio>
#include <thread>

using namespace lumaphone;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::size_t pieceSize = 320;
constexpr auto pieceLength = std::chrono::milliseconds(20);

double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

void print(const char *name, const std::vector<double> &values)
{
    std::printf("%-34s median %6.1f ms   95th %6.1f ms   99th %6.1f ms   (%zu)\n", name,
        1000 * bench::percentile(values, 0.5), 1000 * bench::percentile(values, 0.95),
        1000 * bench::percentile(values, 0.99), values.size());
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 6) {
        std::fprintf(stderr, "HostLoad NETWORK TOKENS VOICE-DETECTOR MINUTES SPEECH.wav...\n");
        return 64;
    }
    std::vector<std::int16_t> speech;
    for (const QString &path : arguments.mid(5)) {
        const auto part = test::samplesOfWav(path);
        speech.insert(speech.end(), part.begin(), part.end());
    }

    host::Configure configuration;
    configuration.runtimeFolder = LUMAPHONE_SPEECH_RUNTIME;
    configuration.voiceDetector = arguments[3].toStdString();
    configuration.network
        = {host::NetworkKind::senseVoice, {arguments[1].toStdString()}, arguments[2].toStdString()};

    Clock::time_point start;
    std::vector<double> volatileDelays;
    std::vector<double> finalDelays;
    std::vector<double> ownDelays;
    const auto heard = [&](const host::Decoded &text) {
        // From the moment at which the last sample of the text was spoken.
        const double delay = seconds(Clock::now() - start) - double(text.end) / samplesPerSecond;
        (text.isFinal ? finalDelays : volatileDelays).push_back(delay);
        if (!text.isFinal) {
            // The last sample arrives with the end of its piece.
            const auto pieces = (text.end + std::int64_t {pieceSize} - 1) / std::int64_t {pieceSize};
            const double arrival = seconds(pieceLength * pieces);
            ownDelays.push_back(seconds(Clock::now() - start) - arrival - text.milliseconds / 1000.0);
        }
    };
    SpeechHostSession session(QStringLiteral(LUMAPHONE_SPEECH_HOST), configuration, heard);
    const auto loading = Clock::now();
    session.start();
    std::printf("%-34s %6.2f s\n", "loading", seconds(Clock::now() - loading));

    const double length = arguments[4].toDouble() * 60;
    const double hostBefore = bench::cpuSecondsOf(session.processId());
    const double ownBefore = bench::cpuSecondsOf(::getpid());
    start = Clock::now();
    auto next = start;
    for (std::size_t at = 0; seconds(next - start) < length;
         at = (at + pieceSize) % (speech.size() - pieceSize)) {
        next += pieceLength;
        std::this_thread::sleep_until(next);
        session.append(std::span(speech).subspan(at, pieceSize));
    }
    const double elapsed = seconds(Clock::now() - start);
    std::printf("%-34s %6.1f %% of one processor\n", "host",
        100 * (bench::cpuSecondsOf(session.processId()) - hostBefore) / elapsed);
    std::printf("%-34s %6.2f %% of one processor\n", "program",
        100 * (bench::cpuSecondsOf(::getpid()) - ownBefore) / elapsed);
    const bench::ProcessMemory host = bench::memoryOf(session.processId());
    std::printf("%-34s %6.0f MB, at most %.0f MB\n", "host, resident", host.residentMB, host.peakMB);
    std::printf("%-34s %6.0f MB\n", "program, resident", bench::memoryOf(::getpid()).residentMB);
    session.finish();
    print("volatile text after its last sample", volatileDelays);
    print("final text after its last sample", finalDelays);
    print("volatile, without decoding", ownDelays);
    return 0;
}
