#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/MisbehavingHttpServer.h"
#include "support/program/TestProgram.h"
#include "translation/LocalTlsServer.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/TransportError.h"

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QTest>

#include <memory>

namespace misbehavingprovidertest {

using namespace lumaphone;
using namespace std::chrono_literals;
using test::MisbehavingHttpServer;
using Error = OpenAICompatibleTranslationError;
using Reason = TransportError::Reason;

namespace behaviour = test::behaviour;

namespace {

const QString key = QStringLiteral("sk-secret-0123456789");
const QByteArray okHead = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";

QByteArray gzipped(const QByteArray &bytes)
{
    QProcess gzip;
    gzip.start(QStringLiteral("gzip"), {QStringLiteral("--stdout")});
    gzip.write(bytes);
    gzip.closeWriteChannel();
    gzip.waitForFinished();
    return gzip.readAllStandardOutput();
}

QByteArray chunk(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

QByteArray withLength(const QByteArray &head, const QByteArray &body)
{
    return head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

MisbehavingHttpServer::Behaviour redirect(int status, const QByteArray &location)
{
    return behaviour::respond(status, "moved", {{"Location", location}});
}

/// More than any translation, and what a client that reads to the announced end would wait for.
constexpr qint64 floodBytes = 2 * OpenAICompatibleTranslationService::maximumResponseBytes;
constexpr qint64 announcedBytes = 100LL * 1024 * 1024;

} // namespace

class MisbehavingProviderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<MisbehavingHttpServer>();
        m_service = std::make_unique<OpenAICompatibleTranslationService>(1min);
        m_configuration = {m_server->url(QStringLiteral("/v1")), key, QStringLiteral("m")};
    }

    // Answers that are unusual, but good.

    void goodAnswersComeInManyForms_data()
    {
        QTest::addColumn<MisbehavingHttpServer::Behaviour>("answer");
        const QByteArray body = behaviour::completionBody(QStringLiteral("你好"));
        QTest::newRow("chunked") << behaviour::sendRaw(okHead + "Transfer-Encoding: chunked\r\n\r\n"
            + chunk(body.first(7)) + chunk(body.sliced(7)) + "0\r\n\r\n");
        QTest::newRow("in single bytes")
            << behaviour::dribble(okHead + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n",
                   singleBytes(body), 0ms);
        QTest::newRow("head in pieces") << behaviour::dribble(
            "HT", {"TP/1.1 2", "00 OK\r\nConte", withLength("nt-Type: x/y\r\n", body)}, 1ms);
        QTest::newRow("until the connection ends")
            << behaviour::sendRawAndClose(okHead + "Connection: close\r\n\r\n" + body);
        QTest::newRow("HTTP/1.0") << behaviour::sendRawAndClose("HTTP/1.0 200 OK\r\n\r\n" + body);
        QTest::newRow("gzip") << behaviour::sendRaw(
            withLength(okHead + "Content-Encoding: gzip\r\n", gzipped(body)));
        QTest::newRow("gzip, chunked")
            << behaviour::sendRaw(okHead + "Content-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n\r\n"
                   + chunk(gzipped(body)) + "0\r\n\r\n");
        QTest::newRow("after 100 Continue")
            << behaviour::sendRaw("HTTP/1.1 100 Continue\r\n\r\n" + withLength(okHead, body));
        QTest::newRow("no content type") << behaviour::sendRaw(withLength("HTTP/1.1 200 OK\r\n", body));
        QTest::newRow("wrong content type")
            << behaviour::sendRaw(withLength("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n", body));
        QTest::newRow("connection closed behind it") << behaviour::sendRawAndClose(withLength(okHead, body));
        QTest::newRow("a long unknown header")
            << behaviour::sendRaw(withLength(okHead + "X-Padding: " + QByteArray(4000, 'p') + "\r\n", body));
    }
    void goodAnswersComeInManyForms()
    {
        QFETCH(MisbehavingHttpServer::Behaviour, answer);
        m_server->thenAnswer(answer);
        QCOMPARE(translated(), QStringLiteral("你好"));
        QCOMPARE(m_server->requests().size(), 1);
    }

