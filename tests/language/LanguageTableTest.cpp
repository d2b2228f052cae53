#include "language/LanguageTable.h"

#include "language/SpeechLocales.h"
#include "language/TranslationLanguages.h"
#include "support/program/TestProgram.h"

#include <QSet>
#include <QTest>

namespace languagetabletest {

using namespace lumaphone;

class LanguageTableTest : public QObject
{
    Q_OBJECT

private slots:
    void everyRowIsWhole_data() { rows(); }
    void everyRowIsWhole()
    {
        QFETCH(const LanguageRow *, row);
        for (const QStringView text : {row->rawValue, row->displayName, row->localeIdentifier,
                 row->fullLocale, row->code, row->translationCode, row->fontFamily}) {
            QVERIFY(!text.isEmpty());
        }
        QVERIFY(row->choice != AppleSystemSpeechLanguage::automatic);
        QCOMPARE(row->fullLocale.toString(), row->fullLocale.toString().toLower());
        QCOMPARE(row->fullLocale.toString().split('-').size(), 3);
        QVERIFY(row->localeIdentifier.startsWith(row->code));
        QVERIFY(row->translationCode.startsWith(row->code));
    }

    void everyRowIsFoundByAllThatNamesIt_data() { rows(); }
    void everyRowIsFoundByAllThatNamesIt()
    {
        QFETCH(const LanguageRow *, row);
        QCOMPARE(&languageRow(row->language), row);
        QCOMPARE(languageRow(row->choice), row);
        QVERIFY(spokenLanguageNamed(row->code.toString()) == row->language);
        QVERIFY(
            row->nearbyCode.isEmpty() || spokenLanguageNamed(row->nearbyCode.toString()) == row->language);
        QVERIFY(spokenLanguageOf(row->localeIdentifier.toString()) == row->language);
        QVERIFY(speechLanguageFromRawValue(row->rawValue.toString()) == row->choice);
        for (const QStringView locale : {row->localeIdentifier, row->fullLocale}) {
            QCOMPARE(supportedSpeechLocale(locale.toString()), row->localeIdentifier.toString());
            QCOMPARE(speechLanguageName(locale.toString()), row->displayName.toString());
        }
        QCOMPARE(supportedSpeechLocale(row->code.toString()).has_value(), row->isMeantByCodeAlone);
    }

    void bothTypesSayTheSame_data() { rows(); }
    void bothTypesSayTheSame()
    {
        QFETCH(const LanguageRow *, row);
        QCOMPARE(rawValue(row->choice), row->rawValue.toString());
        QCOMPARE(displayName(row->choice), displayName(row->language));
        QCOMPARE(localeIdentifier(row->choice), localeIdentifier(row->language));
        QCOMPARE(translationSourceIdentifier(row->choice), row->translationCode.toString());
    }

    void noTwoRowsShareAName_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::newRow("raw values") << namesOf({&LanguageRow::rawValue});
        QTest::newRow("labels") << namesOf({&LanguageRow::displayName});
        QTest::newRow("locales") << namesOf({&LanguageRow::localeIdentifier});
        QTest::newRow("full locales") << namesOf({&LanguageRow::fullLocale});
        QTest::newRow("codes") << namesOf({&LanguageRow::code, &LanguageRow::nearbyCode});
        QTest::newRow("codes of translation services") << namesOf({&LanguageRow::translationCode});
    }
    void noTwoRowsShareAName()
    {
        QFETCH(QStringList, names);
        QVERIFY(names.size() >= qsizetype(languageTable().size()));
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
    }

    void aChoiceIsALanguageOrAutomatic()
    {
        const auto choices = allSpeechLanguages();
        QCOMPARE(choices.size(), languageTable().size() + 1);
        QVERIFY(choices.front() == AppleSystemSpeechLanguage::automatic);
        QVERIFY(languageRow(choices.front()) == nullptr);
        for (std::size_t i = 1; i < choices.size(); ++i) {
            QVERIFY(languageRow(choices[i]) == &languageTable()[i - 1]);
        }
    }

    /// Written out, so that a slip in the table is seen.
    void languagesAreWrittenAsTheirReadersExpect_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("hasSpaces");
        QTest::addColumn<bool>("growsByCharacters");
        QTest::addColumn<QString>("translatedFrom");
        QTest::addColumn<bool>("isTranslated");
        QTest::addColumn<QString>("font");
        QTest::newRow("Japanese") << "japanese" << false << true << "ja" << true << "Noto Sans CJK JP";
        QTest::newRow("English") << "english" << true << false << "en" << true << "Noto Sans CJK TC";
        QTest::newRow("Korean") << "korean" << true << true << "ko" << true << "Noto Sans CJK KR";
        QTest::newRow("Mandarin") << "mandarin" << false << true << "zh-Hant" << false << "Noto Sans CJK TC";
    }
    void languagesAreWrittenAsTheirReadersExpect()
    {
        QFETCH(QString, language);
        const auto choice = *speechLanguageFromRawValue(language);
        const LanguageRow &row = *languageRow(choice);
        QTEST(row.hasSpaces, "hasSpaces");
        QTEST(row.growsByCharacters, "growsByCharacters");
        QTEST(translationSourceIdentifier(choice), "translatedFrom");
        QTEST(needsTranslation(choice), "isTranslated");
        QTEST(row.fontFamily.toString(), "font");
    }

    void everythingIsTranslatedIntoTraditionalChinese()
    {
        QCOMPARE(translationTargetIdentifier(), QStringLiteral("zh-Hant"));
        QVERIFY(needsTranslation(AppleSystemSpeechLanguage::automatic));
        QCOMPARE(translationSourceIdentifier(AppleSystemSpeechLanguage::automatic), QStringLiteral("ja"));
    }

private:
    static void rows()
    {
        QTest::addColumn<const LanguageRow *>("row");
        for (const LanguageRow &row : languageTable()) {
            QTest::newRow(row.rawValue.toUtf8().constData()) << &row;
        }
    }

    static QStringList namesOf(std::initializer_list<QStringView LanguageRow::*> columns)
    {
        QStringList names;
        for (const LanguageRow &row : languageTable()) {
            for (const auto column : columns) {
                if (!(row.*column).isEmpty()) {
                    names.append((row.*column).toString());
                }
            }
        }
        return names;
    }
};

LUMAPHONE_TEST(LanguageTableTest)

} // namespace languagetabletest

#include "LanguageTableTest.moc"
