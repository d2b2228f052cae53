#include "platform/sound/PulseMicrophoneCapture.h"
#include "platform/sound/RecordingTest.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/Signals.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>

namespace pulsemicrophonerecordingtest {

using namespace lumaphone;
using namespace lumaphone::test;

class PulseMicrophoneRecordingTest : public RecordingTest
{
    Q_OBJECT

private:
    std::unique_ptr<PulseMicrophoneCapture> m_capture;

    SoundDevice microphone() { return test::waitFor(m_capture->defaultInput()).value(); }

    QCoro::Task<> starting(const SoundDevice &device)
    {
        return m_recorder->start(device, *m_queue, m_sound->receiver());
    }

    /// Records the default microphone.
    void start() { test::waitFor(starting(microphone())); }

    bool hears(double frequencyHz, int rateHz, int channel, int channels) const
    {
        const auto frames = static_cast<std::size_t>(rateHz / 5);
        const std::vector<float> latest = m_sound->latest(frames * static_cast<std::size_t>(channels));
        const std::vector<float> side = channelOf(latest, channel, channels);
        return side.size() == frames && levelOf(side) > 0.1
            && std::abs(frequencyOf(side, rateHz) - frequencyHz) < 6;
    }

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void init()
    {
        setUp();
        m_capture = std::make_unique<PulseMicrophoneCapture>(m_mainQueue);
        m_recorder = m_capture->makeRecorder();
    }
    void cleanup()
    {
        tearDown();
        m_capture.reset();
    }

    void theDeviceIsRecordedInItsOwnFormat_data()
    {
        QTest::addColumn<int>("rateHz");
        QTest::addColumn<int>("channels");
        QTest::addColumn<QString>("format");
        QTest::addColumn<SampleType>("type");
        QTest::newRow("48 kHz stereo, 16 bits") << 48000 << 2 << QStringLiteral("s16le") << SampleType::int16;
        QTest::newRow("44.1 kHz stereo, floating point")
            << 44100 << 2 << QStringLiteral("float32le") << SampleType::float32;
        QTest::newRow("96 kHz mono, 24 bits") << 96000 << 1 << QStringLiteral("s24le") << SampleType::float32;
        QTest::newRow("16 kHz mono, 32 bits") << 16000 << 1 << QStringLiteral("s32le") << SampleType::float32;
        QTest::newRow("8 kHz mono, 8 bits") << 8000 << 1 << QStringLiteral("u8") << SampleType::int16;
        QTest::newRow("48 kHz, six channels") << 48000 << 6 << QStringLiteral("s16be") << SampleType::int16;
    }

    void theDeviceIsRecordedInItsOwnFormat()
    {
        QFETCH(int, rateHz);
        QFETCH(const int, channels);
        QFETCH(const QString, format);
        QFETCH(SampleType, type);
        m_server->addMicrophone(QStringLiteral("microphone"), rateHz, channels, format);
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        if (PrivateSoundServer::kind() == SoundServerKind::pipeWire) {
            // Whatever the device: its server gives every sound like this.
            QVERIFY(
                m_server->control(
                            {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sources")})
                    .contains(QStringLiteral("microphone\tPipeWire\tfloat32le %1ch 48000Hz").arg(channels)));
            rateHz = 48000;
            type = SampleType::float32;
        }
        start();
        const auto voice
            = m_server->playSamples(sine(500, 0.5, 30, 48000), 48000, 1, QStringLiteral("microphone_room"));
        QVERIFY(waitUntil([&] { return hears(500, rateHz, 0, channels); }));
        QCOMPARE(m_sound->description(),
            std::optional(AudioStreamDescription {static_cast<double>(rateHz), channels, type, true}));
        QCOMPARE(m_sound->framesPerBuffer(), rateHz / 50);
        QCOMPARE(m_sound->wrongBuffers(), std::size_t(0));
    }

    void eachChannelKeepsItsOwnSound()
    {
        m_server->addMicrophone(QStringLiteral("microphone"), 48000, 2);
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        const auto voices
            = m_server->playSamples(interleaved(sine(400, 0.5, 30, 48000), sine(900, 0.25, 30, 48000)), 48000,
                2, QStringLiteral("microphone_room"));
        QVERIFY(waitUntil([&] { return hears(400, 48000, 0, 2) && hears(900, 48000, 1, 2); }));
        const std::vector<float> latest = m_sound->latest(std::size_t(48000 / 5 * 2));
        QVERIFY(std::abs(levelOf(channelOf(latest, 0, 2)) - 0.5 / std::sqrt(2.0)) < 0.01);
        QVERIFY(std::abs(levelOf(channelOf(latest, 1, 2)) - 0.25 / std::sqrt(2.0)) < 0.01);
    }

    void anUnpluggedDeviceEndsTheRecordingOnce()
    {
        const std::vector<int> modules = m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->addMicrophone(QStringLiteral("other"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        m_server->unloadModule(modules.back());
        QVERIFY(waitUntil([&] { return !m_sound->errors().isEmpty(); }));
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
        m_recorder->stop();
        QCOMPARE(m_sound->errors().size(), 1);
        QVERIFY2(m_sound->errors().front().endsWith(QStringLiteral("已中斷連線。")),
            qPrintable(m_sound->errors().front()));
        // The next start takes the device that is there.
        m_server->setDefaultMicrophone(QStringLiteral("other"));
        start();
        const std::size_t buffers = m_sound->buffers();
        QVERIFY(waitUntil([&] { return m_sound->buffers() > buffers; }));
    }

    void aKilledServerEndsTheRecordingOnceAndTheNextStartWorks()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        m_server->kill();
        QVERIFY(waitUntil([&] { return !m_sound->errors().isEmpty(); }));
        QCOMPARE(m_sound->errors(),
            QStringList {QStringLiteral("與聲音伺服器的連線已中斷：Connection terminated")});
        m_server->start();
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        const std::size_t buffers = m_sound->buffers();
        QVERIFY(waitUntil([&] { return m_sound->buffers() > buffers; }));
        QCOMPARE(m_sound->errors().size(), 1);
    }

    void aDeviceThatGoesBeforeTheStartIsAnErrorNotAnotherDevice()
    {
        const std::vector<int> modules = m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        const SoundDevice device = microphone();
        m_server->unloadModule(modules.back());
        m_server->addMicrophone(QStringLiteral("other"));
        const auto error = thrownBy<CaptureServiceError>([&] { test::waitFor(starting(device)); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("找不到麥克風「%1」。").arg(device.name));
        QVERIFY(m_server->recordings().empty());
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void whatRecordsAnOutputIsNotRecorded()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        const auto error = thrownBy<CaptureServiceError>([&] {
            test::waitFor(starting({QStringLiteral("speakers.monitor"), QStringLiteral("Speakers")}));
        });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("找不到麥克風「Speakers」。"));
        QVERIFY(m_server->recordings().empty());
    }

    void noNameIsNotAnyMicrophone()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(starting({})); }));
        QVERIFY(m_server->recordings().empty());
    }

