#include "capture/SystemAudioLivePipeline.h"

#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/PipelineUnderTest.h"
#include "support/FakeScreenAudioCapture.h"
#include "support/TestSound.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace systemaudiolivepipelinetest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

const QStringList startSteps {QStringLiteral("default output"), QStringLiteral("start speakers")};

} // namespace

class SystemAudioLivePipelineTest : public QObject,
                                    private PipelineUnderTest<SystemAudioLivePipeline, FakeScreenAudioCapture>
{
    Q_OBJECT

private:
    std::shared_ptr<VirtualClock> m_clock;

    void makePipeline(AppleSystemSpeechLanguage language)
    {
        m_pipeline
            = SystemAudioLivePipeline::create(language, m_capture, m_clock, services(), m_events.handler());
    }

private slots:
    void init()
    {
        makeFakes();
        m_clock = std::make_shared<VirtualClock>();
        makePipeline(AppleSystemSpeechLanguage::english);
    }
    void cleanup() { drop(); }

    void makingOneAsksForNothing()
    {
        QCOMPARE(m_capture->checks(), 0);
        QVERIFY(recording().steps.isEmpty());
        QVERIFY(m_framework->reservationLog().isEmpty());
    }

    void startingRecordsTheDefaultOutput()
    {
        start();
        QCOMPARE(recording().steps, startSteps);
        QCOMPARE(m_capture->requests(), 0);
        QVERIFY(recording().isRunning());
        const SoundFormat expected {.sampleRateHz = 16000, .channelCount = 1};
        QVERIFY(m_capture->format() == expected);
        QCOMPARE(recording().queue()->label(), std::string("app.lumaphone.system-audio-samples"));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("en_US")});
    }

    void automaticListensForAllFour()
    {
        makePipeline(AppleSystemSpeechLanguage::automatic);
        start();
        QCOMPARE(m_framework->locales(),
            (QStringList {QStringLiteral("ja_JP"), QStringLiteral("en_US"), QStringLiteral("ko_KR"),
                QStringLiteral("zh_TW")}));
    }

    void permissionIsPolled_data()
    {
        QTest::addColumn<int>("grantedDuringSleep");
        QTest::addColumn<bool>("granted");
        for (int sleep = 1; sleep <= 23; ++sleep) {
            QTest::addRow("during sleep %d", sleep) << sleep << true;
        }
        QTest::newRow("during the last sleep, after which nobody looks") << 24 << false;
        QTest::newRow("never") << 1000 << false;
    }

    void permissionIsPolled()
    {
        QFETCH(const int, grantedDuringSleep);
        QFETCH(const bool, granted);
        m_capture->isGranted = false;
        std::optional<bool> answer;
        const auto ask = [this, &answer]() -> QCoro::Task<> {
            answer = co_await SystemAudioLivePipeline::requestScreenCaptureAccessIfNeeded(m_capture, m_clock);
        };
        const auto asking = ask();
        QCOMPARE(m_capture->requests(), 1);
        for (int sleep = 1; sleep <= 24 && !answer; ++sleep) {
            QCOMPARE(m_clock->sleepCount(), sleep);
            m_clock->advance(249ms);
            QVERIFY(!answer);
            m_capture->isGranted = sleep >= grantedDuringSleep;
            m_clock->advance(1ms);
            QCOMPARE(answer.has_value(), sleep == std::min(grantedDuringSleep, 24));
        }
        QVERIFY(answer == granted);
        QCOMPARE(m_clock->sleepCount(), std::min(grantedDuringSleep, 24));
        QCOMPARE(m_clock->sleepers(), std::size_t(0));
        QCOMPARE(m_capture->requests(), 1);
        // One look before asking, one after, one after each sleep but the last.
        QCOMPARE(m_capture->checks(), granted ? grantedDuringSleep + 2 : 25);
    }

    void permissionGrantedAtOnceIsSeenWithoutSleeping()
    {
        class GrantingCapture final : public ScreenAudioCapture
        {
        public:
            bool preflightAccess() override { return m_granted; }
            void requestAccess() override { m_granted = true; }
            QCoro::Task<std::optional<SoundDevice>> defaultOutput() override { co_return std::nullopt; }
            std::unique_ptr<SoundRecorder> makeRecorder(const SoundFormat &) override { return nullptr; }

        private:
            bool m_granted = false;
        };
        const auto capture = std::make_shared<GrantingCapture>();
        QVERIFY(test::waitFor(SystemAudioLivePipeline::requestScreenCaptureAccessIfNeeded(capture, m_clock)));
        QCOMPARE(m_clock->sleepCount(), 0);
    }

    void refusedPermissionEndsTheStart()
    {
        m_capture->isGranted = false;
        std::optional<SystemAudioCaptureError::Case> failure;
        const auto tryToStart = [this, &failure]() -> QCoro::Task<> {
            try {
                co_await m_pipeline->start();
            } catch (const SystemAudioCaptureError &error) {
                failure = error.errorCase();
            }
        };
        const auto starting = tryToStart();
        m_clock->advance(5999ms);
        QVERIFY(!failure);
        m_clock->advance(1ms);
        QVERIFY(failure == SystemAudioCaptureError::Case::screenAudioPermissionDenied);
        QCOMPARE(m_clock->sleepCount(), 24);
        QVERIFY(recording().steps.isEmpty());
        QVERIFY(m_framework->reservationLog().isEmpty());
    }

    void aGrantWhilePollingLetsTheStartGoOn()
    {
        m_capture->isGranted = false;
        auto starting = m_pipeline->start();
        m_clock->advance(1100ms);
        QVERIFY(recording().steps.isEmpty());
        m_capture->isGranted = true;
        m_clock->advance(150ms);
        test::waitFor(std::move(starting));
        QVERIFY(recording().isRunning());
    }

    void withoutAnOutputTheTranscriberIsNeverStarted()
    {
        m_capture->output.reset();
        QVERIFY(failureOfStart() == SystemAudioCaptureError::Case::noDisplay);
        QVERIFY(m_framework->reservationLog().isEmpty());
    }

    void errorsOfTheServicePassUnchanged_data()
    {
        QTest::addColumn<bool>("atOutput");
        QTest::newRow("looking for the output") << true;
        QTest::newRow("starting") << false;
    }

    void errorsOfTheServicePassUnchanged()
    {
        QFETCH(const bool, atOutput);
        const QString message = QStringLiteral("the server is gone");
        (atOutput ? m_capture->outputFailure : recording().startFailure) = message;
        const auto error = thrownBy<CaptureServiceError>([this] { start(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), message);
        // Up to the owner: it stops what is running.
        QCOMPARE(m_framework->reserved().isEmpty(), atOutput);
        stop();
        QVERIFY(m_framework->reserved().isEmpty());
        QVERIFY(m_events.lines().isEmpty());
    }

    void anErrorOfTheTranscriberEndsTheStartBeforeCapturing()
    {
        m_framework->supportOnly({});
        const auto error = thrownBy<AppleSystemSpeechTranscriberError>([this] { start(); });
        QVERIFY(
            error && error->errorCase() == AppleSystemSpeechTranscriberError::Case::recognizerUnavailable);
        QCOMPARE(recording().steps, QStringList {QStringLiteral("default output")});
    }

    void soundIsTranscribedAndSummarised()
    {
        start();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        recording().deliver(sound.buffer());
        QCOMPARE(m_events.lines(),
            QStringList {QStringLiteral("audio 320 frames, 16000 Hz, 1 channel, duration 0.020s")});
        QVERIFY(waitUntil([&] { return m_framework->analyzer().samples().size() == 320; }));
    }

    void anUnknownDurationIsSummarisedAsNothing()
    {
        start();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        sound.buffer().durationSeconds.reset();
        recording().deliver(sound.buffer());
        QVERIFY(m_events.lines().constFirst().endsWith(QStringLiteral("duration 0.000s")));
    }

    void someBuffersAreSkippedSilently_data()
    {
        QTest::addColumn<bool>("isValid");
        QTest::addColumn<bool>("isReady");
        QTest::newRow("not valid") << false << true;
        QTest::newRow("not ready") << true << false;
    }

    void someBuffersAreSkippedSilently()
    {
        QFETCH(const bool, isValid);
        QFETCH(const bool, isReady);
        start();
        TestSound skipped(analysisDescription, std::vector<double>(100, 0.5));
        skipped.buffer().isValid = isValid;
        skipped.buffer().dataIsReady = isReady;
        recording().deliver(skipped.buffer());
        QCOMPARE(m_events.count(), 0);
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        recording().deliver(sound.buffer());
        QCOMPARE(m_events.count(), 1);
        QVERIFY(waitUntil([&] { return m_framework->analyzer().inputs() == 1; }));
        QCOMPARE(m_framework->analyzer().samples().size(), std::size_t(320));
    }

    void recognisedTextsBecomeEvents()
    {
        start();
        m_framework->module(QStringLiteral("en_US"))->emitResult(QStringLiteral(" hel"), false);
        m_framework->module(QStringLiteral("en_US"))->emitResult(QStringLiteral("hello "), true);
        QVERIFY(ownerHears({QStringLiteral("english volatile hel"), QStringLiteral("english final hello")}));
    }

    void aFailureOfTheTranscriberBecomesAnEvent_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("event");
        QTest::newRow("Siri in lower case")
            << QStringLiteral("siri and dictation are disabled")
            << QStringLiteral("failed Apple Speech 錯誤：macOS 目前停用 Siri 與聽寫。請到系統設定開啟 Siri "
                              "或鍵盤聽寫後，再重新開始 Lumaphone。");
        QTest::newRow("other") << QStringLiteral("broken")
                               << QStringLiteral("failed Apple Speech 錯誤：broken");
    }

    void aFailureOfTheTranscriberBecomesAnEvent()
    {
        QFETCH(const QString, description);
        QFETCH(const QString, event);
        start();
        m_framework->analyzer().fail(description);
        QVERIFY(ownerHears({event}));
    }

    void aRecordingThatEndsByItselfBecomesAnEvent()
    {
        start();
        recording().endBySelf(QStringLiteral("connection terminated"));
        QVERIFY(ownerHears({QStringLiteral("failed 系統音訊擷取已停止：connection terminated")}));
        // The owner decides: the pipeline keeps its state.
        QVERIFY(!recording().steps.contains(QStringLiteral("stop")));
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
    }

    void anOutputThatIsWaitedForBecomesAnEvent()
    {
        start();
        recording().await(QStringLiteral("耳機"));
        recording().await(std::nullopt);
        QVERIFY(ownerHears({QStringLiteral("awaits 耳機"), QStringLiteral("flows again")}));
    }

    void stoppingEndsTranscriberAndRecording()
    {
        start();
        stop();
        QCOMPARE(recording().steps, startSteps + QStringList {QStringLiteral("stop")});
        verifyThatNothingRuns();
    }

    void stoppingBeforeStartingOrTwiceIsFine()
    {
        stop();
        QVERIFY(recording().steps.isEmpty());
        start();
        stop();
        stop();
        QCOMPARE(recording().steps.count(QStringLiteral("stop")), 1);
    }

    void aStoppedPipelineStartsAfresh()
    {
        start();
        stop();
        start();
        QCOMPARE(recording().steps, startSteps + QStringList {QStringLiteral("stop")} + startSteps);
        verifyThatOneRuns();
    }

    void theLatestOfTwoStartsRecords()
    {
        startTwice();
        QCOMPARE(recording().steps,
            (startSteps
                + QStringList {QStringLiteral("default output"), QStringLiteral("stop"),
                    QStringLiteral("start speakers")}));
        verifyThatOneRuns();
        QVERIFY(m_events.lines().isEmpty());
    }

    void aStopDuringTheStartLeavesNothingRunning_data()
    {
        QTest::addColumn<QString>("where");
        QTest::newRow("while asking for permission") << QStringLiteral("permission");
        QTest::newRow("while the transcriber starts") << QStringLiteral("transcriber");
        QTest::newRow("while the recording starts") << QStringLiteral("recording");
    }

    void aStopDuringTheStartLeavesNothingRunning()
    {
        QFETCH(const QString, where);
        m_capture->isGranted = where != QStringLiteral("permission");
        if (where == QStringLiteral("transcriber")) {
            m_framework->reservationGate.close();
        }
        if (where == QStringLiteral("recording")) {
            recording().startGate.close();
        }
        auto starting = m_pipeline->start();
        stop();
        m_capture->isGranted = true;
        m_clock->advance(250ms);
        m_framework->reservationGate.open();
        recording().startGate.open();
        test::waitFor(std::move(starting));
        verifyThatNothingRuns();
        QCOMPARE(recording().steps.contains(QStringLiteral("start speakers")),
            where == QStringLiteral("recording"));
        QCOMPARE(recording().steps.count(QStringLiteral("stop")),
            recording().steps.count(QStringLiteral("start speakers")));
    }

    void aPipelineCanBeDroppedWhileRunning()
    {
        start();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        recording().deliver(sound.buffer());
        const std::weak_ptr<SystemAudioLivePipeline> weak = m_pipeline;
        m_pipeline = nullptr;
        QVERIFY(weak.expired());
        QCOMPARE(recording().steps.constLast(), QStringLiteral("stop"));
        QVERIFY(!recording().hasReceiver());
        m_detachedTasks->wait();
        QVERIFY(m_framework->analyzer().isCancelled());
    }
};

LUMAPHONE_TEST(SystemAudioLivePipelineTest)

} // namespace systemaudiolivepipelinetest

#include "SystemAudioLivePipelineTest.moc"
