#include "bench/speech/FileScores.h"

#include "bench/speech/Playlist.h"
#include "bench/speech/RunningCaptions.h"
#include "bench/speech/Waiting.h"
#include "support/WavFile.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/prctl.h>
#include <sys/resource.h>

#include <csignal>
#include <functional>

namespace lumaphone::bench {

namespace {

constexpr std::chrono::minutes fileLimit(10);
/// However short, a list has all recordings.
constexpr double oneRound = 0.01;

/// The text that a program finds in a file. Every call is a process of its own.
using FileReader = std::function<QString(const QString &path)>;

double cpuSecondsOfEndedChildren()
{
    rusage usage {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

FileScores scoresOf(const FileReader &read, const test::SpokenRecordings &speech)
{
    FileScores scores;
    for (const QString &set : speech.sets()) {
        WordCount sum;
        for (const test::SpokenRecording &recording : speech.recordings) {
            if (recording.set == set) {
                scores.texts.append(read(recording.path).simplified());
                sum += countWords(recording.transcript, scores.texts.constLast(), speech.language);
            }
        }
        scores.words.emplace_back(set, sum);
    }
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("all.wav"));
    const Playlist all = Playlist::joined(speech, oneRound);
    test::writeWav(path, all.samples());
    const auto begin = std::chrono::steady_clock::now();
    const double before = cpuSecondsOfEndedChildren();
    read(path);
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    scores.cpuShare = (cpuSecondsOfEndedChildren() - before) / all.seconds();
    scores.realTimeFactor = passed.count() / all.seconds();
    return scores;
}

QString readWithPeer(const QString &command, const QString &path)
{
    QProcess process;
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(command,
        {QStringLiteral("-infile"), path, QStringLiteral("-logfn"), QStringLiteral("/dev/null")},
        QIODevice::ReadOnly);
    waitUntil([&process] { return process.state() == QProcess::NotRunning; }, fileLimit);
    if (process.state() != QProcess::NotRunning || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        throw BenchError(QStringLiteral("%1 failed on %2.").arg(command, path));
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

FileScores fileScores(const ProgramUnderTest &program, const test::SpokenRecordings &speech)
{
    return scoresOf(
        [&](const QString &path) {
            RunningCaptions captions(program, path, speech.language);
            captions.waitUntilEnded(fileLimit);
            return captions.trace().finalText();
        },
        speech);
}

std::optional<FileScores> peerScores(const test::SpokenRecordings &speech)
{
    const QString command = QStandardPaths::findExecutable(QStringLiteral("pocketsphinx_continuous"));
    if (command.isEmpty() || speech.language != AppleSystemSpeechLanguage::english) {
        return std::nullopt;
    }
    return scoresOf([&command](const QString &path) { return readWithPeer(command, path); }, speech);
}

} // namespace lumaphone::bench
