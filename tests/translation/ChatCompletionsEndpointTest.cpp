#include "translation/ChatCompletionsEndpoint.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"
#include "translation/OpenAICompatibleTranslationError.h"

#include <QObject>
#include <QTest>

namespace chatcompletionsendpointtest {

using namespace lumaphone;

class ChatCompletionsEndpointTest : public QObject
{
    Q_OBJECT

private slots:
    void aBaseURLBecomesAnEndpoint_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("endpoint");
        const auto row = [](const char *name, const char *base, const char *endpoint) {
            QTest::newRow(name) << QString::fromUtf8(base) << QString::fromUtf8(endpoint);
        };
        row("version segment", "https://api.example.com/v1", "https://api.example.com/v1/chat/completions");
        row("slash at the end", "https://api.example.com/v1/", "https://api.example.com/v1/chat/completions");
        row("blanks and a line feed around", "  https://api.example.com/v1/\n",
            "https://api.example.com/v1/chat/completions");
        row("bare host", "https://api.example.com", "https://api.example.com/v1/chat/completions");
        row("host and slash", "https://api.example.com/", "https://api.example.com/v1/chat/completions");
        row("host and slashes", "https://api.example.com///", "https://api.example.com/v1/chat/completions");
        row("host and port", "http://localhost:11434", "http://localhost:11434/v1/chat/completions");
        row("IPv6 host", "http://[::1]:8080/v1", "http://[::1]:8080/v1/chat/completions");
        row("another prefix", "https://h/openai", "https://h/openai/chat/completions");
        row("a longer prefix", "https://h/api/openai", "https://h/api/openai/chat/completions");
        row("slashes around a prefix", "https://h//api/openai//", "https://h/api/openai/chat/completions");
        row("complete", "https://h/v1/chat/completions", "https://h/v1/chat/completions");
        row("complete with a slash", "https://h/v1/chat/completions/", "https://h/v1/chat/completions/");
        row("complete without version", "https://h/chat/completions", "https://h/chat/completions");
        row("complete by its last letters", "https://h/mychat/completions", "https://h/mychat/completions");
        row("completions alone", "https://h/v1/completions", "https://h/v1/completions/chat/completions");
        row("capital letters", "https://h/v1/Chat/Completions",
            "https://h/v1/Chat/Completions/chat/completions");
        row("query", "https://h/v1?api-version=2", "https://h/v1/chat/completions?api-version=2");
        row("query and fragment", "https://h?x=1#f", "https://h/v1/chat/completions?x=1#f");
        row("user", "https://me:pw@h/v1", "https://me:pw@h/v1/chat/completions");
        row("percent-encoded", "https://h/a%2Fb%20c", "https://h/a%2Fb%20c/chat/completions");
        row("no scheme", "api.example.com/v1", "/api.example.com/v1/chat/completions");
        row("path only", "/v1", "/v1/chat/completions");
        row("host taken for a scheme", "localhost:11434", "localhost:/11434/chat/completions");
        row("network path", "//h/v1", "//h/v1/chat/completions");
        row("blank", " \n ", "/v1/chat/completions");
    }
    void aBaseURLBecomesAnEndpoint()
    {
        QFETCH(QString, base);
        QFETCH(QString, endpoint);
        QCOMPARE(chatCompletionsURL(base).toString(QUrl::FullyEncoded), endpoint);
    }

    void whatIsNoURLIsRefused_data()
    {
        QTest::addColumn<QString>("base");
        QTest::newRow("blank in the host") << QStringLiteral("http://exa mple.com/v1");
        QTest::newRow("blank in the path") << QStringLiteral("http://h/a b");
        QTest::newRow("unclosed bracket") << QStringLiteral("http://[::1/v1");
        QTest::newRow("port of letters") << QStringLiteral("http://h:port/v1");
        QTest::newRow("broken percent-encoding") << QStringLiteral("http://h/%zz");
        QTest::newRow("line feed inside") << QStringLiteral("http://h/v1\nhttp://g/v1");
        QTest::newRow("angle brackets") << QStringLiteral("<http://h/v1>");
    }
    void whatIsNoURLIsRefused()
    {
        QFETCH(QString, base);
        const auto error
            = test::thrownBy<OpenAICompatibleTranslationError>([&] { chatCompletionsURL(base); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), OpenAICompatibleTranslationError::Case::invalidBaseURL);
        QCOMPARE(error->errorDescription(), QStringLiteral("自定義 API Base URL 格式不正確。"));
    }
};

LUMAPHONE_TEST(ChatCompletionsEndpointTest)

} // namespace chatcompletionsendpointtest

#include "ChatCompletionsEndpointTest.moc"