    void aConnectionThatWasClosedInBetweenIsReplaced()
    {
        m_server->thenAnswer(
            behaviour::sendRawAndClose(withLength(okHead, behaviour::completionBody(QStringLiteral("一")))));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("二")));
        QCOMPARE(translated(QStringLiteral("one")), QStringLiteral("一"));
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
        QCOMPARE(translated(QStringLiteral("two")), QStringLiteral("二"));
        QCOMPARE(m_server->connections(), 2);
    }

    void aConnectionIsUsedAgain()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        translated(QStringLiteral("one"));
        translated(QStringLiteral("two"));
        QCOMPARE(m_server->connections(), 1);
    }

    // Answers that never come, or never end.

    void aMuteServerTimesOut()
    {
        m_server->thenAnswer(behaviour::stayMute());
        expectTimeout();
        QVERIFY2(m_server->requests().size() <= 1, "not asked again; a slow machine may not get to asking");
    }

    void aServerThatStopsInTheMiddleTimesOut_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("in the status line") << QByteArray("HTTP/1.1 20");
        QTest::newRow("in the head") << okHead;
        QTest::newRow("before the body") << okHead + "Content-Length: 100\r\n\r\n";
        QTest::newRow("in the body") << okHead + "Content-Length: 100\r\n\r\n{\"choices\"";
        QTest::newRow("between chunks") << okHead + "Transfer-Encoding: chunked\r\n\r\n" + chunk("{");
        QTest::newRow("body without an end") << okHead + "\r\n{\"choices\"";
        QTest::newRow("in the body of an error")
            << QByteArray("HTTP/1.1 500 No\r\nContent-Length: 100\r\n\r\noops");
    }
    void aServerThatStopsInTheMiddleTimesOut()
    {
        QFETCH(QByteArray, bytes);
        m_server->thenAnswer(behaviour::sendRaw(bytes));
        expectTimeout();
    }

    void aTrickleDoesNotKeepARequestAlive()
    {
        m_server->thenAnswer(behaviour::dribble(
            okHead + "Content-Length: 100000\r\n\r\n", QList<QByteArray>(10000, " "), 20ms));
        expectTimeout();
    }

    void aTimeoutCancelsTheConnection()
    {
        m_server->thenAnswer(behaviour::stayMute());
        expectTimeout();
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
    }

    // Connections that fail.

    void aRefusedConnectionIsTheTransportsError()
    {
        m_server->close();
        expectConnectionFailure(QStringLiteral("refused"));
    }

    void anUnknownHostIsTheTransportsError()
    {
        // No name is that long: no name server needs to be asked.
        const QString label(60, u'a');
        m_configuration.baseURL = QStringLiteral("http://%1.%1.%1.%1.%1.invalid/v1").arg(label);
        expectConnectionFailure(QStringLiteral("not found"));
    }

    void aMissingHostIsTheTransportsError()
    {
        m_configuration.baseURL = QStringLiteral("http:///v1");
        expectConnectionFailure({});
    }

    void aBrokenExchangeIsTheTransportsErrorAndIsNotRepeated_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isAnswer");
        QTest::newRow("closed at once") << QByteArray() << false;
        QTest::newRow("closed in the head") << okHead << false;
        QTest::newRow("closed in the body") << okHead + "Content-Length: 100\r\n\r\n{\"choices\":[" << true;
        QTest::newRow("not HTTP") << QByteArray("SSH-2.0-OpenSSH_9.2\r\n") << false;
        QTest::newRow("TLS alert") << QByteArray("\x15\x03\x01\x00\x02\x02\x46", 7) << false;
        QTest::newRow("status of letters") << QByteArray("HTTP/1.1 abc OK\r\n\r\n") << false;
    }
    void aBrokenExchangeIsTheTransportsErrorAndIsNotRepeated()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isAnswer);
        m_server->thenAnswer(behaviour::sendRawAndClose(bytes));
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), isAnswer ? Reason::connectionFailed : Reason::closedUnanswered);
        QCOMPARE(error->errorDescription(),
            isAnswer ? QStringLiteral("Connection closed")
                     : m_server->url(QStringLiteral("/v1/chat/completions"))
                    + QStringLiteral(" 沒有回應就關閉了連線。"));
        QCOMPARE(m_server->requests().size(), 1);
    }

    void aKeptConnectionThatEndsUnansweredIsReplacedOnce()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("一")));
        m_server->thenAnswer(behaviour::sendRawAndClose({}));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("二")));
        QCOMPARE(translated(QStringLiteral("one")), QStringLiteral("一"));
        QCOMPARE(translated(QStringLiteral("two")), QStringLiteral("二"));
        QCOMPARE(m_server->requests().size(), 3);

        m_server->alwaysAnswer(behaviour::sendRawAndClose({}));
        const auto error = test::thrownBy<TransportError>([&] { translated(QStringLiteral("three")); });
        QVERIFY(error);
        QCOMPARE(error->reason(), Reason::closedUnanswered);
        QCOMPARE(m_server->requests().size(), 5);
        QVERIFY(test::thrownBy<TransportError>([&] { translated(QStringLiteral("four")); }));
        QCOMPARE(m_server->requests().size(), 6);
    }

    void aBodyThatCannotBeReadToItsEndIsAnError_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray body = behaviour::completionBody(QStringLiteral("好"));
        const QByteArray chunked = okHead + "Transfer-Encoding: chunked\r\n\r\n";
        const QByteArray compressed = okHead + "Content-Encoding: gzip\r\n";
        QTest::newRow("without a length") << okHead + "Connection: close\r\n\r\n" + body.chopped(5);
        QTest::newRow("between chunks") << chunked + chunk(body.first(10));
        QTest::newRow("chunk size of letters") << chunked + "xyz\r\n" + body;
        QTest::newRow("gzip that is none") << withLength(compressed, "\x1f" + body);
        QTest::newRow("truncated gzip") << withLength(compressed, gzipped(body).first(30));
    }
    void aBodyThatCannotBeReadToItsEndIsAnError()
    {
        QFETCH(QByteArray, bytes);
        m_server->thenAnswer(behaviour::sendRawAndClose(bytes));
        // The network library does not notice every early end; the decoder does then.
        QString text;
        try {
            translated();
        } catch (const TransportError &error) {
            text = error.errorDescription();
        } catch (const json::DecodingError &error) {
            text = error.errorDescription();
        }
        QVERIFY(!text.isEmpty());
        expectNoKeyIn(text);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void plainHttpWhereTlsIsExpectedFails()
    {
        m_server->thenAnswer(behaviour::stayMute());
        m_configuration.baseURL.replace(QStringLiteral("http://"), QStringLiteral("https://"));
        m_service = std::make_unique<OpenAICompatibleTranslationService>(500ms);
        QVERIFY(test::thrownBy<TransportError>([&] { translated(); }));
        QCOMPARE(m_server->requests().size(), 0);
    }

    void aCertificateNobodyVouchesForIsRefused()
    {
        auto tls = test::makeSelfSignedTlsServer();
        QVERIFY2(tls, "openssl is needed");
        m_server = std::make_unique<MisbehavingHttpServer>(std::move(tls));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        m_configuration.baseURL = QStringLiteral("https://127.0.0.1:%1/v1").arg(m_server->port());
        expectConnectionFailure(QStringLiteral("certificate"));
        QCOMPARE(m_server->requests().size(), 0);
    }

    // Redirections.

    void aRedirectionWithinTheOriginKeepsMethodBodyAndKey_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("location");
        QTest::newRow("307, path") << 307 << QByteArray("/other/chat/completions?x=1");
        QTest::newRow("308, path") << 308 << QByteArray("/other/chat/completions?x=1");
        QTest::newRow("308, relative") << 308 << QByteArray("../../other/chat/completions?x=1");
        QTest::newRow("307, absolute")
            << 307 << QByteArray("http://127.0.0.1:PORT/other/chat/completions?x=1");
    }
    void aRedirectionWithinTheOriginKeepsMethodBodyAndKey()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, location);
        location.replace("PORT", QByteArray::number(m_server->port()));
        m_server->thenAnswer(redirect(status, location));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        QCOMPARE(translated(), QStringLiteral("好"));
        QCOMPARE(m_server->requests().size(), 2);
        const test::RecordedRequest &second = m_server->requests().last();
        QCOMPARE(second.requestLine, QByteArray("POST /other/chat/completions?x=1 HTTP/1.1"));
        QCOMPARE(second.body, m_server->requests().first().body);
        QCOMPARE(second.header("Authorization"), "Bearer " + key.toUtf8());
    }

    void aRedirectionElsewhereIsNotFollowed_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {301, 302, 303, 307, 308}) {
            QTest::addRow("%d", status) << status;
        }
    }
    void aRedirectionElsewhereIsNotFollowed()
    {
        QFETCH(int, status);
        MisbehavingHttpServer elsewhere;
        elsewhere.thenAnswer(behaviour::complete(QStringLiteral("stolen")));
        for (const QByteArray &location : {elsewhere.url(QStringLiteral("/v1")).toUtf8(),
                 "//127.0.0.1:" + QByteArray::number(elsewhere.port()) + "/v1",
                 "http://localhost:" + QByteArray::number(m_server->port()) + "/v1",
                 "https://127.0.0.1:" + QByteArray::number(m_server->port()) + "/v1",
                 QByteArray("file:///etc/passwd"), QByteArray(), QByteArray("http://h h/")}) {
            m_server->alwaysAnswer(redirect(status, location));
            const auto error = test::thrownBy<Error>([&] { translated(); });
            QVERIFY2(error, location.constData());
            QCOMPARE(error->status(), status);
            QCOMPARE(error->body(), QStringLiteral("moved"));
        }
        QCOMPARE(elsewhere.connections(), 0);
        QCOMPARE(m_server->requests().size(), 7);
    }

    void aRedirectionThatWouldChangeTheMethodIsNotFollowed()
    {
        for (const int status : {301, 302, 303}) {
            m_server->alwaysAnswer(redirect(status, "/other"));
            QCOMPARE(test::thrownBy<Error>([&] { translated(); }).value().status(), status);
        }
        QCOMPARE(m_server->requests().size(), 3);
    }

    void aCircleOfRedirectionsEnds()
    {
        m_server->thenAnswer(redirect(307, "/v1/chat/completions"));
        const auto error = test::thrownBy<Error>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->status(), 307);
        QCOMPARE(m_server->requests().size(), 6);
    }

    void theTimeoutCountsRedirectionsIn()
    {
        m_server->thenAnswer([](QTcpSocket &connection, const test::RecordedRequest &request) {
            behaviour::dribble({}, {"HTTP/1.1 307 Moved\r\nLocation: /again\r\nContent-Length: 0\r\n\r\n"},
                120ms)(connection, request);
        });
        expectTimeout();
    }

    // Answers that are too long. The rest never comes: who waits for the end of one runs into the timeout.

    void aFloodIsNotReadToItsEnd_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("announced") << okHead + "Content-Length: " + QByteArray::number(announcedBytes)
                + "\r\n\r\n";
        QTest::newRow("until the connection ends") << okHead + "\r\n";
        QTest::newRow("in one chunk") << okHead + "Transfer-Encoding: chunked\r\n\r\n"
                + QByteArray::number(announcedBytes, 16) + "\r\n";
    }
    void aFloodIsNotReadToItsEnd()
    {
        QFETCH(QByteArray, head);
        m_server->thenAnswer(behaviour::sendRaw(head + QByteArray(floodBytes, 'x')));
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), Reason::responseTooLarge);
        QCOMPARE(error->errorDescription(),
            m_server->url(QStringLiteral("/v1/chat/completions"))
                + QStringLiteral(" 的回應超過 2048 KB，不像是翻譯結果，已停止讀取。"));
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
    }

    void aLongErrorIsCutInsteadOfRefused()
    {
        m_server->thenAnswer(behaviour::sendRaw("HTTP/1.1 500 No\r\n\r\n" + QByteArray(floodBytes, 'x')));
        const auto error = test::thrownBy<Error>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->status(), 500);
        QCOMPARE(error->body(), QString(700, u'x'));
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
    }

    void aLongErrorIsCutBetweenCharacters()
    {
        const QByteArray body = "x" + QByteArray("錯").repeated(1024 * 1024);
        m_server->thenAnswer(behaviour::respond(500, body));
        const auto error = test::thrownBy<Error>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->body(), QStringLiteral("x") + QStringLiteral("錯").repeated(699));
    }

    void aBombIsDefused_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<Reason>("reason");
        QTest::newRow("just too long") << floodBytes << Reason::responseTooLarge;
        QTest::newRow("the network library gives up first") << announcedBytes << Reason::connectionFailed;
    }
    void aBombIsDefused()
    {
        QFETCH(qint64, size);
        QFETCH(Reason, reason);
        const QByteArray bomb = gzipped(QByteArray(size, ' '));
        QVERIFY(bomb.size() < size / 500);
        m_server->thenAnswer(behaviour::sendRaw(withLength(okHead + "Content-Encoding: gzip\r\n", bomb)));
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), reason);
    }

    void aResponseJustShortEnoughIsRead()
    {
        QByteArray body = behaviour::completionBody(QStringLiteral("好"));
        body.append(QByteArray(OpenAICompatibleTranslationService::maximumResponseBytes - body.size(), ' '));
        m_server->thenAnswer(behaviour::respond(200, body));
        QCOMPARE(translated(), QStringLiteral("好"));

        m_server = std::make_unique<MisbehavingHttpServer>();
        m_configuration.baseURL = m_server->url(QStringLiteral("/v1"));
        m_server->thenAnswer(behaviour::respond(200, body + ' '));
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), Reason::responseTooLarge);
    }

