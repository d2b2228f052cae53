#include "capture/MicrophoneLivePipeline.h"

#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/SystemAudioCaptureError.h"
#include "support/Coroutines.h"
#include "support/FakeMicrophoneCapture.h"
#include "support/FakeSpeechFramework.h"
#include "support/RecordedPipelineEvents.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace microphonelivepipelinetest {

using namespace lumaphone;
using namespace lumaphone::test;

using CaptureCase = SystemAudioCaptureError::Case;

namespace {

const QStringList startSteps {QStringLiteral("default device"), QStringLiteral("can add input"),
    QStringLiteral("can add output"), QStringLiteral("begin"), QStringLiteral("add input"),
    QStringLiteral("add output"), QStringLiteral("commit"), QStringLiteral("start")};

} // namespace

class MicrophoneLivePipelineTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<FakeSpeechFramework> m_framework;
    std::shared_ptr<FakeMicrophoneCapture> m_capture;
    std::shared_ptr<DetachedTasks> m_detachedTasks;
    std::unique_ptr<RecordedPipelineEvents> m_events;
    std::shared_ptr<MicrophoneLivePipeline> m_pipeline;

    void start() { test::waitFor(m_pipeline->start()); }
    void stop() { test::waitFor(m_pipeline->stop()); }

    std::optional<CaptureCase> failureOfStart()
    {
        const auto error = thrownBy<SystemAudioCaptureError>([this] { start(); });
        return error ? std::optional(error->errorCase()) : std::nullopt;
    }

    bool ownerHears(const QStringList &lines)
    {
        return waitUntil([&] { return m_events->lines() == lines; });
    }

