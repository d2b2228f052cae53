#include "cli/JsonLines.h"
#include "support/Coroutines.h"
#include "support/MisbehavingHttpServer.h"
#include "support/MuteSecretService.h"
#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace captiontranslationtest {

using namespace lumaphone;
using test::RunningProgram;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);
const QString speech = QStringLiteral(
    "/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-0880.wav");

/// A user without a keyring, with folders of their own.
struct User
{
    QTemporaryDir home;

    QList<std::pair<QString, QString>> environment() const
    {
        return {{"HOME", home.path()}, {"XDG_CONFIG_HOME", home.filePath("config")},
            {"XDG_DATA_HOME", home.filePath("data")}, {"XDG_RUNTIME_DIR", home.path()},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"}};
    }
    RunningProgram start(const QStringList &arguments) const { return {program, arguments, environment()}; }
    /// Runs a command to its end.
    std::unique_ptr<RunningProgram> run(const QStringList &arguments) const
    {
        auto running = std::make_unique<RunningProgram>(program, arguments, environment());
        running->waitForEnd();
        return running;
    }
    void use(const QString &baseURL) const
    {
        QCOMPARE(run({"settings", "set", "lumaphone.provider.baseURL", baseURL})->exitCode(), 0);
    }
};

/// A chat-completions server in a process of its own.
class ChatServer
{
public:
    explicit ChatServer(const QStringList &arguments = {})
        : m_server(QStringLiteral(LUMAPHONE_CHAT_SERVER), arguments)
    {
        m_server.waitForOutput("\n");
    }
    QString baseURL() { return QString::fromUtf8(m_server.outputLines().constFirst()); }

private:
    RunningProgram m_server;
};

} // namespace

class CaptionTranslationTest : public QObject
{
    Q_OBJECT

private slots:
    void everyLineIsPrintedWithItsTranslation()
    {
        ChatServer server;
        const User user;
        user.use(server.baseURL());
        const auto captions = user.run({"caption", speech, "--translate", "custom"});
        QCOMPARE(captions->messages(), QByteArray());
        QCOMPARE(captions->exitCode(), 0);
        const QList<QByteArray> lines = captions->outputLines();
        QCOMPARE(lines.size(), 2);
        QVERIFY2(lines[1].startsWith("  〔") && lines[1].contains(lines[0]), captions->output());
    }

    void translationsAreInTheJsonLines()
    {
        ChatServer server;
        const User user;
        user.use(server.baseURL());
        QCOMPARE(user.run({"settings", "set", "lumaphone.processingMode", "customAPI"})->exitCode(), 0);
        const auto captions = user.run({"caption", speech, "--format", "jsonl"});
        QCOMPARE(captions->exitCode(), 0);
        const auto [source, translation] = test::lastFinalLine(captions->outputLines());
        QVERIFY(!source.isEmpty());
        QVERIFY2(translation.contains(source), qPrintable(translation));
    }

    void theChoicesOfOneSessionAreNotKept()
    {
        const User user;
        const auto before = user.run({"settings", "list"});
        const auto captions = user.run({"caption", speech, "--language", "english", "--translate", "off"});
        QCOMPARE(captions->exitCode(), 0);
        QCOMPARE(user.run({"settings", "list"})->output(), before->output());
        QVERIFY(!QFile::exists(user.home.filePath("config/lumaphone/settings.json")));
    }

    void aProviderThatFailsCostsNoLine()
    {
        ChatServer server({"--fail", "500"});
        const User user;
        user.use(server.baseURL());
        const auto captions = user.run({"caption", speech, "--translate", "custom"});
        QCOMPARE(captions->exitCode(), 0);
        QCOMPARE(captions->outputLines().size(), 1);
        QVERIFY2(captions->messages().startsWith("自定義 API 錯誤："), captions->messages());
    }

