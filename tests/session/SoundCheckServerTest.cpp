#include "base/MainQueue.h"
#include "platform/desktop/SystemClock.h"
#include "platform/sound/PulseMicrophoneCapture.h"
#include "platform/sound/PulseScreenAudioCapture.h"
#include "session/SoundCheck.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>

namespace soundcheckservertest {

using namespace lumaphone;
using namespace lumaphone::test;
using enum LumaphoneAudioInputSource;

namespace {

/// Ten seconds of a tone, as a player gives it to the server.
std::vector<qint16> loudTone()
{
    std::vector<qint16> samples;
    for (const double sample : tone(440, 0.5, 44100, 0, 441'000)) {
        samples.push_back(qint16(sample * 32767));
    }
    return samples;
}

} // namespace

/// The test of sound with real sound.
class SoundCheckServerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void itHearsWhatIsPlayedAndRecordsOnlyWhileItListens()
    {
        PrivateSoundServer server;
        server.addOutput("speakers");
        server.setDefaultOutput("speakers");
        const auto mainQueue = MainQueue::create();
        SoundCheck check(std::make_shared<PulseScreenAudioCapture>(mainQueue),
            std::make_shared<PulseMicrophoneCapture>(mainQueue), std::make_shared<SystemClock>(), mainQueue);
        QStringList devices;
        QStringList failures;
        QList<double> peaks;
        connect(&check, &SoundCheck::deviceChanged, this, [&](const QString &name) { devices.append(name); });
        connect(&check, &SoundCheck::failed, this, [&](const QString &message) { failures.append(message); });
        connect(&check, &SoundCheck::measured, this, [&](double peak) { peaks.append(peak); });
        QVERIFY(server.recordings().empty());

        check.start(systemAudio);
        QVERIFY(waitUntil([&] { return !peaks.isEmpty(); }, 30'000));
        QCOMPARE(devices.size(), 1);
        QVERIFY2(server.control({"list", "sinks"}).contains(devices[0]), qPrintable(devices[0]));
        QCOMPARE(server.recordings().size(), std::size_t(1));
        QCOMPARE(server.recordings()[0].source, "speakers.monitor");
        QCOMPARE(*std::max_element(peaks.begin(), peaks.end()), 0.0);
        {
            const SoundPlayback playback = server.playSamples(loudTone(), 44100, 1);
            QVERIFY(waitUntil([&] { return peaks.constLast() > 0.3; }, 30'000));
        }
        check.stop();
        QVERIFY(waitUntil([&] { return server.recordings().empty(); }, 30'000));
        const qsizetype heard = peaks.size();
        settle();
        QCOMPARE(peaks.size(), heard);
        QCOMPARE(failures, QStringList());

        server.addMicrophone("headset");
        server.setDefaultMicrophone("headset");
        check.start(microphone);
        QVERIFY(waitUntil([&] { return peaks.size() > heard; }, 30'000));
        QCOMPARE(server.recordings().size(), std::size_t(1));
        QCOMPARE(server.recordings()[0].source, "headset");
        server.kill();
        QVERIFY(waitUntil([&] { return !failures.isEmpty(); }, 30'000));
        QVERIFY(!check.isListening());
    }
};

LUMAPHONE_TEST(SoundCheckServerTest)

} // namespace soundcheckservertest

#include "SoundCheckServerTest.moc"