private:
    QString translated(const QString &text = QStringLiteral("Hello"))
    {
        return test::waitFor(m_service->translate(text, QStringLiteral("en"), m_configuration, {}));
    }

    static QList<QByteArray> singleBytes(const QByteArray &bytes)
    {
        QList<QByteArray> pieces;
        for (const char byte : bytes) {
            pieces.append(QByteArray(1, byte));
        }
        return pieces;
    }

    void expectTimeout()
    {
        m_service = std::make_unique<OpenAICompatibleTranslationService>(300ms);
        QElapsedTimer elapsed;
        elapsed.start();
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), Reason::timedOut);
        QVERIFY(elapsed.elapsed() >= 250);
        QCOMPARE(error->errorDescription().left(5), QStringLiteral("連線逾時："));
        QVERIFY(error->errorDescription().endsWith(QStringLiteral(" 在 0.3 秒內沒有完整回應。")));
        expectNoKeyIn(error->errorDescription());
    }

    void expectConnectionFailure(const QString &mentions)
    {
        const auto error = test::thrownBy<TransportError>([&] { translated(); });
        QVERIFY(error);
        QCOMPARE(error->reason(), Reason::connectionFailed);
        QVERIFY(!error->errorDescription().isEmpty());
        QVERIFY2(error->errorDescription().contains(mentions), qPrintable(error->errorDescription()));
        expectNoKeyIn(error->errorDescription());
    }

    static void expectNoKeyIn(const QString &text) { QVERIFY(!text.contains(key)); }

    std::unique_ptr<MisbehavingHttpServer> m_server;
    std::unique_ptr<OpenAICompatibleTranslationService> m_service;
    OpenAICompatibleProviderConfiguration m_configuration;
};

LUMAPHONE_TEST(MisbehavingProviderTest)

} // namespace misbehavingprovidertest

#include "MisbehavingProviderTest.moc"
