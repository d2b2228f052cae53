#include "session/revision/CoreRevisionExchange.h"

#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace corerevisionexchangetest {

using namespace lumaphone;
using lumaphone::test::thrownBy;

class CoreRevisionExchangeTest : public QObject
{
    Q_OBJECT

private slots:
    void aRequestHasItsMembersInOrderAndTheTextsAsGiven()
    {
        QCOMPARE(encode(CoreRevisionRequest {QStringLiteral(" 今日\n\"は\" "), QStringLiteral("Ａ\\/b")}),
            QByteArray("{\"operation\":\"is_revision\",\"current_text\":\" 今日\\n\\\"は\\\" \","
                       "\"incoming_text\":\"Ａ\\\\/b\"}"));
    }

    void aResponseIsCompact()
    {
        QCOMPARE(encode(CoreRevisionResponse {true}), QByteArray("{\"is_revision\":true}"));
        QCOMPARE(encode(CoreRevisionResponse {false}), QByteArray("{\"is_revision\":false}"));
    }

    void aRequestSurvivesTheExchange()
    {
        const QString current
            = QStringLiteral("👨‍👩‍👧‍👦\u0000か\u3099").append(QChar(u'\0'));
        const json::Value request = json::parse(encode(CoreRevisionRequest {current, QString()}));
        QCOMPARE(json::text(request, "current_text"), current);
        QCOMPARE(json::text(request, "incoming_text"), QString());
    }

    void manyQuestionsSurviveTheExchange()
    {
        const QStringList texts {QStringLiteral("今日\n"), QString(), QStringLiteral("\"は\"")};
        const QByteArray bytes = encode(CoreRevisionsRequest {texts});
        QCOMPARE(bytes,
            QByteArray("{\"operation\":\"are_revisions\",\"texts\":[\"今日\\n\",\"\",\"\\\"は\\\"\"]}"));
        QCOMPARE(json::texts(json::parse(bytes), "texts"), texts);
        const QList<bool> answers {true, false};
        QCOMPARE(encode(CoreRevisionsResponse {answers}), QByteArray("{\"are_revisions\":[true,false]}"));
        QCOMPARE(encode(CoreRevisionsResponse {}), QByteArray("{\"are_revisions\":[]}"));
        QCOMPARE(
            decodeCoreRevisionsResponse(encode(CoreRevisionsResponse {answers}), 2).areRevisions, answers);
        QVERIFY(thrownBy<json::DecodingError>(
            [&] { decodeCoreRevisionsResponse(encode(CoreRevisionsResponse {answers}), 3); }));
    }

    void malformedRequestsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("yes");
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("unknown operation")
            << QByteArray(R"({"operation":"merge","current_text":"a","incoming_text":"b"})");
        QTest::newRow("no operation") << QByteArray(R"({"current_text":"a","incoming_text":"b"})");
        QTest::newRow("no current text") << QByteArray(R"({"operation":"is_revision","incoming_text":"b"})");
        QTest::newRow("no incoming text") << QByteArray(R"({"operation":"is_revision","current_text":"b"})");
        QTest::newRow("a text of another kind")
            << QByteArray(R"({"operation":"is_revision","current_text":1,"incoming_text":"b"})");
        QTest::newRow("many texts that are none")
            << QByteArray(R"({"operation":"are_revisions","current_text":"a","incoming_text":"b"})");
        QTest::newRow("two requests")
            << QByteArray(R"({"operation":"is_revision","current_text":"a","incoming_text":"b"} {})");
        QTest::newRow("broken UTF-8") << QByteArray(
            "{\"operation\":\"is_revision\",\"current_text\":\"\xff\",\"incoming_text\":\"b\"}");
    }
    void malformedRequestsAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(thrownBy<json::DecodingError>([&] { answerOfTheRule(bytes); }));
    }

    void readsResponses_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isUsable");
        QTest::addColumn<bool>("isRevision");
        QTest::newRow("yes") << QByteArray(R"({"is_revision":true})") << true << true;
        QTest::newRow("no") << QByteArray(R"({"is_revision":false})") << true << false;
        QTest::newRow("other members and blanks")
            << QByteArray(" {\"why\": [1], \"is_revision\": true}\n") << true << true;
        QTest::newRow("missing") << QByteArray("{}") << false << false;
        QTest::newRow("null") << QByteArray(R"({"is_revision":null})") << false << false;
        QTest::newRow("a number") << QByteArray(R"({"is_revision":1})") << false << false;
        QTest::newRow("a text") << QByteArray(R"({"is_revision":"true"})") << false << false;
        QTest::newRow("a bare word") << QByteArray("yes") << false << false;
        QTest::newRow("a bare boolean") << QByteArray("true") << false << false;
        QTest::newRow("nothing") << QByteArray() << false << false;
        QTest::newRow("two objects") << QByteArray("{\"is_revision\":true}{\"is_revision\":true}") << false
                                     << false;
    }
    void readsResponses()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isUsable);
        if (isUsable) {
            QTEST(decodeCoreRevisionResponse(bytes).isRevision, "isRevision");
        } else {
            QVERIFY(thrownBy<json::DecodingError>([&] { decodeCoreRevisionResponse(bytes); }));
        }
    }
};

LUMAPHONE_TEST(CoreRevisionExchangeTest)

} // namespace corerevisionexchangetest

#include "CoreRevisionExchangeTest.moc"
