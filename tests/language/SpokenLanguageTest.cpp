#include "language/SpokenLanguage.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace spokenlanguagetest {

using namespace lumaphone;
using Language = SpokenLanguage;

class SpokenLanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void namesAndLocalesBelongTogether_data()
    {
        QTest::addColumn<Language>("language");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("locale");
        QTest::newRow("Japanese") << Language::japanese << "ja"
                                  << "ja-JP";
        QTest::newRow("English") << Language::english << "en"
                                 << "en-US";
        QTest::newRow("Korean") << Language::korean << "ko"
                                << "ko-KR";
        QTest::newRow("Mandarin") << Language::mandarin << "zh"
                                  << "zh-Hant-TW";
    }
    void namesAndLocalesBelongTogether()
    {
        QFETCH(Language, language);
        QFETCH(QString, name);
        QFETCH(QString, locale);
        QCOMPARE(languageCode(language), name);
        QCOMPARE(localeIdentifier(language), locale);
        QVERIFY(spokenLanguageNamed(name) == language);
        QVERIFY(spokenLanguageOf(locale) == language);
    }

    void cantoneseCountsAsMandarin() { QVERIFY(spokenLanguageNamed("yue") == Language::mandarin); }

    void othersAreNone()
    {
        QVERIFY(!spokenLanguageNamed("nospeech"));
        QVERIFY(!spokenLanguageNamed(""));
        QVERIFY(!spokenLanguageNamed("JA"));
        QVERIFY(!spokenLanguageOf("zh-TW"));
    }
};

LUMAPHONE_TEST(SpokenLanguageTest)

} // namespace spokenlanguagetest

#include "SpokenLanguageTest.moc"
