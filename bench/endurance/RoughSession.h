#pragma once

#include "bench/endurance/TrialUser.h"
#include "support/MisbehavingHttpServer.h"
#include "support/PrivateSoundServer.h"

#include <QHash>

#include <chrono>
#include <map>
#include <random>

namespace lumaphone::bench {

/// A long session of captions in which everything happens that can: speech and silence, other outputs, sound
/// servers, translation services and speech hosts that fail, and the program itself is ended and killed. Its
/// last third goes without ends of the program, to see what it holds of memory.
class RoughSession
{
public:
    RoughSession(std::chrono::seconds length, unsigned seed);

    /// Whether no line was lost, no process left and the memory stayed as it was.
    bool run();

private:
    using Incident = void (RoughSession::*)();
    struct Use
    {
        double seconds; ///< since the beginning
        double programMB;
        double hostMB;
    };

    void startSounds();
    void startProgram();
    Incident nextIncident();
    double secondsSinceStart() const;
    bool isListening() const;
    bool isCalm() const;

    void playNextRecording();
    void speak();
    void keepSilent();
    void switchOutput();
    void killSoundServer();
    void freezeSoundServer();
    void changeEndpoint();
    void killHost();
    void stopHost();
    void killProgram();
    void killProgramAtALine();
    void endProgram();
    void end();

    /// Runs the event loop, reads what the program prints and notes its memory.
    void passUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit);
    void pass(std::chrono::milliseconds time);
    void readLines();
    void noteUse();
    void count(const QString &what);

    /// Compares the draft with what was shown and saves it into the library.
    void afterTheEnd();
    void compareDraft();
    bool compareLibrary();
    bool tellMemory();

    std::chrono::seconds m_length;
    std::mt19937 m_chance;
    std::chrono::steady_clock::time_point m_began;
    TrialUser m_user;
    test::PrivateSoundServer m_sound;
    test::MisbehavingHttpServer m_server;
    QString m_output = QStringLiteral("speakers");
    QStringList m_unplayed; ///< recordings
    std::optional<test::SoundPlayback> m_playback;
    std::unique_ptr<test::RunningProgram> m_program;
    std::vector<KnownProcess> m_family; ///< what the program has started
    qsizetype m_read = 0; ///< of what the program has printed
    QHash<QString, QString> m_shown; ///< what was final of this program, as last shown, by identity
    QStringList m_allShown; ///< those of all
    int m_lost = 0;
    int m_unexpected = 0; ///< ends, and ends that did not come
    std::vector<std::chrono::steady_clock::time_point> m_hostKills;
    QStringList m_left; ///< processes
    double m_slowestEnd = 0;
    std::vector<Use> m_uses; ///< of the calm part
    std::chrono::steady_clock::time_point m_noted;
    std::map<QString, int> m_counts;
};

} // namespace lumaphone::bench
