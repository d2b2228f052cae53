#include "translation/LumaphoneGlossaryPrompt.h"

#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace lumaphoneglossaryprompttest {

using namespace lumaphone;
using test::preserved;
using test::translated;

class LumaphoneGlossaryPromptTest : public QObject
{
    Q_OBJECT

private slots:
    void noTermsGiveNoText();
    void theSignatureNamesSourcesTargetsAndModes();
    void theSignatureIgnoresTheRest();
    void theSignatureTellsOrdersApart();
    void thePromptListsTheTerms();
    void anEmptyTargetIsWrittenAsAnEmptyValue();
};

void LumaphoneGlossaryPromptTest::noTermsGiveNoText()
{
    QCOMPARE(LumaphoneGlossaryPrompt {}.signature(), QString());
    QCOMPARE(LumaphoneGlossaryPrompt {}.promptText(), QString());
}

void LumaphoneGlossaryPromptTest::theSignatureNamesSourcesTargetsAndModes()
{
    const LumaphoneGlossaryPrompt prompt {{preserved(QStringLiteral("A"), QStringLiteral("B")),
        translated(QStringLiteral("C"), QStringLiteral("D"))}};
    QCOMPARE(prompt.signature(), QStringLiteral("A=B:preserve|C=D:translate"));
}

void LumaphoneGlossaryPromptTest::theSignatureIgnoresTheRest()
{
    const LumaphoneGlossaryTerm term = preserved(QStringLiteral("A"));
    LumaphoneGlossaryTerm other = test::caseSensitive(test::disabled(term));
    other.note = QStringLiteral("n");
    other.id = QUuid();
    QCOMPARE(LumaphoneGlossaryPrompt {{other}}.signature(), QStringLiteral("A=:preserve"));
    QCOMPARE(LumaphoneGlossaryPrompt {{other}}.promptText(), LumaphoneGlossaryPrompt {{term}}.promptText());
}

void LumaphoneGlossaryPromptTest::theSignatureTellsOrdersApart()
{
    const auto a = preserved(QStringLiteral("A"));
    const auto b = preserved(QStringLiteral("B"));
    const LumaphoneGlossaryPrompt forwards {{a, b}};
    const LumaphoneGlossaryPrompt backwards {{b, a}};
    QVERIFY(forwards.signature() != backwards.signature());
}

void LumaphoneGlossaryPromptTest::thePromptListsTheTerms()
{
    const LumaphoneGlossaryPrompt prompt {
        {preserved(QStringLiteral("Lumaphone"), QStringLiteral("Lumaphone")),
            translated(QStringLiteral("caption"), QStringLiteral("字幕"))}};
    QCOMPARE(prompt.promptText(),
        QStringLiteral("\n"
                       "必需術語：\n"
                       "翻譯時必須使用以下術語。若 mode 是 preserve，請保留 source 原詞；若 mode 是 "
                       "translate，請固定使用 target。\n"
                       "\n"
                       "- source: Lumaphone\n"
                       "  target: Lumaphone\n"
                       "  mode: preserve\n"
                       "- source: caption\n"
                       "  target: 字幕\n"
                       "  mode: translate"));
}

void LumaphoneGlossaryPromptTest::anEmptyTargetIsWrittenAsAnEmptyValue()
{
    const LumaphoneGlossaryPrompt prompt {{preserved(QStringLiteral("A"))}};
    QVERIFY(prompt.promptText().endsWith(QStringLiteral("\n\n- source: A\n  target: \n  mode: preserve")));
}

LUMAPHONE_TEST(LumaphoneGlossaryPromptTest)

} // namespace lumaphoneglossaryprompttest

#include "LumaphoneGlossaryPromptTest.moc"
