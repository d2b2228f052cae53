#include "session/SoundCheck.h"

#include "support/Coroutines.h"
#include "support/FakeMicrophoneCapture.h"
#include "support/FakeScreenAudioCapture.h"
#include "support/TestSound.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace soundchecktest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;
using enum LumaphoneAudioInputSource;

namespace {

struct Checked
{
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    std::shared_ptr<FakeScreenAudioCapture> screenAudio = std::make_shared<FakeScreenAudioCapture>();
    std::shared_ptr<FakeMicrophoneCapture> microphone = std::make_shared<FakeMicrophoneCapture>();
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    std::unique_ptr<SoundCheck> check
        = std::make_unique<SoundCheck>(screenAudio, microphone, clock, mainQueue);
    QStringList devices;
    QList<double> peaks;
    QStringList failures;

    Checked()
    {
        QObject::connect(
            check.get(), &SoundCheck::deviceChanged, [this](const QString &name) { devices.append(name); });
        QObject::connect(check.get(), &SoundCheck::measured, [this](double peak) { peaks.append(peak); });
        QObject::connect(
            check.get(), &SoundCheck::failed, [this](const QString &message) { failures.append(message); });
    }
    ~Checked()
    {
        check.reset();
        clock->advance(1h);
    }
    Checked(const Checked &) = delete;
    Checked &operator=(const Checked &) = delete;

    FakeRecording &recording() const { return screenAudio->recording(); }
    void play(double amplitude) const
    {
        TestSound sound(analysisDescription, std::vector<double>(320, amplitude));
        recording().deliver(sound.buffer());
        settle();
    }
};

} // namespace

class SoundCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void itTellsHowLoudTheOutputIs()
    {
        Checked checked;
        QVERIFY(!checked.check->isListening());
        QCOMPARE(checked.recording().recordersMade(), 0);
        checked.check->start(systemAudio);
        settle();
        QCOMPARE(checked.devices, QStringList {"Speakers"});
        QCOMPARE(checked.recording().steps, (QStringList {"default output", "start speakers"}));
        checked.play(0);
        checked.play(0.5);
        QCOMPARE(checked.peaks.size(), 2);
        QCOMPARE(checked.peaks[0], 0.0);
        QVERIFY(std::abs(checked.peaks[1] - 0.5) < 0.001);
        QCOMPARE(checked.failures, QStringList());
    }

    void theMicrophoneIsAskedForByWhoeverTestsIt()
    {
        Checked checked;
        checked.microphone->authorization = CaptureAuthorization::notDetermined;
        checked.check->start(microphone);
        settle();
        QCOMPARE(checked.microphone->requests(), 1);
        QCOMPARE(checked.devices, QStringList {"Microphone"});
        QCOMPARE(checked.microphone->recording().steps, (QStringList {"default input", "start mic"}));
        QCOMPARE(checked.screenAudio->checks(), 0);
    }

    void stoppingEndsItAtOnce()
    {
        Checked checked;
        checked.check->start(systemAudio);
        settle();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        checked.recording().deliver(sound.buffer()); // is on its way to the main thread
        checked.check->stop();
        QVERIFY(!checked.recording().isRunning());
        QVERIFY(!checked.recording().hasReceiver());
        settle();
        QCOMPARE(checked.peaks, QList<double>());
        checked.clock->advance(10s);
        settle();
        QCOMPARE(checked.recording().steps.count("default output"), 1);
        checked.check->stop();
    }

    void aStartThatIsGivenUpLeavesNothingBehind()
    {
        Checked checked;
        checked.recording().startGate.close();
        checked.check->start(systemAudio);
        settle();
        checked.check->stop();
        checked.recording().startGate.open();
        settle();
        QVERIFY(!checked.recording().isRunning());
        QCOMPARE(checked.failures, QStringList());
        checked.check->start(systemAudio);
        settle();
        QVERIFY(checked.recording().isRunning());
        checked.check.reset();
        QVERIFY(!checked.recording().isRunning());
    }

    void anotherOutputIsNamed()
    {
        Checked checked;
        checked.check->start(systemAudio);
        settle();
        checked.screenAudio->output = SoundDevice {"headphones", "Headphones"};
        checked.clock->advance(2s);
        settle();
        checked.clock->advance(2s);
        settle();
        QCOMPARE(checked.devices, (QStringList {"Speakers", "Headphones"}));
    }

    void whatCannotBeHeardSaysWhy_data()
    {
        QTest::addColumn<std::function<void(Checked &)>>("prepare");
        QTest::addColumn<bool>("isMicrophone");
        QTest::addColumn<QString>("message");
        using Prepare = std::function<void(Checked &)>;
        QTest::newRow("no output") << Prepare([](Checked &c) { c.screenAudio->output.reset(); }) << false
                                   << "請接上喇叭或耳機";
        QTest::newRow("no right") << Prepare([](Checked &c) { c.screenAudio->isGranted = false; }) << false
                                  << "";
        QTest::newRow("no server") << Prepare([](Checked &c) { c.screenAudio->outputFailure = "no server"; })
                                   << false << "no server";
        QTest::newRow("no recording")
            << Prepare([](Checked &c) { c.recording().startFailure = "busy"; }) << false << "busy";
        QTest::newRow("no microphone")
            << Prepare([](Checked &c) { c.microphone->input.reset(); }) << true << "";
        QTest::newRow("refused") << Prepare([](Checked &c) {
            c.microphone->authorization = CaptureAuthorization::denied;
        }) << true << "";
    }
    void whatCannotBeHeardSaysWhy()
    {
        QFETCH(const std::function<void(Checked &)>, prepare);
        QFETCH(const bool, isMicrophone);
        QFETCH(const QString, message);
        Checked checked;
        prepare(checked);
        checked.check->start(isMicrophone ? microphone : systemAudio);
        settle();
        QCOMPARE(checked.failures.size(), 1);
        QVERIFY2(!checked.failures[0].isEmpty() && checked.failures[0].contains(message),
            qPrintable(checked.failures[0]));
        QVERIFY(!checked.check->isListening());
        QVERIFY(!checked.recording().isRunning());
    }

    void aRecordingThatEndsByItselfIsTold()
    {
        Checked checked;
        checked.check->start(systemAudio);
        settle();
        checked.recording().endBySelf("unplugged");
        settle();
        QCOMPARE(checked.failures, QStringList {"unplugged"});
        QVERIFY(!checked.check->isListening());
    }
};

LUMAPHONE_TEST(SoundCheckTest)

} // namespace soundchecktest

#include "SoundCheckTest.moc"
