#include "platform/sound/PulseScreenAudioCapture.h"

#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/program/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace pulsescreenaudiocapturetest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

class PulseScreenAudioCaptureTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<PrivateSoundServer> m_server;
    std::unique_ptr<PulseScreenAudioCapture> m_capture;

    QString defaultOutput()
    {
        const auto output = test::waitFor(m_capture->defaultOutput());
        return output ? output->id : QString();
    }

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void init()
    {
        m_server = std::make_unique<PrivateSoundServer>();
        m_capture = std::make_unique<PulseScreenAudioCapture>(m_mainQueue);
    }

    void cleanup()
    {
        m_capture.reset();
        m_server.reset();
    }

    void theServersDefaultIsTheOutput()
    {
        m_server->addOutput(QStringLiteral("first"));
        m_server->addOutput(QStringLiteral("second"));
        m_server->addOutput(QStringLiteral("third"));
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_server->setDefaultOutput(QStringLiteral("second"));
        QCOMPARE(defaultOutput(), QStringLiteral("second"));
        m_server->setDefaultOutput(QStringLiteral("third"));
        QCOMPARE(defaultOutput(), QStringLiteral("third"));
    }

    void anOutputIsCalledWhatTheServerCallsIt()
    {
        m_server->loadModule(QStringLiteral("module-null-sink"),
            {QStringLiteral("sink_name=alsa_output.usb"),
                QStringLiteral("sink_properties=device.description=耳機")});
        const auto output = test::waitFor(m_capture->defaultOutput());
        QVERIFY(output);
        QCOMPARE(output->id, QStringLiteral("alsa_output.usb"));
        QCOMPARE(output->name, QStringLiteral("耳機"));
    }

    void withoutOutputsThereIsNone()
    {
        QVERIFY(!test::waitFor(m_capture->defaultOutput()));
        m_server->loadModule(QStringLiteral("module-pipe-source"),
            {QStringLiteral("source_name=microphone"),
                QStringLiteral("file=%1/pipe").arg(m_server->folder())});
        QVERIFY(!test::waitFor(m_capture->defaultOutput()));
    }

    void theDummyOutputIsAnOutput()
    {
        m_server->loadModule(QStringLiteral("module-always-sink"));
        QCOMPARE(defaultOutput(), QStringLiteral("auto_null"));
    }

    void withoutAServerTheErrorCarriesItsText()
    {
        m_server->kill();
        const auto error = thrownBy<CaptureServiceError>([&] { test::waitFor(m_capture->defaultOutput()); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("無法連線到聲音伺服器：Connection refused"));
        m_server->start();
        m_server->addOutput(QStringLiteral("speakers"));
        QCOMPARE(defaultOutput(), QStringLiteral("speakers"));
    }

    void aStuckServerIsGivenUpWithoutStoppingTheEventLoop()
    {
        PulseOptions options;
        options.timeLimit = 1s;
        PulseScreenAudioCapture capture(m_mainQueue, options);
        m_server->freeze();
        // A loop that stands still makes up for one tick at most.
        int ticks = 0;
        QTimer ticking;
        connect(&ticking, &QTimer::timeout, this, [&ticks] { ++ticks; });
        ticking.start(5ms);
        QElapsedTimer whole;
        whole.start();
        const auto error = thrownBy<CaptureServiceError>([&] { test::waitFor(capture.defaultOutput()); });
        const qint64 wholeMs = whole.elapsed();
        m_server->thaw();
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("聲音伺服器沒有回應：Timeout"));
        QVERIFY2(wholeMs >= 1000, qPrintable(QString::number(wholeMs)));
        QVERIFY2(ticks > 3, qPrintable(QString::number(ticks)));
    }

    void onADesktopEverybodyMayRecordEvenWithoutAServer()
    {
        QVERIFY(m_capture->preflightAccess());
        m_server->kill();
        QVERIFY(m_capture->preflightAccess());
    }

    void insideASandboxTheSocketDecides_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("isGranted");
        const QString server = QStringLiteral("<server>");
        QTest::newRow("path with prefix") << QStringLiteral("unix:<server>") << true;
        QTest::newRow("bare path") << server << true;
        QTest::newRow("with the machine's id") << QStringLiteral("{0123abcd}unix:<server>") << true;
        QTest::newRow("second of two") << QStringLiteral("unix:/nowhere/native  <server>") << true;
        QTest::newRow("no such socket") << QStringLiteral("unix:/nowhere/native") << false;
        QTest::newRow("another machine") << QStringLiteral("tcp:sound.example:4713") << true;
        QTest::newRow("a path longer than any socket's")
            << QStringLiteral("unix:/") + QString(200, QLatin1Char('x')) << false;
    }

    void insideASandboxTheSocketDecides()
    {
        QFETCH(QString, address);
        QFETCH(const bool, isGranted);
        PulseOptions options;
        options.sandboxMarkerPath = m_server->folder() + QStringLiteral("/marker");
        PulseScreenAudioCapture capture(m_mainQueue, options);
        const QByteArray former = qgetenv("PULSE_SERVER");
        qputenv("PULSE_SERVER", address.replace(QStringLiteral("<server>"), m_server->socketPath()).toUtf8());
        QVERIFY(capture.preflightAccess());
        QFile marker(options.sandboxMarkerPath);
        QVERIFY(marker.open(QIODevice::WriteOnly));
        const bool answer = capture.preflightAccess();
        qputenv("PULSE_SERVER", former);
        QCOMPARE(answer, isGranted);
        capture.requestAccess();
        m_server->kill();
        QVERIFY(!capture.preflightAccess());
    }

    void insideASandboxTheUsualPlaceIsTheRuntimeFolder()
    {
        const QByteArray server = qgetenv("PULSE_SERVER");
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        PulseOptions options;
        options.sandboxMarkerPath = QStringLiteral("/");
        PulseScreenAudioCapture capture(m_mainQueue, options);
        qunsetenv("PULSE_SERVER");
        const QTemporaryDir folder;
        qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
        const bool without = capture.preflightAccess();
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("pulse")));
        QVERIFY(QFile::link(m_server->socketPath(), folder.filePath(QStringLiteral("pulse/native"))));
        const bool with = capture.preflightAccess();
        qputenv("PULSE_SERVER", server);
        qputenv("XDG_RUNTIME_DIR", runtime);
        QVERIFY(!without);
        QVERIFY(with);
    }
};

LUMAPHONE_TEST(PulseScreenAudioCaptureTest)

} // namespace pulsescreenaudiocapturetest

#include "PulseScreenAudioCaptureTest.moc"
