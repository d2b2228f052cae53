#include "language/SpeechLocales.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace speechlocalestest {

using namespace lumaphone;

class SpeechLocalesTest : public QObject
{
    Q_OBJECT

private slots:
    void aLocaleIsRecognisedInEverySpelling_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("supported"); // empty: none

        const auto row = [](const char *given, const char *supported) {
            QTest::newRow(given) << QString::fromLatin1(given) << QString::fromLatin1(supported);
        };
        row("ja-JP", "ja-JP");
        row("ja", "ja-JP");
        row("ja_JP", "ja-JP");
        row("JA-jp", "ja-JP");
        row("ja-Jpan-JP", "ja-JP");
        row("ja_JP.UTF-8", "ja-JP");
        row("en-US", "en-US");
        row("en_US", "en-US");
        row("en", "en-US");
        row("en-Latn", "en-US");
        row("en_US.UTF-8@euro", "en-US");
        row("en-US-u-hc-h23", "en-US");
        row("ko-KR", "ko-KR");
        row("ko", "ko-KR");
        row("ko-Kore-KR", "ko-KR");
        row("zh-Hant-TW", "zh-Hant-TW");
        row("zh-TW", "zh-Hant-TW");
        row("zh_TW", "zh-Hant-TW");
        row("zh-Hant", "zh-Hant-TW");
        row("zh_hant_tw", "zh-Hant-TW");
        row("zh", "");
        row("zh-CN", "");
        row("zh-Hans-TW", "");
        row("zh-Hant-HK", "");
        row("en-GB", "");
        row("en-Brai-US", "");
        row("en-US-POSIX", "");
        row("english", "");
        row("fr-FR", "");
        row("C", "");
        row("", "");
        row("-", "");
        row("en-", "");
    }

    void aLocaleIsRecognisedInEverySpelling()
    {
        QFETCH(QString, given);
        QFETCH(QString, supported);
        QCOMPARE(supportedSpeechLocale(given).value_or(QString()), supported);
    }
};

LUMAPHONE_TEST(SpeechLocalesTest)

} // namespace speechlocalestest

#include "SpeechLocalesTest.moc"
