#include "speech/hosted/SpeechHostSession.h"

#include "platform/SpeechFramework.h"
#include "support/Gate.h"
#include "support/program/TestProgram.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTemporaryFile>
#include <QTest>

#include <sys/wait.h>

#include <csignal>
#include <future>

namespace speechhostsessiontest {

using namespace lumaphone;

namespace {

const QString scriptedHost = QStringLiteral(LUMAPHONE_TEST_SPEECH_HOST);
constexpr std::int16_t poison = 666;
constexpr std::int16_t fatal = 667;

/// A session with the scripted host and the texts it gave.
class Session
{
public:
    explicit Session(const std::string &script, const QString &program = scriptedHost,
        std::chrono::milliseconds silence = SpeechHostSession::longestSilence)
        : m_session(
            program, configurationOf(script),
            [this](const host::Decoded &text) {
                const std::lock_guard lock(m_mutex);
                m_texts.append(QString::fromStdString(text.text));
                m_changed.notify_all();
            },
            SpeechHostSession::reinstallTheModel(), silence)
    {
    }

    SpeechHostSession *operator->() { return &m_session; }

    /// One message of sound.
    void say(std::int16_t value)
    {
        // Longer pieces would not wait for the one before: the outbox would join them.
        m_session.append(std::vector<std::int16_t>(4096, value));
    }

    QStringList texts()
    {
        const std::lock_guard lock(m_mutex);
        return m_texts;
    }

    bool waitForTexts(qsizetype count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(
            lock, std::chrono::seconds(20), [this, count] { return m_texts.size() >= count; });
    }

    bool waitForHostOtherThan(pid_t process)
    {
        return QTest::qWaitFor(
            [this, process] { return m_session.processId() > 0 && m_session.processId() != process; }, 20000);
    }

private:
    static host::Configure configurationOf(const std::string &script)
    {
        host::Configure configuration;
        configuration.runtimeFolder = script;
        return configuration;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    QStringList m_texts;
    SpeechHostSession m_session;
};

QString errorOf(const std::function<void()> &work)
{
    try {
        work();
    } catch (const SpeechFrameworkError &error) {
        return error.errorDescription();
    }
    return {};
}

bool hasChildren()
{
    return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

} // namespace

class SpeechHostSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!hasChildren()); }

    void textsComeAndTheEndWaitsForTheLast()
    {
        Session session("echo");
        session->start();
        QVERIFY(session->processId() > 0);
        for (const std::int16_t value : {1, 2, 3}) {
            session.say(value);
        }
        session->finish();
        QCOMPARE(session.texts(), QStringList({"1", "2", "3"}));
        session->finish();
    }