    void whatWasHeardIsPrintedThoughItsTranslationNeverComes_data()
    {
        QTest::addColumn<int>("times");
        QTest::newRow("asked once") << 1;
        QTest::newRow("asked twice") << 2;
    }
    void whatWasHeardIsPrintedThoughItsTranslationNeverComes()
    {
        QFETCH(int, times);
        test::MisbehavingHttpServer server;
        server.alwaysAnswer(test::behaviour::stayMute());
        const User user;
        user.use(server.url("/v1"));
        RunningProgram captions = user.start({"caption", speech, "--translate", "custom"});
        QVERIFY(test::waitUntil([&server] { return !server.requests().isEmpty(); }, 60000));
        for (int i = 0; i < times; ++i) {
            captions.signal(SIGTERM);
        }
        // The server's own time-out would be a minute.
        QVERIFY(captions.waitForEnd(30000));
        QVERIFY(!captions.crashed());
        QCOMPARE(captions.exitCode(), 0);
        QCOMPARE(captions.outputLines().size(), 1);
        QVERIFY2(captions.output().startsWith("He "), captions.output());
    }

    void aPairWithoutAModelIsSaidOnce()
    {
        const User user;
        const auto captions = user.run({"caption", speech, "--translate", "apple"});
        QCOMPARE(captions->exitCode(), 0);
        QCOMPARE(captions->outputLines().size(), 1);
        QVERIFY2(captions->messages().startsWith("Apple Translation 錯誤："), captions->messages());
        QCOMPARE(captions->messages().count('\n'), 1);
    }

    void aProviderWithoutAModelNameIsRefused()
    {
        const User user;
        QCOMPARE(user.run({"settings", "set", "lumaphone.provider.model", ""})->exitCode(), 0);
        const auto captions = user.run({"caption", speech, "--translate", "custom"});
        QCOMPARE(captions->exitCode(), 1);
        QCOMPARE(captions->messages(),
            QStringLiteral(
                "自定義 API 尚未啟用文字翻譯 capability。請先設定 Base URL 與 Model，或切回 Apple Mode。\n")
                .toUtf8());
    }

    void aKilledSessionLeavesItsDraft()
    {
        ChatServer server;
        const User user;
        user.use(server.baseURL());
        {
            RunningProgram captions = user.start(
                {"caption", speech, "--realtime", "--draft", "--translate", "custom", "--format", "jsonl"});
            QVERIFY(captions.waitForOutput("〔"));
            captions.signal(SIGKILL);
            QVERIFY(captions.waitForEnd());
            QVERIFY(captions.crashed());
        }
        const auto shown = user.run({"draft", "show"});
        QCOMPARE(shown->exitCode(), 0);
        QVERIFY2(shown->output().contains("\n  〔"), shown->output());

        const auto told = user.run({"caption", speech, "--translate", "off"});
        QCOMPARE(told->exitCode(), 0);
        QVERIFY(told->messages().contains("draft show"));
        QCOMPARE(user.run({"draft", "show"})->output(), shown->output());

        const auto refused = user.run({"caption", speech, "--draft", "--translate", "off"});
        QCOMPARE(refused->exitCode(), 1);
        QCOMPARE(refused->messages(),
            QStringLiteral("上一段 Transcript 尚未儲存。請先儲存或清除，再開始新的 Session。\n").toUtf8());

        QCOMPARE(user.run({"draft", "discard"})->exitCode(), 0);
        QCOMPARE(user.run({"draft", "show"})->exitCode(), 1);
        QCOMPARE(user.run({"draft", "discard"})->exitCode(), 1);
    }

