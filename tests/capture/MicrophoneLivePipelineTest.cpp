#include "capture/MicrophoneLivePipeline.h"

#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/PipelineUnderTest.h"
#include "support/FakeMicrophoneCapture.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace microphonelivepipelinetest {

using namespace lumaphone;
using namespace lumaphone::test;

using CaptureCase = SystemAudioCaptureError::Case;

namespace {

const QStringList startSteps {QStringLiteral("default input"), QStringLiteral("start mic")};

} // namespace

class MicrophoneLivePipelineTest : public QObject,
                                   private PipelineUnderTest<MicrophoneLivePipeline, FakeMicrophoneCapture>
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFakes();
        m_pipeline = MicrophoneLivePipeline::create(
            AppleSystemSpeechLanguage::english, m_capture, services(), m_events.handler());
    }
    void cleanup() { drop(); }

    void makingOneAsksForNothing()
    {
        QCOMPARE(m_capture->requests(), 0);
        QVERIFY(recording().steps.isEmpty());
        QVERIFY(m_framework->reservationLog().isEmpty());
    }

    void permissionIsAskedForOnlyOnce_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("answer");
        QTest::addColumn<int>("requests");
        QTest::addColumn<bool>("granted");
        const auto row
            = [](const char *name, CaptureAuthorization status, bool answer, int requests, bool granted) {
                  QTest::newRow(name) << static_cast<int>(status) << answer << requests << granted;
              };
        row("authorized", CaptureAuthorization::authorized, false, 0, true);
        row("not determined, allows", CaptureAuthorization::notDetermined, true, 1, true);
        row("not determined, refuses", CaptureAuthorization::notDetermined, false, 1, false);
        row("denied", CaptureAuthorization::denied, true, 0, false);
        row("restricted", CaptureAuthorization::restricted, true, 0, false);
    }

    void permissionIsAskedForOnlyOnce()
    {
        QFETCH(const int, status);
        QFETCH(const bool, answer);
        QFETCH(const int, requests);
        QFETCH(const bool, granted);
        m_capture->authorization = static_cast<CaptureAuthorization>(status);
        m_capture->answer = answer;
        const auto failure = failureOfStart();
        QCOMPARE(m_capture->requests(), requests);
        QCOMPARE(!failure, granted);
        if (!granted) {
            QVERIFY(failure == CaptureCase::microphonePermissionDenied);
            QVERIFY(m_framework->reservationLog().isEmpty());
            QVERIFY(recording().steps.isEmpty());
        }
    }

    void startingRecordsTheDefaultDevice()
    {
        start();
        QCOMPARE(recording().steps, startSteps);
        QVERIFY(recording().isRunning());
        QVERIFY(recording().hasReceiver());
        QCOMPARE(recording().queue()->label(), std::string("dev.lumaphone.microphone-audio-samples"));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("en_US")});
    }

    void withoutMicrophoneTheTranscriberRunsUntilStopped()
    {
        m_capture->input.reset();
        QVERIFY(failureOfStart() == CaptureCase::microphoneUnavailable);
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
        stop();
        QVERIFY(m_framework->reserved().isEmpty());
    }

    void errorsOfTheServicePassUnchanged_data()
    {
        QTest::addColumn<bool>("atInput");
        QTest::newRow("looking for the input") << true;
        QTest::newRow("starting") << false;
    }

    void errorsOfTheServicePassUnchanged()
    {
        QFETCH(const bool, atInput);
        (atInput ? m_capture->inputFailure : recording().startFailure) = QStringLiteral("device busy");
        const auto error = thrownBy<CaptureServiceError>([this] { start(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("device busy"));
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
    }

    void anErrorOfTheTranscriberComesBeforeTheDevice()
    {
        m_framework->supportOnly({});
        QVERIFY(thrownBy<AppleSystemSpeechTranscriberError>([this] { start(); }));
        QVERIFY(recording().steps.isEmpty());
    }

    void soundIsTranscribedAndSummarised()
    {
        start();
        TestSound sound({48000, 2, SampleType::float32, true}, std::vector<double>(960, 0.5));
        recording().deliver(sound.buffer());
        QCOMPARE(m_events.lines(),
            QStringList {QStringLiteral("audio 960 frames, 48000 Hz, 2 channel, duration 0.020s")});
        recording().deliver(sound.buffer());
        QVERIFY(waitUntil([&] { return m_framework->analyzer().inputs() > 0; }));
    }

    void invalidBuffersAreSkippedSilently()
    {
        start();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        sound.buffer().isValid = false;
        recording().deliver(sound.buffer());
        sound.buffer().isValid = true;
        sound.buffer().dataIsReady = false;
        recording().deliver(sound.buffer());
        QCOMPARE(m_events.count(), 0);
        sound.buffer().dataIsReady = true;
        recording().deliver(sound.buffer());
        QCOMPARE(m_events.count(), 1);
        QVERIFY(waitUntil([&] { return m_framework->analyzer().inputs() == 1; }));
    }

    void recognisedTextsAndFailuresBecomeEvents()
    {
        start();
        const auto module = m_framework->module(QStringLiteral("en_US"));
        module->emitResult(QStringLiteral("hello"), true);
        module->fail(QStringLiteral("SIRI AND DICTATION ARE DISABLED"));
        QVERIFY(ownerHears({QStringLiteral("english final hello"),
            QStringLiteral("failed Apple Speech 錯誤：macOS 目前停用 Siri 與聽寫。請到系統設定開啟 Siri "
                           "或鍵盤聽寫後，再重新開始 Lumaphone。")}));
    }

    void aLostDeviceBecomesAnEvent()
    {
        start();
        recording().endBySelf(QStringLiteral("unplugged"));
        QVERIFY(ownerHears({QStringLiteral("failed 麥克風擷取已停止：unplugged")}));
    }

    void startingTwiceLeavesOneRecording()
    {
        start();
        start();
        QCOMPARE(recording().recordersMade(), 1);
        QVERIFY(recording().isRunning());
        // The old recording goes on until the new device has been found.
        QCOMPARE(recording().steps,
            (startSteps
                + QStringList {
                    QStringLiteral("default input"), QStringLiteral("stop"), QStringLiteral("start mic")}));
    }

    void aSecondStartWithoutMicrophoneLeavesTheFirstRecording()
    {
        start();
        m_capture->input.reset();
        QVERIFY(failureOfStart() == CaptureCase::microphoneUnavailable);
        QVERIFY(recording().isRunning());
        QVERIFY(recording().hasReceiver());
    }

    void theLatestOfTwoStartsRecords()
    {
        startTwice();
        QCOMPARE(recording().steps.count(QStringLiteral("start mic")), 2);
        QCOMPARE(recording().steps.count(QStringLiteral("stop")), 1);
        verifyThatOneRuns();
        QVERIFY(m_events.lines().isEmpty());
    }

    void stoppingEndsTheRecordingAndTheTranscriber()
    {
        start();
        stop();
        QCOMPARE(recording().steps, startSteps + QStringList {QStringLiteral("stop")});
        verifyThatNothingRuns();
        QVERIFY(!recording().queue());
    }

    void stoppingBeforeStartingOrTwiceIsFine()
    {
        stop();
        QVERIFY(recording().steps.isEmpty());
        start();
        stop();
        stop();
        QCOMPARE(recording().steps.count(QStringLiteral("stop")), 1);
        start();
        QVERIFY(recording().isRunning());
    }

    void aStopDuringTheStartLeavesNothingRunning_data()
    {
        QTest::addColumn<bool>("atTranscriber");
        QTest::newRow("while the transcriber starts") << true;
        QTest::newRow("while the device starts") << false;
    }

    void aStopDuringTheStartLeavesNothingRunning()
    {
        QFETCH(const bool, atTranscriber);
        CoroutineGate &gate = atTranscriber ? m_framework->reservationGate : recording().startGate;
        gate.close();
        auto starting = m_pipeline->start();
        QCOMPARE(gate.waiting(), std::size_t(1));
        stop();
        gate.open();
        test::waitFor(std::move(starting));
        verifyThatNothingRuns();
    }

    void aPipelineCanBeDroppedWhileRunning()
    {
        start();
        m_pipeline = nullptr;
        QVERIFY(!recording().isRunning());
        QVERIFY(!recording().hasReceiver());
    }
};

LUMAPHONE_TEST(MicrophoneLivePipelineTest)

} // namespace microphonelivepipelinetest

#include "MicrophoneLivePipelineTest.moc"
