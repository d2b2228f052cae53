#include "platform/sound/PulseScreenAudioCapture.h"
#include "platform/sound/RecordingTest.h"
#include "platform/sound/ThreadedSoundRecorder.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/Signals.h"
#include "support/program/TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace pulseoutputrecordingtest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

constexpr int captureRateHz = 16000;
constexpr std::size_t windowFrames = 320;

constexpr SoundFormat captureFormat {.sampleRateHz = captureRateHz, .channelCount = 1};

/// The pitch of each window of 20 ms that is not silent.
std::vector<double> pitches(const std::vector<float> &samples)
{
    std::vector<double> heard;
    for (std::size_t first = 0; first + windowFrames <= samples.size(); first += windowFrames) {
        const std::span<const float> window(samples.data() + first, windowFrames);
        if (levelOf(window) > 0.2) {
            heard.push_back(frequencyOf(window, captureRateHz));
        }
    }
    return heard;
}

} // namespace

class PulseOutputRecordingTest : public RecordingTest
{
    Q_OBJECT

private:
    std::unique_ptr<SoundRecorder> makeRecorder(const PulseOptions &options = {}) const
    {
        return PulseScreenAudioCapture(m_mainQueue, options).makeRecorder(captureFormat);
    }

    QCoro::Task<> starting(SoundRecorder &recorder, const QString &output)
    {
        return recorder.start({output, output}, *m_queue, m_sound->receiver());
    }

    void startOn(const QString &output, const PulseOptions &options = {})
    {
        m_recorder = makeRecorder(options);
        test::waitFor(starting(*m_recorder, output));
    }

    /// Returns the module's index.
    int addHeadphones()
    {
        const int module = m_server->loadModule(QStringLiteral("module-null-sink"),
            {QStringLiteral("sink_name=headphones"),
                QStringLiteral("sink_properties=device.description=Headphones")});
        m_server->setDefaultOutput(QStringLiteral("headphones"));
        return module;
    }

    /// Whether the last 100 ms are a tone of this pitch.
    bool hears(double frequencyHz) const
    {
        const std::vector<float> latest = m_sound->latest(captureRateHz / 10);
        return latest.size() == captureRateHz / 10 && levelOf(latest) > 0.2
            && std::abs(frequencyOf(latest, captureRateHz) - frequencyHz) < 15;
    }

