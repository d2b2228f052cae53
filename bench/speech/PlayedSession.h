#pragma once

#include "bench/speech/MonitorRecording.h"
#include "bench/speech/Playlist.h"
#include "bench/speech/RunningCaptions.h"
#include "bench/speech/SoundServer.h"
#include "support/speech-scores/CaptionMeasures.h"

#include <optional>

namespace lumaphone::bench {

/// When a recording of a playlist was really heard.
struct HeardStretch
{
    test::SpokenStretch spoken;
    /// Whether speech in it lasted as long as in the recording. If not, the sound server stumbled.
    bool isWhole = false;
};

/// The program listening to the sound server, while something is played there, at the speed of sound.
class PlayedSession
{
public:
    /// Starts the program and waits until it listens.
    PlayedSession(
        const SoundServer &server, const ProgramUnderTest &program, AppleSystemSpeechLanguage language);

    double secondsUntilListening() const { return m_secondsUntilListening; }
    /// Begins to play; returns when the first recording is heard.
    void play(const Playlist &playlist);
    /// Waits until all has been played and no text changes any more.
    void waitUntilSettled();
    /// Ends the program in an orderly way. Its captions are kept.
    void end() { m_captions.end(); }

    const test::CaptionTrace &trace() const { return m_captions.trace(); }
    pid_t processId() const { return m_captions.processId(); }
    /// For each place of the playlist that was played, in order.
    std::vector<HeardStretch> stretches(const Playlist &playlist) const;

private:
    std::optional<test::TraceTime> lastChange() const;

    const SoundServer &m_server;
    RunningCaptions m_captions;
    double m_secondsUntilListening;
    MonitorRecording m_recording;
    std::optional<test::SoundPlayback> m_playback;
    std::chrono::milliseconds m_limit {0};
};

} // namespace lumaphone::bench
