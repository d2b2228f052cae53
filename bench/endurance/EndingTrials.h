#pragma once

#include "bench/endurance/TrialUser.h"
#include "bench/speech/Playlist.h"
#include "bench/speech/SoundServer.h"
#include "support/MisbehavingHttpServer.h"

#include <functional>
#include <optional>
#include <random>
#include <vector>

namespace lumaphone::test {
class User;
}

namespace lumaphone::bench {

enum class EndedProgram { terminal, window };

/// In which the program is asked to end.
struct EndingState
{
    enum class Kind { starting, listening, translating, endpointHangs, hostHangs };

    Kind kind;
    QString name; ///< for the command line
    QString title;
};

const std::vector<EndingState> &endingStates();

/// Brings the program into a state and ends it, by Ctrl-C, a termination or closing its window.
class EndingTrials
{
public:
    EndingTrials(EndedProgram program, unsigned seed);
    ~EndingTrials();

    double secondsToEnd(const EndingState &state);
    /// Processes that were still there after an end.
    const QStringList &left() const { return m_left; }

private:
    void playOn();
    void discardDraft() const;
    double terminalSeconds(EndingState::Kind kind);
    double windowSeconds(EndingState::Kind kind);
    void reach(EndingState::Kind kind, test::RunningProgram &program);
    double measure(test::RunningProgram &program, const std::function<void()> &end);
    void waitFor(const std::function<bool()> &condition, test::RunningProgram &program, const char *what);

    EndedProgram m_program;
    std::mt19937 m_chance;
    SoundServer m_sound;
    TrialUser m_user;
    QTemporaryDir m_folder;
    test::SpokenRecordings m_speech;
    Playlist m_playlist;
    std::optional<test::SoundPlayback> m_playback;
    test::MisbehavingHttpServer m_server;
    QStringList m_left;
};

} // namespace lumaphone::bench
