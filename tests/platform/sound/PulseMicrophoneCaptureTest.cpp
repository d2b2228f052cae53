#include "platform/sound/PulseMicrophoneCapture.h"

#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/program/TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

namespace pulsemicrophonecapturetest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

class PulseMicrophoneCaptureTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<PrivateSoundServer> m_server;
    std::unique_ptr<PulseMicrophoneCapture> m_capture;

    std::optional<SoundDevice> defaultInput() { return test::waitFor(m_capture->defaultInput()); }

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void init()
    {
        m_server = std::make_unique<PrivateSoundServer>();
        m_capture = std::make_unique<PulseMicrophoneCapture>(m_mainQueue);
    }

    void cleanup()
    {
        m_capture.reset();
        m_server.reset();
    }

    void theServersDefaultIsTheDevice()
    {
        m_server->addMicrophone(QStringLiteral("webcam"));
        m_server->loadModule(QStringLiteral("module-remap-source"),
            {QStringLiteral("source_name=headset"), QStringLiteral("master=webcam_room.monitor"),
                QStringLiteral("source_properties=device.description=耳麥")});
        m_server->setDefaultMicrophone(QStringLiteral("headset"));
        const auto device = defaultInput();
        QVERIFY(device);
        QCOMPARE(device->id, QStringLiteral("headset"));
        QCOMPARE(device->name, QStringLiteral("耳麥"));
        m_server->setDefaultMicrophone(QStringLiteral("webcam"));
        QCOMPARE(defaultInput()->id, QStringLiteral("webcam"));
    }

    void whatRecordsAnOutputIsNoMicrophone()
    {
        m_server->addOutput(QStringLiteral("speakers"));
        QVERIFY(!defaultInput());
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultMicrophone(QStringLiteral("speakers.monitor"));
        QVERIFY(!defaultInput());
    }

    void aServerWithoutDevicesHasNoMicrophone() { QVERIFY(!defaultInput()); }

    void withoutAServerTheErrorCarriesItsText()
    {
        m_server->kill();
        const auto error = thrownBy<CaptureServiceError>([&] { defaultInput(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("無法連線到聲音伺服器：Connection refused"));
    }

    void aStuckServerIsGivenUp()
    {
        PulseOptions options;
        options.timeLimit = 500ms;
        PulseMicrophoneCapture capture(m_mainQueue, options);
        m_server->freeze();
        QElapsedTimer timer;
        timer.start();
        const auto error = thrownBy<CaptureServiceError>([&] { test::waitFor(capture.defaultInput()); });
        const qint64 elapsedMs = timer.elapsed();
        m_server->thaw();
        QVERIFY(error);
        QVERIFY2(elapsedMs >= 500, qPrintable(QString::number(elapsedMs)));
    }

    void makingARecorderRecordsNothing()
    {
        m_server->addMicrophone(QStringLiteral("microphone"));
        QVERIFY(defaultInput());
        const auto recorder = m_capture->makeRecorder();
        QVERIFY(m_server->recordings().empty());
    }

    void onADesktopEverybodyMayRecord()
    {
        QCOMPARE(m_capture->authorizationStatus(), CaptureAuthorization::authorized);
        QVERIFY(test::waitFor(m_capture->requestAccess()));
    }

    void insideASandboxTheSocketDecides()
    {
        PulseOptions options;
        options.sandboxMarkerPath = QStringLiteral("/");
        PulseMicrophoneCapture capture(m_mainQueue, options);
        QCOMPARE(capture.authorizationStatus(), CaptureAuthorization::authorized);
        QVERIFY(test::waitFor(capture.requestAccess()));
        m_server->kill();
        QCOMPARE(capture.authorizationStatus(), CaptureAuthorization::denied);
        QVERIFY(!test::waitFor(capture.requestAccess()));
    }
};

LUMAPHONE_TEST(PulseMicrophoneCaptureTest)

} // namespace pulsemicrophonecapturetest

#include "PulseMicrophoneCaptureTest.moc"
