#include "platform/sound/PulseRecorder.h"

#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateSoundServer.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>

namespace pulserecordertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const pa_sample_spec speech {PA_SAMPLE_S16NE, 16000, 1};

} // namespace

class PulseRecorderTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PrivateSoundServer> m_server;
    std::unique_ptr<PulseConnection> m_connection;
    std::atomic<std::size_t> m_bytes {0};
    const PulseRecorder::Sink m_sink = [this](const std::byte *, std::size_t bytes) {
        m_bytes += bytes;
    };

private slots:
    void initTestCase() { LUMAPHONE_NEEDS(PrivateSoundServer::missingPrograms()); }

    void init()
    {
        m_bytes = 0;
        m_server = std::make_unique<PrivateSoundServer>();
        m_server->addOutput(QStringLiteral("speakers"));
        m_server->addMicrophone(QStringLiteral("microphone"));
        m_connection = std::make_unique<PulseConnection>(PulseOptions {}, std::stop_token());
    }

    void cleanup()
    {
        m_connection.reset();
        m_server.reset();
    }

    void aMonitorIsRecorded()
    {
        const auto monitor = m_connection->source(std::string("speakers.monitor"));
        QVERIFY(monitor && monitor->isMonitor());
        PulseRecorder recorder(*m_connection, *monitor, speech, m_sink);
        recorder.start();
        QVERIFY(waitUntil([&] { return m_bytes > 6400; }));
        QVERIFY(!recorder.hasEnded());
    }

    void nothingFlowsBeforeTheStart()
    {
        const auto monitor = m_connection->source(std::string("speakers.monitor"));
        PulseRecorder waiting(*m_connection, *monitor, speech, m_sink);
        std::atomic<std::size_t> flowing {0};
        PulseRecorder running(*m_connection, *monitor, speech,
            [&flowing](const std::byte *, std::size_t bytes) { flowing += bytes; });
        running.start();
        QVERIFY(waitUntil([&] { return flowing > 6400; }));
        QCOMPARE(m_bytes.load(), std::size_t(0));
    }

    void aDeviceThatIsNotTheWantedOneIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("indexOffset");
        QTest::addColumn<bool>("isMonitor");
        QTest::newRow("a microphone under the name") << QStringLiteral("microphone") << 0 << true;
        QTest::newRow("another index") << QStringLiteral("speakers.monitor") << 1 << true;
        QTest::newRow("the monitor of another output")
            << QStringLiteral("microphone_room.monitor") << 0 << true;
        QTest::newRow("a monitor where a microphone is wanted")
            << QStringLiteral("speakers.monitor") << 0 << false;
    }

    void aDeviceThatIsNotTheWantedOneIsRefused()
    {
        QFETCH(const QString, name);
        QFETCH(const int, indexOffset);
        QFETCH(const bool, isMonitor);
        const auto speakers = m_connection->sink("speakers");
        const auto there = m_connection->source(name.toStdString());
        QVERIFY(speakers && there);
        // What the server is believed to have under this name, and what is really there.
        PulseSource wanted = *there;
        wanted.index += static_cast<std::uint32_t>(indexOffset);
        wanted.monitorOfSink = isMonitor ? speakers->index : PA_INVALID_INDEX;
        const auto error = thrownBy<CaptureServiceError>(
            [&] { PulseRecorder recorder(*m_connection, wanted, speech, m_sink); });
        QVERIFY(error);
        QVERIFY2(error->errorDescription().contains(name), error->what());
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
        QCOMPARE(m_bytes.load(), std::size_t(0));
    }

    void aSourceThatIsNotThereIsAnError()
    {
        PulseSource wanted;
        wanted.name = "nowhere";
        wanted.sampleSpec = speech;
        pa_channel_map_init_mono(&wanted.channelMap);
        const auto error = thrownBy<CaptureServiceError>(
            [&] { PulseRecorder recorder(*m_connection, wanted, speech, m_sink); });
        QVERIFY(error);
        // Some servers say so, in a text of their own. Others record from what they have instead.
        const QStringList texts {QStringLiteral("無法開始錄音：No such entity"),
            QStringLiteral("聲音伺服器錄到的裝置「speakers.monitor」不是要求的「nowhere」，已停止錄音。"),
            QStringLiteral("聲音伺服器錄到的裝置「microphone」不是要求的「nowhere」，已停止錄音。")};
        const auto isRefusal
            = PrivateSoundServer::kind() == SoundServerKind::pulseAudio ? texts.first(1) : texts;
        QVERIFY2(isRefusal.contains(error->errorDescription()), error->what());
        QVERIFY(waitUntil([&] { return m_server->recordings().empty(); }));
        QCOMPARE(m_bytes.load(), std::size_t(0));
    }

    void nobodyMovesARecordingToAMicrophone()
    {
        const auto monitor = m_connection->source(std::string("speakers.monitor"));
        PulseRecorder recorder(*m_connection, *monitor, speech, m_sink);
        recorder.start();
        const QStringList rows = m_server
                                     ->control({QStringLiteral("list"), QStringLiteral("short"),
                                         QStringLiteral("source-outputs")})
                                     .split(QLatin1Char('\n'));
        for (const QString &row : rows) {
            const QStringList cells = row.split(QLatin1Char('\t'));
            if (cells.size() > 2 && cells[1] == QString::number(monitor->index)) {
                QVERIFY(thrownBy<std::runtime_error>([&] {
                    m_server->control(
                        {QStringLiteral("move-source-output"), cells[0], QStringLiteral("microphone")});
                }));
                return;
            }
        }
        QFAIL("The recording is not listed.");
    }

    void aSourceThatVanishesEndsTheRecording()
    {
        const int module = m_server->addOutput(QStringLiteral("headphones"));
        const auto monitor = m_connection->source(std::string("headphones.monitor"));
        PulseRecorder recorder(*m_connection, *monitor, speech, m_sink);
        recorder.start();
        m_server->unloadModule(module);
        QVERIFY(m_connection->waitUntil(
            [&recorder] { return recorder.hasEnded(); }, std::chrono::milliseconds(10000)));
    }
};

LUMAPHONE_TEST(PulseRecorderTest)

} // namespace pulserecordertest

#include "PulseRecorderTest.moc"