    void loadingFailures_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("text");
        QTest::newRow("no program") << "/nowhere/host" << QByteArray("echo")
                                    << "無法啟動語音辨識程式 /nowhere/host：No such file or directory";
        QTest::newRow("ends") << scriptedHost << QByteArray("exits")
                              << "語音辨識程式在載入模型時結束，模型可能已損壞，請移除後重新安裝。";
        QTest::newRow("talks nonsense") << scriptedHost << QByteArray("garbage")
                                        << "語音辨識程式在載入模型時結束，模型可能已損壞，請移除後重新安裝。";
        QTest::newRow("refuses") << scriptedHost << QByteArray("refuses")
                                 << "語音辨識模型缺少或已損壞，請移除後重新安裝。（model.onnx）";
    }
    void loadingFailures()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, script);
        QFETCH(QString, text);
        Session session(script.toStdString(), program);
        QCOMPARE(errorOf([&session] { session->start(); }), text);
        QCOMPARE(errorOf([&session] { session.say(1); }), text);
        QCOMPARE(errorOf([&session] { session->finish(); }), text);
        QCOMPARE(session->processId(), pid_t(-1));
    }

    void aLibraryNewerThanTheTestedOnesIsNoted()
    {
        QTest::ignoreMessage(QtInfoMsg, "The speech runtime 1.14.0 is newer than those that were tested.");
        Session session("newer");
        session->start();
        session.say(1);
        session->finish();
        QCOMPARE(session.texts(), QStringList({"1"}));
    }

    void aHostThatMayNotBeRunIsSaid()
    {
        QTemporaryFile program;
        QVERIFY(program.open());
        Session session("echo", program.fileName());
        QCOMPARE(errorOf([&session] { session->start(); }),
            QStringLiteral("無法啟動語音辨識程式 %1：Permission denied").arg(program.fileName()));
    }

    void cancellingEndsAHostThatLoads()
    {
        Session session("loads for ever");
        auto loading = std::async(std::launch::async, [&session] { session->start(); });
        QVERIFY(session.waitForHostOtherThan(-1));
        session->cancel();
        loading.get();
    }

    void cancellingEndsAHostThatDoesNotListen()
    {
        Session session("deaf");
        session->start();
        auto saying = std::async(std::launch::async, [&session] {
            for (int i = 0; i < 1000; ++i) {
                session.say(1);
            }
        });
        auto finishing = std::async(std::launch::async, [&session] { session->finish(); });
        session->cancel();
        saying.get();
        finishing.get();
    }

    void aHostThatStopsReadingBeforeASegmentClosesFailsTheSession()
    {
        Session session("deaf", scriptedHost, std::chrono::milliseconds(100));
        session->start();
        const auto sayForEver = [&session] {
            while (true) {
                session.say(1);
            }
        };
        QCOMPARE(errorOf(sayForEver), "語音辨識程式一再沒有回應，已停止辨識。");
        QCOMPARE(session->processId(), pid_t(-1));
    }

    void aKilledHostIsStartedAgainAndNoTextIsLost()
    {
        Session session("echo");
        session->start();
        session.say(1);
        QVERIFY(session.waitForTexts(1));
        for (std::int16_t value = 2; value <= 4; ++value) {
            const pid_t process = session->processId();
            ::kill(process, SIGKILL);
            session.say(value);
            QVERIFY(session.waitForTexts(value));
            QVERIFY(session->processId() != process);
        }
        session->finish();
        QCOMPARE(session.texts(), QStringList({"1", "2", "3", "4"}));
    }

    void aHostThatDiesTooOftenEndsTheSessionWithOneText()
    {
        Session session("mortal");
        session->start();
        session.say(1);
        QVERIFY(session.waitForTexts(1));
        const QString text = QStringLiteral("語音辨識程式一再意外結束，已停止辨識。");
        session.say(fatal);
        session.say(fatal);
        session.say(fatal);
        QCOMPARE(errorOf([&session] { session->finish(); }), text);
        QCOMPARE(errorOf([&session] { session.say(2); }), text);
        QCOMPARE(session.texts(), QStringList({"1"}));
    }

    void soundThatKillsIsLeftOutAndTheRestIsHeard()
    {
        Session session("echo");
        session->start();
        session.say(1);
        QVERIFY(session.waitForTexts(1));
        session.say(poison);
        session.say(2);
        session.say(3);
        session->finish();
        QCOMPARE(session.texts(), QStringList({"1", "2", "3"}));
    }

    void aFailingDecodeIsTreatedAsADeath()
    {
        Session session("fails");
        session->start();
        session.say(1);
        QVERIFY(session.waitForTexts(1));
        session.say(fatal);
        session.say(2);
        session->finish();
        QCOMPARE(session.texts(), QStringList({"1", "2"}));
    }

    void theHostDiesWithTheSession()
    {
        pid_t process = -1;
        {
            Session session("echo");
            session->start();
            process = session->processId();
        }
        QCOMPARE(::kill(process, 0), -1);
    }
};

LUMAPHONE_TEST(SpeechHostSessionTest)

} // namespace speechhostsessiontest

#include "SpeechHostSessionTest.moc"
