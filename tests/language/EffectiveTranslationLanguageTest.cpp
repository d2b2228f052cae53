#include "language/EffectiveTranslationLanguage.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace effectivetranslationlanguagetest {

using namespace lumaphone;
using enum AppleSystemSpeechLanguage;

class EffectiveTranslationLanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void latinTextIsNotMandarin_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<AppleSystemSpeechLanguage>("recognized");
        QTest::addColumn<AppleSystemSpeechLanguage>("effective");
        QTest::newRow("hello world") << "hello world" << mandarin << english;
        QTest::newRow("half Latin") << QStringLiteral("好的 ok") << mandarin << mandarin;
        QTest::newRow("three letters") << "abc" << mandarin << mandarin;
        QTest::newRow("four letters") << "abcd" << mandarin << english;
        QTest::newRow("digits and blanks are no letters") << "a1 b2 c3 !" << mandarin << mandarin;
        QTest::newRow("18 of 25: exactly 72 %")
            << QString(18, QLatin1Char('a')) + QString(7, QChar(u'中')) << mandarin << english;
        QTest::newRow("71 of 99: below 72 %")
            << QString(71, QLatin1Char('Z')) + QString(28, QChar(u'中')) << mandarin << mandarin;
        QTest::newRow("accented letters are not ASCII") << QStringLiteral("éééé") << mandarin << mandarin;
        QTest::newRow("combining marks are letters")
            << QStringLiteral("abc\u0301\u0301") << mandarin << mandarin;
        QTest::newRow("one mark of four") << QStringLiteral("abc\u0301") << mandarin << english;
        QTest::newRow("full-width Latin is not ASCII") << QStringLiteral("ａｂｃｄ") << mandarin << mandarin;
        QTest::newRow("one scalar beyond the basic plane is one letter")
            << QStringLiteral("abc𠮷") << mandarin << english;
        QTest::newRow("empty") << "" << mandarin << mandarin;
        QTest::newRow("Japanese stays") << "hello world" << japanese << japanese;
        QTest::newRow("Korean stays") << "hello world" << korean << korean;
        QTest::newRow("English stays") << QStringLiteral("中文") << english << english;
    }
    void latinTextIsNotMandarin()
    {
        QFETCH(QString, text);
        QFETCH(AppleSystemSpeechLanguage, recognized);
        QTEST(effectiveTranslationLanguage(text, recognized), "effective");
    }
};

LUMAPHONE_TEST(EffectiveTranslationLanguageTest)

} // namespace effectivetranslationlanguagetest

#include "EffectiveTranslationLanguageTest.moc"
