#include "bench/speech/SteadyScores.h"

#include "bench/speech/ProgramUnderTest.h"
#include "bench/speech/Waiting.h"

namespace lumaphone::bench {

namespace {

constexpr int starts = 5;

} // namespace

SteadyScores steadyScores(const SoundServer &server, const ProgramUnderTest &program,
    const test::SpokenRecordings &speech, double minutes)
{
    const Playlist playlist = Playlist::joined(speech, minutes);
    PlayedSession session(server, program, speech.language);
    session.play(playlist);
    const auto begin = std::chrono::steady_clock::now();
    const double before = cpuSecondsWithChildren(session.processId());
    waitFor(std::chrono::milliseconds(static_cast<int>(playlist.spokenSeconds() * 1000)));
    SteadyScores scores;
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    scores.cpuShare = (cpuSecondsWithChildren(session.processId()) - before) / passed.count();
    program.requireEngine(session.processId());
    session.waitUntilSettled();
    scores.program = memoryOf(session.processId());
    if (const auto host = speechHostOf(session.processId())) {
        scores.host = memoryOf(*host);
    }
    session.end();
    scores.words = countWords(playlist.transcript(), session.trace().finalText(), speech.language);
    return scores;
}

std::vector<double> startTimes(
    const SoundServer &server, const ProgramUnderTest &program, AppleSystemSpeechLanguage language)
{
    std::vector<double> times;
    for (int i = 0; i <= starts; ++i) {
        PlayedSession session(server, program, language);
        if (i > 0) {
            times.push_back(session.secondsUntilListening());
        }
        session.end();
    }
    return times;
}

} // namespace lumaphone::bench
