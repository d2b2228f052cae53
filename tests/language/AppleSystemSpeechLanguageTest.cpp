#include "language/AppleSystemSpeechLanguage.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace applesystemspeechlanguagetest {

using namespace lumaphone;

using enum AppleSystemSpeechLanguage;

class AppleSystemSpeechLanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCaseHasItsTexts_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<AppleSystemSpeechLanguage>("language");
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("locale");
        const auto row = [](int index, AppleSystemSpeechLanguage language, const char *raw, const char *name,
                             const char *locale) {
            QTest::newRow(raw) << index << language << QString::fromUtf8(raw) << QString::fromUtf8(name)
                               << QString::fromUtf8(locale);
        };
        row(0, automatic, "automatic", "自動辨識", "ja-JP");
        row(1, japanese, "japanese", "日文", "ja-JP");
        row(2, english, "english", "英文", "en-US");
        row(3, korean, "korean", "韓文", "ko-KR");
        row(4, mandarin, "mandarin", "中文", "zh-Hant-TW");
    }

    void everyCaseHasItsTexts()
    {
        QFETCH(const int, index);
        QFETCH(const AppleSystemSpeechLanguage, language);
        QFETCH(const QString, raw);
        QFETCH(const QString, name);
        QFETCH(const QString, locale);
        QCOMPARE(allSpeechLanguages().size(), std::size_t(5));
        QCOMPARE(allSpeechLanguages()[static_cast<std::size_t>(index)], language);
        QCOMPARE(rawValue(language), raw);
        QCOMPARE(displayName(language), name);
        QCOMPARE(localeIdentifier(language), locale);
        QVERIFY(speechLanguageFromRawValue(raw) == language);
    }

    void otherTextsAreNoLanguage_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::newRow("capital letter") << QStringLiteral("Japanese");
        QTest::newRow("empty") << QString();
        QTest::newRow("white space") << QStringLiteral(" japanese");
        QTest::newRow("display name") << QStringLiteral("日文");
        QTest::newRow("locale") << QStringLiteral("ja-JP");
    }

    void otherTextsAreNoLanguage()
    {
        QFETCH(const QString, raw);
        QVERIFY(!speechLanguageFromRawValue(raw));
    }

    void automaticTriesFourCandidatesInOrder()
    {
        const std::vector<AppleSystemSpeechLanguage> expected {japanese, english, korean, mandarin};
        QVERIFY(recognitionCandidates(automatic) == expected);
    }

    void everyOtherLanguageIsItsOnlyCandidate()
    {
        for (const AppleSystemSpeechLanguage language : {japanese, english, korean, mandarin}) {
            QVERIFY(recognitionCandidates(language) == std::vector {language});
        }
    }

    void severalNamesAreJoinedWithTheIdeographicComma()
    {
        QCOMPARE(displayNames(recognitionCandidates(automatic)), QStringLiteral("日文、英文、韓文、中文"));
        QCOMPARE(displayNames({korean}), QStringLiteral("韓文"));
    }
};

LUMAPHONE_TEST(AppleSystemSpeechLanguageTest)

} // namespace applesystemspeechlanguagetest

#include "AppleSystemSpeechLanguageTest.moc"
