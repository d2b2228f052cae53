#pragma once

#include "support/SoundDaemons.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lumaphone::test {

/// A sound that is being played on a private server by a process of its own. Ends with this object.
class SoundPlayback
{
public:
    SoundPlayback(const QStringList &command, std::unique_ptr<QTemporaryFile> samples);
    ~SoundPlayback();
    SoundPlayback(SoundPlayback &&) noexcept = default;
    SoundPlayback &operator=(SoundPlayback &&) = delete;

    /// Whether all of it has been played.
    bool isFinished() const { return m_player->state() == QProcess::NotRunning; }
    void stop();

private:
    std::unique_ptr<QTemporaryFile> m_samples;
    std::unique_ptr<QProcess> m_player;
};

/// A program's recording, as the server lists it.
struct SoundRecording
{
    int index;
    QString source;
    bool isPaused;
};

enum class SoundServerKind { pulseAudio, pipeWire };

/// A sound server of the test's own, without hardware. While this object lives, PULSE_SERVER points to it,
/// for this process and those it starts. Dies with the process, however that ends. Failures throw
/// std::runtime_error with what the server's tools said.
class PrivateSoundServer
{
public:
    /// Starts it, without any output or microphone.
    PrivateSoundServer();
    ~PrivateSoundServer();
    PrivateSoundServer(const PrivateSoundServer &) = delete;
    PrivateSoundServer &operator=(const PrivateSoundServer &) = delete;

    /// Of all servers in this process: PipeWire where LUMAPHONE_TEST_SOUND_SERVER is "pipewire".
    static SoundServerKind kind();
    /// What such a server needs and this machine has not got.
    static QStringList missingPrograms();

    /// The folder of its socket and of files for its modules.
    QString folder() const { return m_folder.path(); }
    QString socketPath() const;

    /// Starts it again after kill(), at the same address. Returns when it answers.
    void start();
    /// SIGKILL, to each of its processes.
    void kill();
    /// SIGSTOP: it keeps its connections and answers nothing.
    void freeze();
    void thaw();

    /// Returns the module's index.
    int loadModule(const QString &name, const QStringList &arguments = {});
    void unloadModule(int index);
    /// An output that plays to nobody. Returns the module's index.
    int addOutput(const QString &name, int rateHz = 44100, int channels = 2);
    /// A microphone that hears what is played on the output `name` + "_room". Returns the indexes of its
    /// modules, the microphone's last.
    std::vector<int> addMicrophone(const QString &name, int rateHz = 48000, int channels = 2,
        const QString &format = QStringLiteral("s16le"));
    /// Both return when the server names the new default.
    void setDefaultOutput(const QString &name);
    void setDefaultMicrophone(const QString &name);
    /// What `pactl` prints, such as for {"list", "short", "source-outputs"}.
    QString control(const QStringList &arguments) const;
    /// The recordings of programs, oldest first.
    std::vector<SoundRecording> recordings() const;

    /// Plays an audio file, on the default output if none is named.
    SoundPlayback play(const QString &filePath, const QString &output = {}) const;
    /// Plays interleaved 16-bit samples of this machine's byte order. The server keeps `ahead` of it in
    /// store: much of it bridges the pauses of a busy machine.
    SoundPlayback playSamples(const std::vector<qint16> &samples, int rateHz, int channels,
        const QString &output = {}, std::chrono::milliseconds ahead = std::chrono::milliseconds(500)) const;

    /// Recordings of read English sentences that lie on the machine, in order.
    static QStringList speechFiles();

private:
    void awaitAnswer(
        const QStringList &question, const std::function<bool(const QString &)> &isExpected) const;
    void setEnvironment(const char *name, const QByteArray &value);

    QTemporaryDir m_folder;
    std::vector<std::pair<QByteArray, std::optional<QByteArray>>> m_formerEnvironment;
    std::unique_ptr<SoundDaemons> m_daemons;
};

} // namespace lumaphone::test
