#include "translation/ChatCompletion.h"

#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

namespace chatcompletiontest {

using namespace lumaphone;

namespace {

/// JSON without a thicket of backslashes: single quotes stand for double ones.
QByteArray quoted(const char *json)
{
    return QByteArray(json).replace('\'', '"');
}

} // namespace

class ChatCompletionTest : public QObject
{
    Q_OBJECT

private slots:
    void aRequestIsCompactJsonInTheOrderOfItsFields()
    {
        const ChatCompletionRequest request {QStringLiteral("gpt-4o-mini"),
            {{QStringLiteral("system"), QStringLiteral("翻譯\n")},
                {QStringLiteral("user"), QStringLiteral("a\"b\\c\t😀")}},
            0.2};
        QCOMPARE(request.encoded(),
            quoted("{'model':'gpt-4o-mini','messages':[{'role':'system','content':'翻譯\\n'},"
                   "{'role':'user','content':'a\\\"b\\\\c\\t😀'}],'temperature':0.2}"));
    }

    void anUnpairedSurrogateIsSentAsTheReplacementCharacter()
    {
        const ChatCompletionRequest request {
            QStringLiteral("m"), {{QStringLiteral("user"), QString(QChar(0xD800))}}, 1};
        QVERIFY(request.encoded().contains("\"content\":\"\xEF\xBF\xBD\""));
    }

    void aResponseDecodes_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QStringList>("contents");
        QTest::newRow("one choice") << quoted(
            "{'choices':[{'message':{'role':'assistant','content':'你好'}}]}")
                                    << QStringList {QStringLiteral("你好")};
        QTest::newRow("no choice") << quoted("{'choices':[]}") << QStringList {};
        QTest::newRow("two choices") << quoted(
            "{'choices':[{'message':{'role':'a','content':'1'}},{'message':{'role':'b','content':'2'}}]}")
                                     << QStringList {QStringLiteral("1"), QStringLiteral("2")};
        QTest::newRow("unknown keys everywhere") << quoted(
            "{'id':1,'choices':[{'index':0,'logprobs':null,'message':{'role':'a','content':'x','refusal':"
            "null}}],'usage':{}}") << QStringList {QStringLiteral("x")};
        QTest::newRow("white space around") << QByteArray("\r\n {\"choices\" : [ ] }\n\n") << QStringList {};
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF{\"choices\":[]}") << QStringList {};
        QTest::newRow("escapes") << quoted(
            "{'choices':[{'message':{'role':'a','content':'\\ud83d\\ude00\\u0000'}}]}")
                                 << QStringList {QStringLiteral("😀") + QChar(u'\0')};
    }
    void aResponseDecodes()
    {
        QFETCH(QByteArray, json);
        QFETCH(QStringList, contents);
        const ChatCompletionResponse response = ChatCompletionResponse::decoded(json);
        QStringList found;
        for (const auto &choice : response.choices) {
            found.append(choice.message.content);
        }
        QCOMPARE(found, contents);
    }

    void aResponseOfAnotherShapeIsRefused_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("mentions");
        const auto row = [](const char *name, const char *json, const char *mentions) {
            QTest::newRow(name) << quoted(json) << QString::fromUtf8(mentions);
        };
        row("empty", "", "JSON");
        row("not JSON", "<html>502</html>", "JSON");
        row("truncated", "{'choices':[{'message':{'role':'assistant','con", "JSON");
        row("two documents", "{'choices':[]}{'choices':[]}", "JSON");
        row("null", "null", "choices");
        row("array", "[]", "choices");
        row("no choices", "{'error':{'message':'no'}}", "choices");
        row("choices is null", "{'choices':null}", "choices");
        row("choices is an object", "{'choices':{}}", "choices");
        row("a choice is no object", "{'choices':[1]}", "message");
        row("a choice without message", "{'choices':[{'text':'x'}]}", "message");
        row("a message that is text", "{'choices':[{'message':'x'}]}", "role");
        row("no role", "{'choices':[{'message':{'content':'x'}}]}", "role");
        row("role is null", "{'choices':[{'message':{'role':null,'content':'x'}}]}", "role");
        row("no content", "{'choices':[{'message':{'role':'a'}}]}", "content");
        row("content is null", "{'choices':[{'message':{'role':'a','content':null}}]}", "content");
        row("content is a list", "{'choices':[{'message':{'role':'a','content':[]}}]}", "content");
        row("a later choice is broken",
            "{'choices':[{'message':{'role':'a','content':'x'}},{'message':{'role':'a'}}]}", "content");
        row("not UTF-8", "{'choices':[{'message':{'role':'a','content':'\xFF\xFE'}}]}", "JSON");
        row("lone surrogate", "{'choices':[{'message':{'role':'a','content':'\\ud800'}}]}", "JSON");
        QTest::newRow("UTF-16") << QByteArray("{\0}\0", 4) << QStringLiteral("JSON");
    }
    void aResponseOfAnotherShapeIsRefused()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, mentions);
        const auto error
            = test::thrownBy<json::DecodingError>([&] { ChatCompletionResponse::decoded(json); });
        QVERIFY(error);
        QVERIFY2(error->errorDescription().contains(mentions), qPrintable(error->errorDescription()));
    }

    void theErrorDoesNotQuoteTheResponse()
    {
        const QByteArray secretive = "{\"choices\": \"sk-very-secret" + QByteArray(100000, 'x');
        const auto error
            = test::thrownBy<json::DecodingError>([&] { ChatCompletionResponse::decoded(secretive); });
        QVERIFY(error);
        QVERIFY(!error->errorDescription().contains(QStringLiteral("sk-very-secret")));
        QVERIFY(error->errorDescription().size() < 300);
    }

    void deepNestingIsSurvived()
    {
        const QByteArray deep = QByteArray(200000, '[') + QByteArray(200000, ']');
        QVERIFY(test::thrownBy<json::DecodingError>([&] { ChatCompletionResponse::decoded(deep); }));
        const QByteArray unclosed(200000, '[');
        QVERIFY(test::thrownBy<json::DecodingError>([&] { ChatCompletionResponse::decoded(unclosed); }));
    }
};

LUMAPHONE_TEST(ChatCompletionTest)

} // namespace chatcompletiontest

#include "ChatCompletionTest.moc"
