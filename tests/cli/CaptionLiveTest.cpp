#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace captionlivetest {

using namespace lumaphone;
using test::PrivateSoundServer;
using test::RunningProgram;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);

QStringList captionCommand(const QString &input)
{
    return {"caption", input, "--language", "english", "--format", "jsonl", "--translate", "off"};
}

/// The text of the session: the final lines in order, joined.
QStringList finalLines(RunningProgram &captions)
{
    QStringList ids;
    QHash<QString, QString> texts;
    for (const QByteArray &line : captions.outputLines()) {
        const json::Value event = json::parse(line);
        if (json::text(event, "event") == "line" && json::boolean(event, "isFinal")) {
            const QString id = json::text(event, "id");
            if (!texts.contains(id)) {
                ids.append(id);
            }
            texts[id] = json::text(event, "sourceText");
        }
    }
    QStringList lines;
    for (const QString &id : ids) {
        lines.append(texts[id]);
    }
    return lines;
}

QSet<QString> words(const QString &text)
{
    const QStringList list = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return {list.begin(), list.end()};
}

/// Share of the words of `expected` that were heard.
double heardShare(const QString &expected, const QString &heard)
{
    const QSet<QString> wanted = words(expected);
    QSet<QString> common = wanted;
    common.intersect(words(heard));
    return static_cast<double>(common.size()) / static_cast<double>(wanted.size());
}

/// What the program hears when it is given the files themselves.
QString heardInFiles(const QStringList &paths)
{
    QString text;
    for (const QString &path : paths) {
        RunningProgram captions(program, {"caption", path, "--language", "english", "--translate", "off"});
        captions.waitForEnd();
        text += QString::fromUtf8(captions.output()).replace(QLatin1Char('\n'), QLatin1Char(' '));
    }
    return text;
}

/// Whether final lines with most of these words come, while the sound goes on in silence.
bool waitUntilHeard(RunningProgram &captions, const QString &expected)
{
    return test::waitUntil(
        [&] { return heardShare(expected, finalLines(captions).join(QLatin1Char(' '))) > 0.6; }, 30000);
}

bool records(const PrivateSoundServer &server, const QString &source)
{
    const std::vector<test::SoundRecording> recordings = server.recordings();
    return std::any_of(recordings.begin(), recordings.end(), [&](const test::SoundRecording &recording) {
        return !recording.isPaused && recording.source == source;
    });
}

bool waitUntilRecording(const PrivateSoundServer &server, const QString &source = "speakers.monitor")
{
    return test::waitUntil([&] { return records(server, source); }, 30000);
}

bool waitUntilPlayed(const test::SoundPlayback &playback)
{
    return test::waitUntil([&playback] { return playback.isFinished(); }, 60000);
}

} // namespace

class CaptionLiveTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void theComputersSoundIsCaptioned()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        RunningProgram captions(program, captionCommand("system"));
        QVERIFY(waitUntilRecording(server));
        const QStringList files = PrivateSoundServer::speechFiles().mid(0, 2);
        for (const QString &file : files) {
            const auto playback = server.play(file);
            QVERIFY(waitUntilPlayed(playback));
        }
        QVERIFY2(waitUntilHeard(captions, heardInFiles(files)), captions.output());
        captions.signal(SIGINT);
        QVERIFY(captions.waitForEnd());
        QVERIFY(!captions.crashed());
        QCOMPARE(captions.exitCode(), 0);
    }

    void theSessionFollowsTheDefaultOutput()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        server.addOutput("headphones");
        server.setDefaultOutput("speakers");
        RunningProgram captions(program, captionCommand("system"));
        QVERIFY(waitUntilRecording(server));
        server.setDefaultOutput("headphones");
        QVERIFY(waitUntilRecording(server, "headphones.monitor"));
        QVERIFY(!records(server, "speakers.monitor"));
        const QString file = PrivateSoundServer::speechFiles().constFirst();
        const auto playback = server.play(file, "headphones");
        QVERIFY(waitUntilPlayed(playback));
        QVERIFY2(waitUntilHeard(captions, heardInFiles({file})), captions.output());
        captions.signal(SIGTERM);
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
    }

    void anOutputThatHasGoneIsWaitedForAndHeardAgain()
    {
        PrivateSoundServer server;
        const int output = server.addOutput("speakers");
        RunningProgram captions(program, captionCommand("system"));
        QVERIFY(waitUntilRecording(server));
        const QStringList files = PrivateSoundServer::speechFiles().mid(0, 2);
        const auto before = server.play(files.constFirst());
        QVERIFY(waitUntilPlayed(before));
        QVERIFY2(waitUntilHeard(captions, heardInFiles({files.constFirst()})), captions.output());
        server.unloadModule(output);
        QVERIFY2(test::waitUntil([&] { return captions.output().contains("中斷了，正在等它回來"); }, 30000),
            captions.output());
        server.addOutput("speakers");
        QVERIFY2(waitUntilRecording(server), captions.messages());
        const auto after = server.play(files.constLast());
        QVERIFY(waitUntilPlayed(after));
        QVERIFY2(waitUntilHeard(captions, heardInFiles({files.constLast()})), captions.output());
        captions.signal(SIGINT);
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
    }

    void theMicrophoneIsCaptioned()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        server.addMicrophone("desk", 48000, 2);
        server.setDefaultMicrophone("desk");
        RunningProgram captions(program, captionCommand("microphone"));
        QVERIFY(waitUntilRecording(server, "desk"));
        const QString file = PrivateSoundServer::speechFiles().constFirst();
        const auto playback = server.play(file, "desk_room");
        QVERIFY(waitUntilPlayed(playback));
        QVERIFY2(waitUntilHeard(captions, heardInFiles({file})), captions.output());
        captions.signal(SIGINT);
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 0);
    }

    void aMonitorIsNoMicrophone()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        RunningProgram captions(program, captionCommand("microphone"));
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY2(captions.output().contains(
                     "目前找不到可用的麥克風輸入。請確認外接麥克風已連接，並在系統設定選成目前輸入裝置。"),
            captions.output());
        QVERIFY(server.recordings().empty());
    }

    void aComputerWithoutAnOutputIsSaid()
    {
        const PrivateSoundServer server;
        RunningProgram captions(
            program, {"caption", "system", "--language", "english", "--translate", "off"});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QCOMPARE(captions.messages(), QStringLiteral("系統音訊擷取錯誤：找不到可擷取的顯示器。\n").toUtf8());
    }

    void aMissingSoundServerIsSaid()
    {
        RunningProgram captions(program, {"caption", "system"}, {{"PULSE_SERVER", "unix:/nowhere/sound"}});
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY(!captions.messages().isEmpty());
        QCOMPARE(captions.output(), QByteArray());
    }

    void theLossOfTheServerEndsTheSession()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        RunningProgram captions(
            program, {"caption", "system", "--language", "english", "--translate", "off"});
        QVERIFY(waitUntilRecording(server));
        server.kill();
        QVERIFY(captions.waitForEnd());
        QCOMPARE(captions.exitCode(), 1);
        QVERIFY2(captions.messages().startsWith("系統音訊擷取已停止："), captions.messages());
    }
};

LUMAPHONE_TEST(CaptionLiveTest)

} // namespace captionlivetest

#include "CaptionLiveTest.moc"
