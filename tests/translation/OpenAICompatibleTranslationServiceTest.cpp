#include "translation/OpenAICompatibleTranslationService.h"

#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/MisbehavingHttpServer.h"
#include "support/program/TestProgram.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/TransportError.h"

#include <QObject>
#include <QTest>

#include <memory>

namespace openaicompatibletranslationservicetest {

using namespace lumaphone;
using test::MisbehavingHttpServer;
using Error = OpenAICompatibleTranslationError;

namespace behaviour = test::behaviour;

namespace {

const QString key = QStringLiteral("sk-secret-0123456789");

LumaphoneGlossaryTerm term(const QString &source, const QString &target, LumaphoneGlossaryTermMode mode)
{
    LumaphoneGlossaryTerm result;
    result.source = source;
    result.target = target;
    result.mode = mode;
    return result;
}

} // namespace

class OpenAICompatibleTranslationServiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<MisbehavingHttpServer>();
        m_service = std::make_unique<OpenAICompatibleTranslationService>();
        m_configuration = {m_server->url(QStringLiteral("/v1")), key, QStringLiteral("gpt-4o-mini")};
    }

    void aTextIsTranslatedWithOneRequest()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral(" \n你好。\u3000")));
        QCOMPARE(translated(QStringLiteral("  Hello.\n")), QStringLiteral("你好。"));
        QCOMPARE(m_server->requests().size(), 1);

        const test::RecordedRequest &request = m_server->requests().first();
        QCOMPARE(request.requestLine, QByteArray("POST /v1/chat/completions HTTP/1.1"));
        QCOMPARE(request.header("Content-Type"), QByteArray("application/json"));
        QCOMPARE(request.header("Authorization"), "Bearer " + key.toUtf8());
        QCOMPARE(request.body,
            QByteArray("{\"model\":\"gpt-4o-mini\",\"messages\":[{\"role\":\"system\",\"content\":\""
                       "請將內容翻譯成台灣使用的繁體中文。\\n請使用台灣常見詞彙、自然口語與正式標點。\\n"
                       "不要使用簡體字，不要使用中國大陸慣用語。\\n來源語言代碼：en。\\n\\n只輸出翻譯結果，不"
                       "要解釋。"
                       "\"},{\"role\":\"user\",\"content\":\"Hello.\"}],\"temperature\":0.2}"));
    }

    void theGlossaryStandsInTheSystemPrompt()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        const LumaphoneGlossaryPrompt prompt {{term(
            QStringLiteral("Lumaphone"), QStringLiteral("Lumaphone"), LumaphoneGlossaryTermMode::preserve)}};
        test::waitFor(m_service->translate(
            QStringLiteral("Lumaphone is ready."), QStringLiteral("en"), m_configuration, prompt));
        const json::Value body = json::parse(m_server->requests().first().body);
        QCOMPARE(json::text(body["messages"][0], "content"),
            QStringLiteral("請將內容翻譯成台灣使用的繁體中文。\n請使用台灣常見詞彙、自然口語與正式標點。\n"
                           "不要使用簡體字，不要使用中國大陸慣用語。\n來源語言代碼：en。\n"
                           "\n必需術語：\n翻譯時必須使用以下術語。若 mode 是 preserve，請保留 source 原詞；"
                           "若 mode 是 translate，請固定使用 target。\n\n"
                           "- source: Lumaphone\n  target: Lumaphone\n  mode: preserve"
                           "\n只輸出翻譯結果，不要解釋。"));
        QCOMPARE(json::text(body["messages"][1], "content"), QStringLiteral("Lumaphone is ready."));
    }

    void anEmptyKeySendsNoAuthorization()
    {
        m_configuration.apiKey.clear();
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        translated(QStringLiteral("ok"));
        QVERIFY(!m_server->requests().first().hasHeader("Authorization"));
        QVERIFY(m_server->requests().first().hasHeader("content-type"));
    }

    void theModelIsSentAsItIs()
    {
        m_configuration.model = QStringLiteral(" qwen/\"7b\" ");
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        translated(QStringLiteral("ok"));
        QCOMPARE(json::text(json::parse(m_server->requests().first().body), "model"), m_configuration.model);
    }

    void blankTextNeedsNothing()
    {
        m_configuration = {};
        QCOMPARE(translated(QStringLiteral("  \n ")), QString());
        QCOMPARE(translated(QString()), QString());
        QCOMPARE(m_server->connections(), 0);
    }

    void withoutBaseURLOrModelNothingIsSent()
    {
        for (const auto &configuration :
            {OpenAICompatibleProviderConfiguration {{}, key, QStringLiteral("m")},
                OpenAICompatibleProviderConfiguration {m_server->url(), key, {}}}) {
            m_configuration = configuration;
            QCOMPARE(errorCaseOf(QStringLiteral("Hello")), Error::Case::missingConfiguration);
        }
        m_configuration = {QStringLiteral("http://h h"), key, QStringLiteral("m")};
        QCOMPARE(errorCaseOf(QStringLiteral("Hello")), Error::Case::invalidBaseURL);
        QCOMPARE(m_server->connections(), 0);
    }

    void whatIsNoWebAddressIsNotAsked()
    {
        m_configuration.baseURL = QStringLiteral("api.example.com/v1");
        const auto error = transportErrorOf(QStringLiteral("Hello"));
        QCOMPARE(error.reason(), TransportError::Reason::unsupportedAddress);
        m_configuration.baseURL = QStringLiteral("file:///etc");
        QCOMPARE(errorCaseOf(QStringLiteral("Hello")), Error::Case::invalidResponse);
    }

    void anUnusableContentIsAnEmptyResponse_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("no choice") << QByteArray("{\"choices\": []}");
        QTest::newRow("blank") << behaviour::completionBody(QStringLiteral("  "));
        QTest::newRow("line breaks") << behaviour::completionBody(QStringLiteral("\n\r\n\u2028"));
        QTest::newRow("empty, then another choice")
            << QByteArray("{\"choices\":[{\"message\":{\"role\":\"a\",\"content\":\"\"}},"
                          "{\"message\":{\"role\":\"a\",\"content\":\"x\"}}]}");
    }
    void anUnusableContentIsAnEmptyResponse()
    {
        QFETCH(QByteArray, body);
        m_server->thenAnswer(behaviour::respond(200, body));
        QCOMPARE(errorCaseOf(QStringLiteral("Hello")), Error::Case::emptyResponse);
    }

    void onlyTheFirstChoiceCounts()
    {
        m_server->thenAnswer(behaviour::respond(201,
            "{\"choices\":[{\"message\":{\"role\":\"tool\",\"content\":\"一\"}},"
            "{\"message\":{\"role\":\"a\",\"content\":\"二\"}}]}"));
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("一"));
    }

    void aStatusOutsideTheTwoHundredsIsAFailure_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("shown");
        const auto row = [](int status, const char *body, const char *shown) {
            QTest::addRow("%d", status) << status << QByteArray(body) << QString::fromUtf8(shown);
        };
        row(300, "choose", "choose");
        row(301, "", "沒有回傳錯誤內容。");
        row(304, "", "沒有回傳錯誤內容。");
        row(400, "{\"error\":\"bad\"}", "{\"error\":\"bad\"}");
        row(401, "Authorization: Bearer abc.DEF_-9", "Authorization: Bearer [redacted]");
        row(403, "Incorrect API key provided: sk-secret-0123456789.",
            "Incorrect API key provided: [redacted].");
        row(404, "", "沒有回傳錯誤內容。");
        row(405, "x", "x");
        row(407, "proxy", "proxy");
        row(408, "slow", "slow");
        row(409, "x", "x");
        row(410, "x", "x");
        row(418, "茶壺", "茶壺");
        row(429, "wait", "wait");
        row(500, "  ", "  ");
        row(502, "<html>", "<html>");
        row(503, "\xE9\xFF", "沒有回傳錯誤內容。");
        row(504, "x", "x");
        row(599, "x", "x");
    }
    void aStatusOutsideTheTwoHundredsIsAFailure()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, shown);
        m_server->thenAnswer(behaviour::respond(status, body));
        const auto error = test::thrownBy<Error>([&] { translated(QStringLiteral("Hello")); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), Error::Case::httpFailure);
        QCOMPARE(error->status(), status);
        QCOMPARE(error->body(), shown);
        QCOMPARE(error->errorDescription(),
            QStringLiteral("自定義 API 回傳 HTTP ") + QString::number(status) + QStringLiteral("：") + shown);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void nothingIsLeftOfAKeyWithOtherCharacters()
    {
        m_configuration.apiKey = QStringLiteral("sk-ab/cd+ef=gh0123");
        m_server->thenAnswer(behaviour::respond(401, "Authorization: Bearer sk-ab/cd+ef=gh0123"));
        const auto error = test::thrownBy<Error>([&] { translated(QStringLiteral("Hello")); });
        QVERIFY(error);
        QCOMPARE(error->body(), QStringLiteral("Authorization: Bearer [redacted]"));
    }

    void aRefusalThatAsksForAPasswordIsShownAsItIs()
    {
        m_server->thenAnswer(behaviour::respond(
            401, "no", {{"WWW-Authenticate", "Basic realm=\"x\""}, {"Content-Type", "text/plain"}}));
        const auto error = test::thrownBy<Error>([&] { translated(QStringLiteral("Hello")); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("自定義 API 回傳 HTTP 401：no"));
    }

    void aLongErrorBodyIsCut()
    {
        m_server->thenAnswer(behaviour::respond(500, QByteArray("錯").repeated(2000)));
        const auto error = test::thrownBy<Error>([&] { translated(QStringLiteral("Hello")); });
        QVERIFY(error);
        QCOMPARE(error->body(), QStringLiteral("錯").repeated(700));
    }

    void theContentTypeOfAResponseIsNotLookedAt()
    {
        m_server->thenAnswer(behaviour::respond(200, behaviour::completionBody(QStringLiteral("好")),
            {{"Content-Type", "text/html; charset=big5"}}));
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("好"));
    }

    void anUndecodableResponseIsTheDecodersError_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << 200 << QByteArray();
        QTest::newRow("no content") << 204 << QByteArray();
        QTest::newRow("HTML") << 200 << QByteArray("<!doctype html><title>log in</title>");
        QTest::newRow("error in a success") << 200 << QByteArray("{\"error\":{\"message\":\"quota\"}}");
        QTest::newRow("truncated JSON") << 200 << behaviour::completionBody(QStringLiteral("好")).chopped(3);
        QTest::newRow("event stream") << 200 << QByteArray("data: {\"choices\":[]}\n\ndata: [DONE]\n\n");
        QTest::newRow("not UTF-8")
            << 200 << behaviour::completionBody(QStringLiteral("caf")).replace("caf", "caf\xE9");
    }
    void anUndecodableResponseIsTheDecodersError()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        m_server->thenAnswer(behaviour::respond(status, body));
        QVERIFY(test::thrownBy<json::DecodingError>([&] { translated(QStringLiteral("Hello")); }));
    }

    void aFinishedTranslationIsRemembered()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("好"));
        m_configuration.apiKey = QStringLiteral("another key");
        QCOMPARE(translated(QStringLiteral("\tHello ")), QStringLiteral("好"));
        QCOMPARE(m_server->requests().size(), 1);
    }

    void whatTheKeyIsMadeOfTellsTranslationsApart()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        const auto ask = [this](const QString &source, const LumaphoneGlossaryPrompt &prompt) {
            test::waitFor(m_service->translate(QStringLiteral("Hello"), source, m_configuration, prompt));
            return m_server->requests().size();
        };
        const QString en = QStringLiteral("en");
        const LumaphoneGlossaryPrompt prompt {
            {term(QStringLiteral("A"), QStringLiteral("B"), LumaphoneGlossaryTermMode::preserve)}};
        QCOMPARE(ask(en, {}), 1);
        QCOMPARE(ask(QStringLiteral("ja"), {}), 2);
        QCOMPARE(ask(en, prompt), 3);
        QCOMPARE(ask(en, prompt), 3);
        m_configuration.model += QLatin1Char(' ');
        QCOMPARE(ask(en, {}), 4);
        m_configuration.baseURL += QLatin1Char('/');
        QCOMPARE(ask(en, {}), 5);
        QCOMPARE(m_server->requests().last().requestLine, QByteArray("POST /v1/chat/completions HTTP/1.1"));
        QCOMPARE(ask(en, {}), 5);
    }

    void aFailureIsNotRememberedAndSpoilsNothing()
    {
        m_server->thenAnswer(behaviour::respond(500, "no"));
        m_server->thenAnswer(behaviour::respond(200, "{"));
        m_server->thenAnswer(behaviour::complete(QStringLiteral(" ")));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(test::thrownBy<LocalizedError>([&] { translated(QStringLiteral("Hello")); }));
        }
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("好"));
        QCOMPARE(m_server->requests().size(), 4);
    }

    void theThousandAndFirstTranslationEvictsTheOldest()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        for (int i = 0; i < 1000; ++i) {
            translated(QString::number(i));
        }
        translated(QString::number(0)); // a use: 1 is now the oldest
        QCOMPARE(m_server->requests().size(), 1000);
        translated(QStringLiteral("one more"));
        QCOMPARE(m_server->requests().size(), 1001);
        translated(QString::number(0));
        translated(QString::number(2));
        QCOMPARE(m_server->requests().size(), 1001);
        translated(QString::number(1));
        QCOMPARE(m_server->requests().size(), 1002);
    }

    void equalCallsAtOnceBothAskAndTheLaterAnswerIsKept()
    {
        m_server->thenAnswer(
            behaviour::dribble({}, {responseBytes(QStringLiteral("late"))}, std::chrono::milliseconds(150)));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("early")));
        auto first = translate(QStringLiteral("Hello"));
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("early"));
        QCOMPARE(test::waitFor(std::move(first)), QStringLiteral("late"));
        QCOMPARE(m_server->requests().size(), 2);
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("late"));
        QCOMPARE(m_server->requests().size(), 2);
    }

    void aStopEndsTheRequestAndItsConnection()
    {
        m_server->thenAnswer(behaviour::stayMute());
        std::stop_source stop;
        auto task = translate(QStringLiteral("Hello"), stop.get_token());
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        stop.request_stop();
        QVERIFY(!task.isReady()); // never inside request_stop()
        const auto error = test::thrownBy<TransportError>([&] { test::waitFor(std::move(task)); });
        QVERIFY(error);
        QCOMPARE(error->reason(), TransportError::Reason::cancelled);
        QCOMPARE(error->errorDescription(), QStringLiteral("翻譯要求已取消。"));
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
    }

    void aStopBeforehandSendsNothing()
    {
        std::stop_source stop;
        stop.request_stop();
        const auto error = test::thrownBy<TransportError>(
            [&] { test::waitFor(translate(QStringLiteral("Hello"), stop.get_token())); });
        QVERIFY(error);
        QCOMPARE(error->reason(), TransportError::Reason::cancelled);
        QCOMPARE(m_server->connections(), 0);
    }

    void aStopAfterwardsIsWithoutEffect()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        std::stop_source stop;
        QCOMPARE(test::waitFor(translate(QStringLiteral("Hello"), stop.get_token())), QStringLiteral("好"));
        stop.request_stop();
        QCOMPARE(test::waitFor(translate(QStringLiteral("Hello"), stop.get_token())), QStringLiteral("好"));
    }

    void oneStopLeavesOtherRequestsAlone()
    {
        m_server->thenAnswer(behaviour::stayMute());
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        std::stop_source stop;
        auto stopped = translate(QStringLiteral("one"), stop.get_token());
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        auto other = translate(QStringLiteral("two"));
        stop.request_stop();
        QCOMPARE(test::waitFor(std::move(other)), QStringLiteral("好"));
        QVERIFY(test::thrownBy<TransportError>([&] { test::waitFor(std::move(stopped)); }));
    }

    void aTaskThatIsGivenUpStillFillsTheCache()
    {
        m_server->thenAnswer(behaviour::complete(QStringLiteral("好")));
        m_server->thenAnswer(behaviour::complete(QStringLiteral("again")));
        {
            const auto givenUp = translate(QStringLiteral("Hello"));
        }
        QVERIFY(test::waitUntil([this] { return m_server->bytesWritten() > 0; }));
        QCOMPARE(translated(QStringLiteral("other")), QStringLiteral("again"));
        QCOMPARE(translated(QStringLiteral("Hello")), QStringLiteral("好"));
        QCOMPARE(m_server->requests().size(), 2);
    }

    void theEndOfTheServiceCancelsWhatIsUnderWay()
    {
        m_server->thenAnswer(behaviour::stayMute());
        auto task = translate(QStringLiteral("Hello"));
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        m_service.reset();
        QVERIFY(!task.isReady());
        const auto error = test::thrownBy<TransportError>([&] { test::waitFor(std::move(task)); });
        QVERIFY(error);
        QCOMPARE(error->reason(), TransportError::Reason::cancelled);
        QVERIFY(test::waitUntil([this] { return m_server->openConnections() == 0; }));
    }

private:
    QCoro::Task<QString> translate(const QString &text, std::stop_token stop = {})
    {
        return m_service->translate(text, QStringLiteral("en"), m_configuration, {}, std::move(stop));
    }

    QString translated(const QString &text) { return test::waitFor(translate(text)); }

    Error::Case errorCaseOf(const QString &text)
    {
        const auto error = test::thrownBy<Error>([&] { translated(text); });
        return error.value().errorCase();
    }

    TransportError transportErrorOf(const QString &text)
    {
        return test::thrownBy<TransportError>([&] { translated(text); }).value();
    }

    static QByteArray responseBytes(const QString &content)
    {
        const QByteArray body = behaviour::completionBody(content);
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    std::unique_ptr<MisbehavingHttpServer> m_server;
    std::unique_ptr<OpenAICompatibleTranslationService> m_service;
    OpenAICompatibleProviderConfiguration m_configuration;
};

LUMAPHONE_TEST(OpenAICompatibleTranslationServiceTest)

} // namespace openaicompatibletranslationservicetest

#include "OpenAICompatibleTranslationServiceTest.moc"
