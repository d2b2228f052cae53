#include "support/ChildProcess.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"

#include <QObject>
#include <QTest>

#include <memory>

namespace chatservertest {

using namespace lumaphone;
using Error = OpenAICompatibleTranslationError;

/// The program that stands for a provider in demonstrations and end-to-end tests.
class ChatServerTest : public QObject
{
    Q_OBJECT

private slots:
    void itPutsTheTextIntoBrackets()
    {
        start({});
        QCOMPARE(translated(QStringLiteral("Hello \"there\".")), QStringLiteral("〔Hello \"there\".〕"));
        QCOMPARE(translated(QStringLiteral("こんにちは")), QStringLiteral("〔こんにちは〕"));
    }

    void itRefusesTheWrongKey()
    {
        start({QStringLiteral("--key"), QStringLiteral("right")});
        QCOMPARE(statusOf(QStringLiteral("Hello")), 401);
        m_configuration.apiKey = QStringLiteral("right");
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("〔Hello〕"));
    }

    void itKnowsOnePathOnly()
    {
        start({});
        m_configuration.baseURL.replace(QStringLiteral("/v1"), QStringLiteral("/v2"));
        QCOMPARE(statusOf(QStringLiteral("Hello")), 404);
    }

    void itFailsAsOftenAsItIsTold()
    {
        start({QStringLiteral("--fail"), QStringLiteral("503"), QStringLiteral("--failures"),
            QStringLiteral("2")});
        QCOMPARE(statusOf(QStringLiteral("Hello")), 503);
        QCOMPARE(statusOf(QStringLiteral("Hello")), 503);
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("〔Hello〕"));
    }

    void itFailsInEveryMode_data()
    {
        QTest::addColumn<QString>("mode");
        for (const char *mode : {"close", "garbage", "empty"}) {
            QTest::newRow(mode) << QString::fromLatin1(mode);
        }
    }
    void itFailsInEveryMode()
    {
        QFETCH(QString, mode);
        start({QStringLiteral("--fail"), mode});
        for (int i = 0; i < 3; ++i) {
            QVERIFY(test::thrownBy<LocalizedError>([&] { translated(QStringLiteral("Hello")); }));
        }
    }

    void itRefusesAnUnknownMode()
    {
        m_server = std::make_unique<test::ChildProcess>(
            program(), QStringList {QStringLiteral("--fail"), QStringLiteral("nonsense")});
        QCOMPARE(m_server->wait(), 2);
    }

    void itWaitsAsLongAsItIsTold()
    {
        start({QStringLiteral("--delay"), QStringLiteral("60000")});
        OpenAICompatibleTranslationService impatient(std::chrono::milliseconds(100));
        QVERIFY(test::thrownBy<LocalizedError>([&] {
            test::waitFor(
                impatient.translate(QStringLiteral("Hello"), QStringLiteral("en"), m_configuration, {}));
        }));
        start({QStringLiteral("--delay"), QStringLiteral("50")});
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("〔Hello〕"));
    }

private:
    static QString program() { return QStringLiteral(LUMAPHONE_TEST_CHAT_SERVER); }

    void start(const QStringList &arguments)
    {
        m_server = std::make_unique<test::ChildProcess>(program(), arguments);
        m_configuration = {m_server->nextLine(), QStringLiteral("key"), QStringLiteral("m")};
        QVERIFY(m_configuration.baseURL.startsWith(QStringLiteral("http://127.0.0.1:")));
    }

    QString translated(const QString &text)
    {
        return test::waitFor(m_service.translate(text, QStringLiteral("en"), m_configuration, {}));
    }

    int statusOf(const QString &text)
    {
        return test::thrownBy<Error>([&] { translated(text); }).value().status();
    }

    std::unique_ptr<test::ChildProcess> m_server;
    OpenAICompatibleTranslationService m_service;
    OpenAICompatibleProviderConfiguration m_configuration;
};

LUMAPHONE_TEST(ChatServerTest)

} // namespace chatservertest

#include "ChatServerTest.moc"
