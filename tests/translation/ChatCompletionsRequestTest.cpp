#include "translation/ChatCompletionsRequest.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/TransportError.h"

#include <QObject>
#include <QTest>

namespace chatcompletionsrequesttest {

using namespace lumaphone;

class ChatCompletionsRequestTest : public QObject
{
    Q_OBJECT

    static QNetworkRequest request(const QString &apiKey)
    {
        return chatCompletionsRequest(QUrl(QStringLiteral("https://h/v1/chat/completions")), apiKey,
            OpenAICompatibleTranslationService::defaultTimeout);
    }

private slots:
    void aRequestTimesOutAfterSixtySeconds() { QCOMPARE(request({}).transferTimeout(), 60000); }

    void theCacheAndRedirectionsAreLeftToTheServer()
    {
        QCOMPARE(request({}).attribute(QNetworkRequest::CacheLoadControlAttribute), QVariant());
        QCOMPARE(request({}).attribute(QNetworkRequest::RedirectPolicyAttribute).toInt(),
            int(QNetworkRequest::ManualRedirectPolicy));
    }

    void theKeyIsSentAsABearerToken()
    {
        QCOMPARE(request(QStringLiteral("sk-1")).rawHeader("Authorization"), QByteArray("Bearer sk-1"));
        QCOMPARE(request(QStringLiteral("sk-1")).rawHeader("Content-Type"), QByteArray("application/json"));
    }

    void anEmptyKeySendsNoHeader() { QVERIFY(!request({}).hasRawHeader("Authorization")); }

    void theKeyIsNotTrimmed()
    {
        // Blanks at the end of a header mean nothing; versions of the toolkit since 6.8 leave them out.
        const QByteArray header = request(QStringLiteral(" sk 1 ")).rawHeader("Authorization");
        QVERIFY2(header == "Bearer  sk 1 " || header == "Bearer  sk 1", header);
        QVERIFY(request(QStringLiteral(" ")).hasRawHeader("Authorization"));
    }

    void aKeyThatWouldEndTheHeaderIsRefused_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("line feed at the end") << QStringLiteral("sk-secret\n");
        QTest::newRow("another header") << QStringLiteral("sk-secret\r\nX-Other: 1");
        QTest::newRow("NUL") << QStringLiteral("sk-secret") + QChar(u'\0');
        QTest::newRow("delete") << QStringLiteral("sk-secret\x7F");
    }
    void aKeyThatWouldEndTheHeaderIsRefused()
    {
        QFETCH(QString, key);
        const auto error = test::thrownBy<TransportError>([&] { request(key); });
        QVERIFY(error);
        QCOMPARE(error->reason(), TransportError::Reason::unusableKey);
        QCOMPARE(
            error->errorDescription(), QStringLiteral("API 金鑰含有換行或控制字元，無法傳送，請重新輸入。"));
    }

    void onlyWebAddressesAreSupported_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("text");
        const QString after = QStringLiteral("」：Base URL 請以 http:// 或 https:// 開頭。");
        QTest::newRow("no scheme") << QStringLiteral("/api.example.com/v1/chat/completions")
                                   << QStringLiteral("無法連線到「/api.example.com/v1/chat/completions")
                + after;
        QTest::newRow("host taken for a scheme")
            << QStringLiteral("localhost:/11434/chat/completions")
            << QStringLiteral("無法連線到「localhost:/11434/chat/completions") + after;
        QTest::newRow("other scheme, with secrets") << QStringLiteral("ftp://me:pw@h/v1?key=secret#x")
                                                    << QStringLiteral("無法連線到「ftp://h/v1") + after;
    }
    void onlyWebAddressesAreSupported()
    {
        QFETCH(QString, url);
        QFETCH(QString, text);
        const auto error = test::thrownBy<TransportError>([&] { chatCompletionsRequest(QUrl(url), {}, {}); });
        QVERIFY(error);
        QCOMPARE(error->reason(), TransportError::Reason::unsupportedAddress);
        QCOMPARE(error->errorDescription(), text);
    }

    void anAddressWithAPasswordIsRefused()
    {
        for (const char *url : {"http://me:pw@h/v1", "https://me@h/v1"}) {
            const auto error = test::thrownBy<TransportError>(
                [&] { chatCompletionsRequest(QUrl(QString::fromLatin1(url)), {}, {}); });
            QVERIFY2(error, url);
            QCOMPARE(error->reason(), TransportError::Reason::nameInAddress);
            QVERIFY(!error->errorDescription().contains(QStringLiteral("me")));
            QVERIFY(error->errorDescription().contains(QStringLiteral("://h/v1」裡不能放帳號或密碼")));
        }
    }

    void aLocalFileIsNoHttpResponse()
    {
        for (const char *url : {"file:///v1/chat/completions", "data:/v1/chat/completions"}) {
            const auto error = test::thrownBy<OpenAICompatibleTranslationError>(
                [&] { chatCompletionsRequest(QUrl(QString::fromLatin1(url)), {}, {}); });
            QVERIFY2(error, url);
            QCOMPARE(error->errorCase(), OpenAICompatibleTranslationError::Case::invalidResponse);
        }
    }
};

LUMAPHONE_TEST(ChatCompletionsRequestTest)

} // namespace chatcompletionsrequesttest

#include "ChatCompletionsRequestTest.moc"