    void theKeyIsKeptInTheKeyring()
    {
        ChatServer server({"--key", "sk-secret"});
        const test::PrivateSessionBus bus;
        test::PrivateKeyring keyring(bus);
        keyring.start();
        const QTemporaryDir home;
        const QList<std::pair<QString, QString>> environment {
            {"XDG_CONFIG_HOME", home.filePath("config")}, {"XDG_DATA_HOME", home.filePath("data")}};
        const auto run = [&environment](const QStringList &arguments, const QByteArray &input = {}) {
            auto running = std::make_unique<RunningProgram>(program, arguments, environment);
            running->write(input);
            running->closeInput();
            running->waitForEnd();
            return running;
        };
        QCOMPARE(run({"key", "status"})->output(), QStringLiteral("尚未儲存 API 金鑰。\n").toUtf8());
        QCOMPARE(run({"settings", "set", "lumaphone.provider.baseURL", server.baseURL()})->exitCode(), 0);
        QCOMPARE(run({"key", "set"}, " sk-secret \n")->exitCode(), 0);
        const QString address = server.baseURL().section(u'/', 0, 2);
        QCOMPARE(run({"key", "status"})->output(),
            QStringLiteral("已儲存 API 金鑰，只會送到 %1。\n").arg(address).toUtf8());
        const auto captions = run({"caption", speech, "--translate", "custom"});
        QVERIFY2(captions->output().contains("  〔"), captions->messages());

        // The key is not carried to another address.
        ChatServer other({"--key", "sk-secret"});
        const auto told = run({"settings", "set", "lumaphone.provider.baseURL", other.baseURL()});
        QCOMPARE(told->exitCode(), 0);
        QVERIFY2(told->messages().contains("lumaphone-cli key set"), told->messages());
        QCOMPARE(run({"key", "status"})->output(),
            QStringLiteral("已儲存的 API 金鑰 屬於另一個位址，不會送到目前設定的 %1。\n")
                .arg(other.baseURL())
                .toUtf8());
        const auto withheld = run({"caption", speech, "--translate", "custom"});
        QVERIFY2(!withheld->output().contains("  〔"), withheld->output());

        QCOMPARE(run({"key", "clear"})->exitCode(), 0);
        QCOMPARE(run({"key", "status"})->output(), QStringLiteral("尚未儲存 API 金鑰。\n").toUtf8());
        QCOMPARE(run({"key", "set"}, "\n")->exitCode(), 2);
        QCOMPARE(run({"settings", "set", "lumaphone.provider.baseURL", "example.org"})->exitCode(), 0);
        QCOMPARE(run({"key", "set"}, "sk-secret\n")->exitCode(), 1);
        QCOMPARE(keyring.itemCount(), 0);
    }

    void aKeyringThatDoesNotAnswerHoldsNothingUp()
    {
        ChatServer server;
        const test::PrivateSessionBus bus;
        const test::MuteSecretService mute(bus);
        QVERIFY(mute.isThere());
        const QTemporaryDir home;
        // What waits for the keyring waits twenty-five seconds.
        const auto run = [&home](const QStringList &arguments) {
            auto running = std::make_unique<RunningProgram>(program, arguments,
                QList<std::pair<QString, QString>> {
                    {"XDG_CONFIG_HOME", home.filePath("config")}, {"XDG_DATA_HOME", home.filePath("data")}});
            running->closeInput();
            test::waitUntil([&running] { return !running->isRunning(); }, 20000);
            return running;
        };
        QVERIFY(!run({"settings", "list"})->isRunning());
        QCOMPARE(run({"settings", "set", "lumaphone.provider.baseURL", server.baseURL()})->exitCode(), 0);
        const auto captions = run({"caption", speech, "--translate", "custom"});
        QVERIFY(!captions->isRunning());
        QVERIFY2(captions->output().contains("  〔"), captions->messages());
        const auto status = run({"key", "status"});
        QVERIFY(!status->isRunning());
        QCOMPARE(status->exitCode(), 1);
        QVERIFY2(status->messages().contains("鑰匙圈沒有回應"), status->messages());
        QVERIFY(mute.calls() > 0);
    }
};

LUMAPHONE_TEST(CaptionTranslationTest)

} // namespace captiontranslationtest

#include "CaptionTranslationTest.moc"