    void anotherDefaultDeviceDoesNotDisturbTheRecording()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->addMicrophone(QStringLiteral("other"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        m_server->setDefaultMicrophone(QStringLiteral("other"));
        const auto voice
            = m_server->playSamples(sine(500, 0.5, 30, 48000), 48000, 1, QStringLiteral("microphone_room"));
        QVERIFY(waitUntil([&] { return hears(500, 48000, 0, 2); }));
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void afterAStopNothingIsDelivered()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        m_recorder->stop();
        const std::size_t buffers = m_sound->buffers();
        // Another recording proves that sound still flows.
        RecordedSound second(*m_queue);
        const auto other = m_capture->makeRecorder();
        test::waitFor(other->start(microphone(), *m_queue, second.receiver()));
        QVERIFY(waitUntil([&] { return second.buffers() > 5; }));
        m_server->kill();
        QVERIFY(waitUntil([&] { return !second.errors().isEmpty(); }));
        QCOMPARE(m_sound->buffers(), buffers);
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void aSecondStartReplacesTheRecording()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        RecordedSound second(*m_queue);
        const SoundDevice device = microphone();
        QCoro::Task<> restarting = m_recorder->start(device, *m_queue, second.receiver());
        const std::size_t buffers = m_sound->buffers();
        test::waitFor(std::move(restarting));
        QVERIFY(waitUntil([&] { return second.buffers() > 5; }));
        QVERIFY(waitUntil([&] { return m_server->recordings().size() == 1; }));
        QCOMPARE(m_sound->buffers(), buffers);
        QCOMPARE(m_sound->errors(), QStringList());
        m_recorder->stop();
    }

    void aStoppedDeviceIsFree()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        m_recorder->stop();
        start();
        QCOMPARE(m_server->recordings().size(), std::size_t(1));
        m_recorder->stop();
        m_recorder->stop();
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
    }

    void aStuckServerDelaysNoStop()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        // What waits for the server waits until the test is given up.
        PulseOptions options;
        options.timeLimit = std::chrono::hours(1);
        m_recorder = PulseMicrophoneCapture(m_mainQueue, options).makeRecorder();
        start();
        const SoundDevice device = microphone();
        m_server->freeze();
        m_recorder->stop();
        // A recording that is being opened stops as well, and its start ends.
        QCoro::Task<> opening = starting(device);
        m_recorder->stop();
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(std::move(opening)); }));
        m_server->thaw();
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void fiftyRecordingsLeaveNeitherThreadsNorStreams()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        start();
        m_recorder->stop();
        const int threads = threadCount();
        for (int i = 0; i < 50; ++i) {
            start();
            m_recorder->stop();
        }
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
        QVERIFY(waitUntil([&] { return threadCount() == threads; }));
        QCOMPARE(m_sound->errors(), QStringList());
    }
};

LUMAPHONE_TEST(PulseMicrophoneRecordingTest)

} // namespace pulsemicrophonerecordingtest

#include "PulseMicrophoneRecordingTest.moc"