    /// The names of the sources that are being recorded, not of those that are only held ready.
    QStringList recordedSources() const
    {
        QStringList names;
        for (const SoundRecording &recording : m_server->recordings()) {
            if (!recording.isPaused) {
                names << recording.source;
            }
        }
        return names;
    }

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aToneArrivesWithItsPitchAndLevel()
    {
        m_server->addOutput(QStringLiteral("speakers"), 48000, 2);
        startOn(QStringLiteral("speakers"));
        // The server of a busy machine leaves gaps in what it plays: one second without them is asked for.
        constexpr int patienceSeconds = 30;
        const auto tone = sine(440, 0.5, patienceSeconds, 48000);
        const auto playback = m_server->playSamples(interleaved(tone, tone), 48000, 2);
        std::vector<float> second;
        const bool isHeard = waitUntil(
            [&] {
                second = m_sound->latest(captureRateHz);
                return second.size() == captureRateHz
                    && std::abs(frequencyOf(second, captureRateHz) - 440) < 2
                    && std::abs(levelOf(second) - 0.5 / std::sqrt(2.0)) < 0.01;
            },
            patienceSeconds * 1000);
        QVERIFY2(isHeard,
            qPrintable(
                QStringLiteral("%1 Hz at %2").arg(frequencyOf(second, captureRateHz)).arg(levelOf(second))));
        QCOMPARE(m_sound->description(),
            std::optional(AudioStreamDescription {16000, 1, SampleType::int16, true}));
        QCOMPARE(m_sound->framesPerBuffer(), 320);
        QCOMPARE(m_sound->wrongBuffers(), std::size_t(0));
        const auto *threaded = dynamic_cast<const ThreadedSoundRecorder *>(m_recorder.get());
        QVERIFY(threaded);
        QCOMPARE(threaded->droppedBuffers(), std::size_t(0));
        m_recorder->stop();
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void soundOfTheWantedFormatArrivesSampleForSample()
    {
        if (PrivateSoundServer::kind() == SoundServerKind::pipeWire) {
            QSKIP("PipeWire works at a rate and in a format of its own.");
        }
        m_server->addOutput(QStringLiteral("speakers"), captureRateHz, 1);
        startOn(QStringLiteral("speakers"));
        // Every value differs from its neighbours, and none is silent.
        std::vector<qint16> played(captureRateHz * 2);
        for (std::size_t i = 0; i < played.size(); ++i) {
            played[i] = static_cast<qint16>(1 + (i * 7919) % 32000);
        }
        const auto playback = m_server->playSamples(played, captureRateHz, 1);
        QVERIFY(waitUntil([&] { return playback.isFinished(); }));
        QVERIFY(waitUntil([&] { return m_sound->latest(320) == std::vector<float>(320, 0); }));
        std::vector<qint16> heard;
        for (const float sample : m_sound->samples()) {
            if (sample != 0) {
                heard.push_back(static_cast<qint16>(std::lround(sample * 32768)));
            }
        }
        // The server may have let some moments pass while it took the new sound in.
        const auto first = std::find(played.begin(), played.end(), heard.empty() ? qint16(0) : heard.front());
        QVERIFY2(
            first - played.begin() < captureRateHz / 10, qPrintable(QString::number(first - played.begin())));
        QVERIFY(heard == std::vector(first, played.end()));
    }

    void humanSpeechArrivesWhole()
    {
        m_server->addOutput(QStringLiteral("speakers"), captureRateHz, 1);
        const QStringList files = PrivateSoundServer::speechFiles();
        QVERIFY(files.size() > 1);
        QFile file(files.at(1));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray wave = file.readAll();
        std::vector<float> spoken;
        for (qsizetype offset = 44; offset + 1 < wave.size(); offset += 2) {
            qint16 sample = 0;
            std::memcpy(&sample, wave.constData() + offset, 2);
            spoken.push_back(static_cast<float>(sample) / 32768.0F);
        }
        startOn(QStringLiteral("speakers"));
        const auto playback = m_server->play(file.fileName());
        QVERIFY(waitUntil([&] { return playback.isFinished(); }, 30000));
        const auto energyOf = [](const std::vector<float> &samples) {
            return std::pow(levelOf(samples), 2) * static_cast<double>(samples.size());
        };
        const double played = energyOf(spoken);
        QVERIFY(waitUntil([&] { return energyOf(m_sound->samples()) > played * 0.99; }));
        QVERIFY(energyOf(m_sound->samples()) < played * 1.01);
    }

    void anIdleOutputIsSilentAndNothingElseIsHeard()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultOutput(QStringLiteral("speakers"));
        const auto voice
            = m_server->playSamples(sine(440, 0.5, 30, 48000), 48000, 1, QStringLiteral("microphone_room"));
        startOn(QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return m_sound->sampleCount() >= captureRateHz; }));
        QCOMPARE(levelOf(m_sound->samples()), 0.0);
        QVERIFY(recordedSources().contains(QStringLiteral("speakers.monitor")));
        QVERIFY(!recordedSources().contains(QStringLiteral("microphone")));
    }

    void aChangedDefaultIsFollowedWithLittleLoss_data()
    {
        QTest::addColumn<int>("ahead");
        QTest::newRow("a player with half a second in store") << 500;
        QTest::newRow("a player with two seconds in store") << 2000;
    }

    void aChangedDefaultIsFollowedWithLittleLoss()
    {
        QFETCH(int, ahead);
        // Outputs that work ahead and take back what they have not played yet, as hardware does.
        for (const QString &output :
            {QStringLiteral("speakers rate=44100"), QStringLiteral("headphones rate=48000")}) {
            m_server->loadModule(QStringLiteral("module-null-sink"), {QStringLiteral("sink_name=") + output});
        }
        m_server->setDefaultOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        constexpr double fromHz = 500;
        constexpr double toHz = 5500;
        constexpr double slope = 1000; // Hz per second
        const auto playback = m_server->playSamples(sweep(fromHz, toHz, 0.5, (toHz - fromHz) / slope, 48000),
            48000, 1, {}, std::chrono::milliseconds(ahead));
        const auto reached = [&](double pitch) {
            const std::vector<double> heard = pitches(m_sound->samples());
            return !heard.empty() && heard.back() >= pitch;
        };
        QVERIFY(waitUntil([&] { return reached(1500); }));
        m_server->setDefaultOutput(QStringLiteral("headphones"));
        QVERIFY(waitUntil(
            [&] { return recordedSources() == QStringList {QStringLiteral("headphones.monitor")}; }));
        QVERIFY(waitUntil([&] { return reached(3500); }));
        m_server->setDefaultOutput(QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return reached(5400); }));

        // Every moment of the sweep is known by its pitch: what is missing leaves a jump.
        const std::vector<double> heard = pitches(m_sound->samples());
        QVERIFY2(heard.front() < 1000, qPrintable(QString::number(heard.front())));
        double longestJump = 0;
        double againSeconds = 0;
        double highest = heard.front();
        for (const double pitch : heard) {
            longestJump = std::max(longestJump, pitch - highest);
            againSeconds += highest - pitch > 0.1 * slope ? 0.02 : 0;
            highest = std::max(highest, pitch);
        }
        const double lostSeconds
            = (heard.back() - heard.front()) / slope - static_cast<double>(heard.size() - 1) * 0.02;
        qInfo("Two changes of output: %.0f ms lost, the longest gap is %.0f ms, %.0f ms heard again.",
            lostSeconds * 1000, longestJump / slope * 1000, againSeconds * 1000);
        QVERIFY(longestJump / slope <= 0.5);
        QVERIFY(lostSeconds <= 0.5);
        // A stream that PipeWire moves goes back, each time by up to what it has in store.
        const double mayBeHeardAgain = PrivateSoundServer::kind() == SoundServerKind::pipeWire ? 1 : 0.2;
        QVERIFY2(againSeconds <= mayBeHeardAgain, qPrintable(QString::number(againSeconds)));
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void onlyAChangedDefaultReopensTheRecording()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        m_server->addOutput(QStringLiteral("headphones"));
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        const auto ownRecording = [&] {
            const std::vector<SoundRecording> recordings = m_server->recordings();
            const auto running = std::find_if(recordings.begin(), recordings.end(),
                [](const SoundRecording &recording) { return !recording.isPaused; });
            return running == recordings.end() ? -1 : running->index;
        };
        const int before = ownRecording();
        QVERIFY(before >= 0);
        RecordedSound otherSound(*m_queue);
        const auto other = makeRecorder();
        test::waitFor(other->start({QStringLiteral("speakers"), {}}, *m_queue, otherSound.receiver()));
        m_server->setDefaultMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("headphones.monitor"));
        m_server->control(
            {QStringLiteral("set-sink-volume"), QStringLiteral("headphones"), QStringLiteral("50%")});
        const auto tone = m_server->playSamples(sine(440, 0.5, 3, 48000), 48000, 1);
        QVERIFY(waitUntil([&] { return hears(440); }));
        QCOMPARE(ownRecording(), before);
        // The events have been seen: a real change still is.
        m_server->setDefaultOutput(QStringLiteral("headphones"));
        QVERIFY(waitUntil([&] { return ownRecording() != before; }));
    }

    void theNextOutputIsRecordedWhenTheCurrentOneVanishes()
    {
        const int headphones = m_server->addOutput(QStringLiteral("headphones"));
        m_server->addOutput(QStringLiteral("speakers"));
        m_server->setDefaultOutput(QStringLiteral("headphones"));
        startOn(QStringLiteral("headphones"));
        m_server->unloadModule(headphones);
        const auto tone
            = m_server->playSamples(sine(700, 0.5, 20, 48000), 48000, 1, QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return hears(700); }));
        QCOMPARE(m_sound->errors(), QStringList());
        QCOMPARE(recordedSources(), QStringList {QStringLiteral("speakers.monitor")});
    }

    void anOutputThatComesBackUnderItsNameIsRecordedAgain()
    {
        const int headphones = m_server->addOutput(QStringLiteral("headphones"));
        const int speakers = m_server->addOutput(QStringLiteral("speakers"));
        m_server->setDefaultOutput(QStringLiteral("headphones"));
        startOn(QStringLiteral("headphones"));
        m_server->unloadModule(headphones);
        m_server->addOutput(QStringLiteral("headphones"));
        m_server->unloadModule(speakers);
        const auto tone
            = m_server->playSamples(sine(700, 0.5, 20, 48000), 48000, 1, QStringLiteral("headphones"));
        QVERIFY2(waitUntil([&] { return hears(700); }),
            qPrintable(m_sound->errors().join(u' ') + recordedSources().join(u' ')));
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void theOnlyOutputIsWaitedForUntilItIsBack()
    {
        int headphones = addHeadphones();
        startOn(QStringLiteral("headphones"), {.returnLimit = 1h});
        for (const int times : {1, 2}) {
            m_server->unloadModule(headphones);
            QVERIFY(waitUntil([&] { return m_sound->awaited().size() == 2 * times - 1; }));
            QCOMPARE(m_sound->awaited().constLast(), QStringLiteral("Headphones"));
            headphones = addHeadphones();
            const auto tone
                = m_server->playSamples(sine(700, 0.5, 20, 48000), 48000, 1, QStringLiteral("headphones"));
            QVERIFY(waitUntil([&] { return hears(700); }));
            QCOMPARE(m_sound->awaited().size(), 2 * times);
            QCOMPARE(m_sound->awaited().constLast(), QStringLiteral("-"));
            m_sound->clear();
        }
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void aStopDoesNotWaitForAnOutputThatHasGone()
    {
        const int headphones = addHeadphones();
        startOn(QStringLiteral("headphones"), {.returnLimit = 1h});
        m_server->unloadModule(headphones);
        QVERIFY(waitUntil([&] { return !m_sound->awaited().isEmpty(); }));
        m_recorder->stop();
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void anOutputThatDoesNotComeBackEndsTheCaptureOnce()
    {
        const int speakers = addHeadphones();
        startOn(QStringLiteral("headphones"), {.returnLimit = 1ms});
        m_server->unloadModule(speakers);
        QVERIFY(waitUntil([&] { return !m_sound->errors().isEmpty(); }));
        QCOMPARE(m_sound->errors(),
            QStringList {QStringLiteral("等不到聲音輸出「Headphones」回來。已經沒有任何聲音輸出。")});
        m_server->addOutput(QStringLiteral("new_speakers"));
        m_recorder->stop();
        QCOMPARE(m_sound->errors().size(), 1);
        startOn(QStringLiteral("new_speakers"));
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
    }

    void aKilledServerEndsTheCaptureOnceAndTheNextStartWorks()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        m_server->kill();
        QVERIFY(waitUntil([&] { return !m_sound->errors().isEmpty(); }));
        QCOMPARE(m_sound->errors(),
            QStringList {QStringLiteral("與聲音伺服器的連線已中斷：Connection terminated")});
        const auto refused = thrownBy<CaptureServiceError>(
            [&] { test::waitFor(starting(*m_recorder, QStringLiteral("speakers"))); });
        QVERIFY(refused);
        QCOMPARE(refused->errorDescription(), QStringLiteral("無法連線到聲音伺服器：Connection refused"));
        m_recorder->stop();
        m_server->start();
        m_server->addOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        m_sound->clear();
        const auto tone = m_server->playSamples(sine(440, 0.5, 20, 48000), 48000, 1);
        QVERIFY(waitUntil([&] { return hears(440); }));
        QCOMPARE(m_sound->errors().size(), 1);
    }

    void aStuckServerDelaysNeitherStopNorDestruction()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        // What waits for the server waits until the test is given up.
        PulseOptions options;
        options.timeLimit = 1h;
        m_recorder = makeRecorder(options);
        test::waitFor(starting(*m_recorder, QStringLiteral("speakers")));
        m_server->freeze();
        m_recorder->stop();
        // A recording that is being opened stops as well, and its start ends.
        QCoro::Task<> stopped = starting(*m_recorder, QStringLiteral("speakers"));
        m_recorder->stop();
        QCoro::Task<> dropped = starting(*m_recorder, QStringLiteral("speakers"));
        m_recorder.reset();
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(std::move(stopped)); }));
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(std::move(dropped)); }));
        m_server->thaw();
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void aStuckServerFailsTheStartAfterTheLimit()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        m_server->freeze();
        PulseOptions options;
        options.timeLimit = 500ms;
        m_recorder = makeRecorder(options);
        QElapsedTimer timer;
        timer.start();
        const auto error = thrownBy<CaptureServiceError>(
            [&] { test::waitFor(starting(*m_recorder, QStringLiteral("speakers"))); });
        const qint64 elapsedMs = timer.elapsed();
        m_server->thaw();
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("聲音伺服器沒有回應：Timeout"));
        QVERIFY2(elapsedMs >= 500, qPrintable(QString::number(elapsedMs)));
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
    }

    void anOutputThatIsNotThereIsAnErrorNotAnotherOutput()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        const auto error = thrownBy<CaptureServiceError>([&] { startOn(QStringLiteral("headphones")); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("找不到聲音輸出「headphones」。"));
        QVERIFY(m_server->recordings().empty());
        QCOMPARE(m_sound->errors(), QStringList());
        m_recorder->stop();
    }

    void aFormatWithoutSoundCannotBeRecorded_data()
    {
        QTest::addColumn<int>("rateHz");
        QTest::addColumn<int>("channels");
        QTest::newRow("no rate") << 0 << 1;
        QTest::newRow("no channel") << 16000 << 0;
    }

    void aFormatWithoutSoundCannotBeRecorded()
    {
        QFETCH(const int, rateHz);
        QFETCH(const int, channels);
        m_server->addOutput(QStringLiteral("speakers"));
        PulseScreenAudioCapture capture(m_mainQueue);
        m_recorder = capture.makeRecorder({.sampleRateHz = rateHz, .channelCount = channels});
        QVERIFY(thrownBy<CaptureServiceError>(
            [&] { test::waitFor(starting(*m_recorder, QStringLiteral("speakers"))); }));
    }

    void afterAStopNothingIsDelivered()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        m_recorder->stop();
        const std::size_t buffers = m_sound->buffers();
        // Another recording proves that sound still flows.
        RecordedSound otherSound(*m_queue);
        const auto other = makeRecorder();
        test::waitFor(other->start({QStringLiteral("speakers"), {}}, *m_queue, otherSound.receiver()));
        QVERIFY(waitUntil([&] { return otherSound.buffers() > 5; }));
        m_server->kill();
        QVERIFY(waitUntil([&] { return !otherSound.errors().isEmpty(); }));
        QCOMPARE(m_sound->buffers(), buffers);
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void aSecondStartReplacesTheRecording()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        RecordedSound second(*m_queue);
        QCoro::Task<> start
            = m_recorder->start({QStringLiteral("speakers"), {}}, *m_queue, second.receiver());
        const std::size_t buffers = m_sound->buffers();
        test::waitFor(std::move(start));
        QVERIFY(waitUntil([&] { return second.buffers() > 5; }));
        QVERIFY(waitUntil([&] { return m_server->recordings().size() == 1; }));
        QCOMPARE(m_sound->buffers(), buffers);
        QCOMPARE(m_sound->errors(), QStringList());
        m_recorder->stop();
    }

    void stoppingTwiceOrBeforeAStartIsFine()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        m_recorder = makeRecorder();
        m_recorder->stop();
        m_recorder->stop();
        test::waitFor(starting(*m_recorder, QStringLiteral("speakers")));
        m_recorder->stop();
        m_recorder->stop();
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
    }

    void fiftyCapturesLeaveNeitherThreadsNorStreams()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        startOn(QStringLiteral("speakers"));
        m_recorder->stop();
        const int threads = threadCount();
        for (int i = 0; i < 50; ++i) {
            startOn(QStringLiteral("speakers"));
            QCOMPARE(m_server->recordings().size(), std::size_t(1));
            m_recorder->stop();
        }
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
        QVERIFY(waitUntil([&] { return threadCount() == threads; }));
        QCOMPARE(m_sound->errors(), QStringList());
    }
};

LUMAPHONE_TEST(PulseOutputRecordingTest)

} // namespace pulseoutputrecordingtest

#include "PulseOutputRecordingTest.moc"
