#include "translation/LumaphoneTranslationLanguageMatcher.h"

#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

namespace lumaphonetranslationlanguagematchertest {

using lumaphone::LumaphoneTranslationLanguageMatcher::normalizedLanguageIdentifier;

class LumaphoneTranslationLanguageMatcherTest : public QObject
{
    Q_OBJECT

private slots:
    void identifiersOfTheSameLanguageBecomeEqual_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("normalized");
        const auto row = [](const char *identifier, const char *normalized) {
            QTest::newRow(identifier) << QString::fromUtf8(identifier) << QString::fromUtf8(normalized);
        };
        row("zh", "zh-hant");
        row("ZH", "zh-hant");
        row("zh_TW", "zh-hant");
        row("zh-tw", "zh-hant");
        row("zh-Hant", "zh-hant");
        row("ZH_HANT", "zh-hant");
        row("zh-Hant-TW", "zh-hant");
        row("zh_Hant_TW", "zh-hant");
        row("zh-TW-Hant", "zh-hant");
        row(" \tzh-Hant\n", "zh-hant");
        row("zh-Hans", "zh-hans");
        row("zh-CN", "zh-cn");
        row("zh-Hant-HK", "zh-hant-hk");
        row("zh-Hant-", "zh-hant-");
        row("en", "en");
        row("EN_US", "en-us");
        row("_en_", "-en-");
        row("", "");
    }
    void identifiersOfTheSameLanguageBecomeEqual()
    {
        QFETCH(QString, identifier);
        QFETCH(QString, normalized);
        QCOMPARE(normalizedLanguageIdentifier(identifier), normalized);
    }
};

LUMAPHONE_TEST(LumaphoneTranslationLanguageMatcherTest)

} // namespace lumaphonetranslationlanguagematchertest

#include "LumaphoneTranslationLanguageMatcherTest.moc"
