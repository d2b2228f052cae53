#include "translation/OpenAICompatibleTranslationError.h"

#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

namespace openaicompatibletranslationerrortest {

using namespace lumaphone;
using Error = OpenAICompatibleTranslationError;

class OpenAICompatibleTranslationErrorTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCaseHasItsText_data()
    {
        QTest::addColumn<int>("errorCase");
        QTest::addColumn<QString>("text");
        QTest::newRow("configuration") << int(Error::Case::missingConfiguration)
                                       << QStringLiteral("自定義 API 尚未設定 Base URL 與 Model。");
        QTest::newRow("URL") << int(Error::Case::invalidBaseURL)
                             << QStringLiteral("自定義 API Base URL 格式不正確。");
        QTest::newRow("response") << int(Error::Case::invalidResponse)
                                  << QStringLiteral("自定義 API 回應格式不正確。");
        QTest::newRow("empty") << int(Error::Case::emptyResponse)
                               << QStringLiteral("自定義 API 沒有回傳翻譯文字。");
    }
    void everyCaseHasItsText()
    {
        QFETCH(int, errorCase);
        QFETCH(QString, text);
        const Error error {Error::Case(errorCase)};
        QCOMPARE(error.errorDescription(), text);
        QCOMPARE(QString::fromUtf8(error.what()), text);
        QCOMPARE(error.status(), 0);
        QCOMPARE(error.body(), QString());
    }

    void anHttpFailureShowsStatusAndBody()
    {
        const Error error = Error::httpFailure(404, QStringLiteral("no %1 such model"));
        QCOMPARE(error.errorCase(), Error::Case::httpFailure);
        QCOMPARE(error.status(), 404);
        QCOMPARE(error.body(), QStringLiteral("no %1 such model"));
        QCOMPARE(error.errorDescription(), QStringLiteral("自定義 API 回傳 HTTP 404：no %1 such model"));
    }
};

LUMAPHONE_TEST(OpenAICompatibleTranslationErrorTest)

} // namespace openaicompatibletranslationerrortest

#include "OpenAICompatibleTranslationErrorTest.moc"