private slots:
    void init()
    {
        m_framework = std::make_shared<FakeSpeechFramework>();
        m_capture = std::make_shared<FakeMicrophoneCapture>();
        m_detachedTasks = std::make_shared<DetachedTasks>();
        m_events = std::make_unique<RecordedPipelineEvents>();
        const LivePipelineServices services {m_framework, MainQueue::create(), m_detachedTasks, QLocale::c()};
        m_pipeline = MicrophoneLivePipeline::create(
            AppleSystemSpeechLanguage::english, m_capture, services, m_events->handler());
    }

    void cleanup()
    {
        m_pipeline = nullptr;
        m_detachedTasks = nullptr;
        settle();
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    void makingOneAsksForNothing()
    {
        QCOMPARE(m_capture->requests(), 0);
        QVERIFY(m_capture->state().steps.isEmpty());
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
        row("authorized", CaptureAuthorization::Authorized, false, 0, true);
        row("not determined, allows", CaptureAuthorization::NotDetermined, true, 1, true);
        row("not determined, refuses", CaptureAuthorization::NotDetermined, false, 1, false);
        row("denied", CaptureAuthorization::Denied, true, 0, false);
        row("restricted", CaptureAuthorization::Restricted, true, 0, false);
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
            QVERIFY(m_capture->state().steps.isEmpty());
        }
    }

    void startingRecordsTheDefaultDevice()
    {
        start();
        QCOMPARE(m_capture->state().steps, startSteps);
        QVERIFY(m_capture->state().isRunning);
        QVERIFY(m_capture->output().delegate());
        QCOMPARE(m_capture->output().queue()->label(), std::string("dev.lumaphone.microphone-audio-samples"));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("en_US")});
    }

    void withoutMicrophoneTheTranscriberRunsUntilStopped()
    {
        m_capture->device.reset();
        QVERIFY(failureOfStart() == CaptureCase::microphoneUnavailable);
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
        stop();
        QVERIFY(m_framework->reserved().isEmpty());
    }

    void aDeviceThatCannotJoinIsUnavailable_data()
    {
        QTest::addColumn<bool>("canAddInput");
        QTest::addColumn<bool>("canAddOutput");
        QTest::newRow("input") << false << true;
        QTest::newRow("output") << true << false;
    }

    void aDeviceThatCannotJoinIsUnavailable()
    {
        QFETCH(const bool, canAddInput);
        QFETCH(const bool, canAddOutput);
        m_capture->state().canAddInput = canAddInput;
        m_capture->state().canAddOutput = canAddOutput;
        QVERIFY(failureOfStart() == CaptureCase::microphoneUnavailable);
        QVERIFY(m_capture->state().inputs.empty());
        QVERIFY(m_capture->state().outputs.empty());
        QVERIFY(!m_capture->state().isRunning);
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
    }

    void errorsOfTheServicePassUnchanged_data()
    {
        QTest::addColumn<bool>("atInput");
        QTest::newRow("opening the device") << true;
        QTest::newRow("starting") << false;
    }

    void errorsOfTheServicePassUnchanged()
    {
        QFETCH(const bool, atInput);
        (atInput ? m_capture->inputFailure : m_capture->state().startFailure) = QStringLiteral("device busy");
        const auto error = thrownBy<CaptureServiceError>([this] { start(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("device busy"));
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("en_US")});
    }

    void anErrorOfTheTranscriberComesBeforeTheDevice()
    {
        m_framework->supportOnly({});
        QVERIFY(thrownBy<AppleSystemSpeechTranscriberError>([this] { start(); }));
        QVERIFY(m_capture->state().steps.isEmpty());
    }

    void soundIsTranscribedAndSummarised()
    {
        start();
        TestSound sound({48000, 2, SampleType::Float32, true}, std::vector<double>(960, 0.5));
        m_capture->output().deliver(sound.buffer());
        QCOMPARE(m_events->lines(),
            QStringList {QStringLiteral("audio 960 frames, 48000 Hz, 2 channel, duration 0.020s")});
        m_capture->output().deliver(sound.buffer());
        QVERIFY(waitUntil([&] { return m_framework->analyzer().inputs() > 0; }));
    }

    void invalidBuffersAreSkippedSilently()
    {
        start();
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        sound.buffer().isValid = false;
        m_capture->output().deliver(sound.buffer());
        sound.buffer().isValid = true;
        sound.buffer().dataIsReady = false;
        m_capture->output().deliver(sound.buffer());
        QCOMPARE(m_events->count(), 0);
        sound.buffer().dataIsReady = true;
        m_capture->output().deliver(sound.buffer());
        QCOMPARE(m_events->count(), 1);
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
        m_capture->output().failBySelf(QStringLiteral("unplugged"));
        QVERIFY(ownerHears({QStringLiteral("failed 麥克風擷取已停止：unplugged")}));
    }

    void startingTwiceLeavesOneInputAndOneOutput()
    {
        start();
        const auto firstInput = m_capture->state().inputs.front();
        start();
        QCOMPARE(m_capture->state().inputs.size(), std::size_t(1));
        QCOMPARE(m_capture->state().outputs.size(), std::size_t(1));
        QVERIFY(m_capture->state().inputs.front() != firstInput);
        // The checks come before the old ones are removed, all in one transaction.
        QCOMPARE(m_capture->state().steps.mid(startSteps.size()),
            (QStringList {QStringLiteral("default device"), QStringLiteral("can add input"),
                QStringLiteral("can add output"), QStringLiteral("begin"), QStringLiteral("remove input"),
                QStringLiteral("remove output"), QStringLiteral("add input"), QStringLiteral("add output"),
                QStringLiteral("commit"), QStringLiteral("start")}));
        QVERIFY(!m_capture->outputs().front()->delegate());
        QVERIFY(m_capture->output().delegate());
    }

    void stoppingDetachesStopsAndEmptiesTheSession()
    {
        start();
        stop();
        QCOMPARE(m_capture->state().steps.mid(startSteps.size()),
            (QStringList {
                QStringLiteral("stop"), QStringLiteral("remove input"), QStringLiteral("remove output")}));
        QVERIFY(!m_capture->output().delegate());
        QVERIFY(!m_capture->output().queue());
        QVERIFY(m_framework->reserved().isEmpty());
    }

    void stoppingBeforeStartingOrTwiceIsFine()
    {
        stop();
        QVERIFY(m_capture->state().steps.isEmpty());
        start();
        stop();
        stop();
        QCOMPARE(m_capture->state().steps.count(QStringLiteral("stop")), 1);
        start();
        QVERIFY(m_capture->state().isRunning);
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
        CoroutineGate &gate = atTranscriber ? m_framework->reservationGate : m_capture->state().startGate;
        gate.close();
        auto starting = m_pipeline->start();
        QCOMPARE(gate.waiting(), std::size_t(1));
        stop();
        gate.open();
        test::waitFor(std::move(starting));
        QVERIFY(!m_capture->state().isRunning);
        QVERIFY(m_capture->state().inputs.empty());
        QVERIFY(m_framework->reserved().isEmpty());
    }

    void aPipelineCanBeDroppedWhileRunning()
    {
        start();
        m_pipeline = nullptr;
        QVERIFY(!m_capture->state().isRunning);
        QVERIFY(!m_capture->output().delegate());
    }
};

LUMAPHONE_TEST(MicrophoneLivePipelineTest)

} // namespace microphonelivepipelinetest

#include "MicrophoneLivePipelineTest.moc"
