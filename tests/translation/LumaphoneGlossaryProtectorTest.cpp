#include "translation/LumaphoneGlossaryProtector.h"

#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace lumaphoneglossaryprotectortest {

using namespace lumaphone;
using test::caseSensitive;
using test::preserved;
using test::translated;

namespace {

using Terms = QList<LumaphoneGlossaryTerm>;

/// "token=value" for every replacement.
QStringList written(const QList<LumaphoneGlossaryProtector::Replacement> &replacements)
{
    QStringList result;
    for (const auto &replacement : replacements) {
        result.append(replacement.token + QLatin1Char('=') + replacement.value);
    }
    return result;
}

QString q(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class LumaphoneGlossaryProtectorTest : public QObject
{
    Q_OBJECT

private slots:
    void termsAreReplacedByTokens_data();
    void termsAreReplacedByTokens();
    void tokensAreReplacedByValues_data();
    void tokensAreReplacedByValues();
    void elevenTermsLeaveAStrayDigit();
    void aHundredTermsLeaveStrayDigits();
    void valuesAreLookedThroughForLaterTokens();
};

void LumaphoneGlossaryProtectorTest::termsAreReplacedByTokens_data()
{
    QTest::addColumn<Terms>("terms");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("protectedText");
    QTest::addColumn<QStringList>("replacements");
    QTest::newRow("no terms") << Terms {} << "Hello."
                              << "Hello." << QStringList {};
    QTest::newRow("one term") << Terms {preserved(q("Codex"))} << "I use Codex."
                              << "I use LUMAPHON_TERM_0." << test::strings({"LUMAPHON_TERM_0=Codex"});
    QTest::newRow("a target is the value") << Terms {preserved(q("Codex"), q("寶典"))} << "Codex!"
                                           << "LUMAPHON_TERM_0!" << test::strings({"LUMAPHON_TERM_0=寶典"});
    QTest::newRow("every occurrence, one replacement")
        << Terms {preserved(q("a"))} << "a-A-á"
        << "LUMAPHON_TERM_0-LUMAPHON_TERM_0-LUMAPHON_TERM_0" << test::strings({"LUMAPHON_TERM_0=a"});
    QTest::newRow("the stored source is the value, not the spoken form")
        << Terms {preserved(q("ecole"))} << "l'ÉCOLE"
        << "l'LUMAPHON_TERM_0" << test::strings({"LUMAPHON_TERM_0=ecole"});
    QTest::newRow("decomposed text loses its marks with the term")
        << Terms {preserved(q("ecole"))} << "l'E\u0301COLE."
        << "l'LUMAPHON_TERM_0." << test::strings({"LUMAPHON_TERM_0=ecole"});
    QTest::newRow("case-sensitive") << Terms {caseSensitive(preserved(q("Go")))} << "go Go GO"
                                    << "go LUMAPHON_TERM_0 GO" << test::strings({"LUMAPHON_TERM_0=Go"});
    QTest::newRow("terms to be translated are not protected")
        << Terms {translated(q("caption"), q("字幕"))} << "a caption"
        << "a caption" << QStringList {};
    QTest::newRow("terms to be translated are not counted")
        << Terms {translated(q("a"), q("b")), preserved(q("c"))} << "a c"
        << "a LUMAPHON_TERM_0" << test::strings({"LUMAPHON_TERM_0=c"});
    QTest::newRow("an absent term uses up its index")
        << Terms {preserved(q("absent")), preserved(q("here"))} << "it is here"
        << "it is LUMAPHON_TERM_1" << test::strings({"LUMAPHON_TERM_1=here"});
    QTest::newRow("an empty source uses up its index")
        << Terms {preserved(q("")), preserved(q("here"))} << "here"
        << "LUMAPHON_TERM_1" << test::strings({"LUMAPHON_TERM_1=here"});
    QTest::newRow("a shorter term goes first if it is listed first")
        << Terms {preserved(q("New")), preserved(q("New York"))} << "New York"
        << "LUMAPHON_TERM_0 York" << test::strings({"LUMAPHON_TERM_0=New"});
    QTest::newRow("a longer term goes first if it is listed first")
        << Terms {preserved(q("New York")), preserved(q("New"))} << "New York, New"
        << "LUMAPHON_TERM_0, LUMAPHON_TERM_1"
        << test::strings({"LUMAPHON_TERM_0=New York", "LUMAPHON_TERM_1=New"});
    QTest::newRow("later terms are searched in earlier tokens")
        << Terms {preserved(q("Codex")), preserved(q("term"))} << "Codex"
        << "LUMAPHON_LUMAPHON_TERM_1_0" << test::strings({"LUMAPHON_TERM_0=Codex", "LUMAPHON_TERM_1=term"});
    QTest::newRow("the same term twice")
        << Terms {preserved(q("x"), q("1")), preserved(q("X"), q("2"))} << "b x"
        << "b LUMAPHON_TERM_0" << test::strings({"LUMAPHON_TERM_0=1"});
    QTest::newRow("an empty text") << Terms {preserved(q("a"))} << ""
                                   << "" << QStringList {};
}

void LumaphoneGlossaryProtectorTest::termsAreReplacedByTokens()
{
    QFETCH(Terms, terms);
    QFETCH(QString, text);
    const LumaphoneGlossaryProtector protector(text, terms);
    QTEST(protector.protectedText(), "protectedText");
    QTEST(written(protector.replacements()), "replacements");
}

void LumaphoneGlossaryProtectorTest::tokensAreReplacedByValues_data()
{
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("restored");
    QTest::newRow("in their places") << "用LUMAPHON_TERM_0和LUMAPHON_TERM_1"
                                     << "用Codex和甲";
    QTest::newRow("in another order") << "LUMAPHON_TERM_1、LUMAPHON_TERM_0"
                                      << "甲、Codex";
    QTest::newRow("every occurrence") << "LUMAPHON_TERM_0LUMAPHON_TERM_0"
                                      << "CodexCodex";
    QTest::newRow("a dropped token") << "用LUMAPHON_TERM_1"
                                     << "用甲";
    QTest::newRow("other case") << "lumaphon_term_0 Lumaphon_Term_1"
                                << "lumaphon_term_0 Lumaphon_Term_1";
    QTest::newRow("split by blanks") << "LUMAPHON_TERM_ 0 LUMAPHON TERM 1"
                                     << "LUMAPHON_TERM_ 0 LUMAPHON TERM 1";
    QTest::newRow("full width") << "ＬＵＭＡＰＨＯＮ＿ＴＥＲＭ＿０"
                                << "ＬＵＭＡＰＨＯＮ＿ＴＥＲＭ＿０";
    QTest::newRow("an unknown index") << "LUMAPHON_TERM_2"
                                      << "LUMAPHON_TERM_2";
    QTest::newRow("an unknown index that begins with a known one") << "LUMAPHON_TERM_12"
                                                                   << "甲2";
    QTest::newRow("no token") << "你好"
                              << "你好";
    QTest::newRow("empty") << ""
                           << "";
}

void LumaphoneGlossaryProtectorTest::tokensAreReplacedByValues()
{
    QFETCH(QString, translation);
    const LumaphoneGlossaryProtector protector(
        q("codex and a"), {preserved(q("Codex")), caseSensitive(preserved(q("and a"), q("甲")))});
    QCOMPARE(protector.protectedText(), q("LUMAPHON_TERM_0 LUMAPHON_TERM_1"));
    QTEST(protector.restored(translation), "restored");
}

void LumaphoneGlossaryProtectorTest::elevenTermsLeaveAStrayDigit()
{
    Terms terms;
    for (const char *source : {"æ", "ß", "ç", "đ", "ε", "φ", "γ", "η", "ι", "ж", "к"}) {
        terms.append(preserved(q(source)));
    }
    const LumaphoneGlossaryProtector protector(q("æ ß к"), terms);
    QCOMPARE(protector.protectedText(), q("LUMAPHON_TERM_0 LUMAPHON_TERM_1 LUMAPHON_TERM_10"));
    QCOMPARE(protector.restored(protector.protectedText()), q("æ ß ß0"));

    const LumaphoneGlossaryProtector withoutSecond(q("æ к"), terms);
    QCOMPARE(withoutSecond.restored(withoutSecond.protectedText()), q("æ к"));
}

void LumaphoneGlossaryProtectorTest::aHundredTermsLeaveStrayDigits()
{
    Terms terms;
    QStringList words;
    QStringList restored;
    for (int i = 0; i <= 100; ++i) {
        const QChar han = QChar(0x4e00 + i);
        words.append(han);
        terms.append(preserved(words.back()));
        const QString index = QString::number(i);
        // The token of the first digit is put back first: that of index 1 to 9, never that of 0.
        restored.append(QString(QChar(0x4e00 + (i < 10 ? i : index.first(1).toInt()))) + index.mid(1));
    }
    const QString blank = QStringLiteral(" ");
    const LumaphoneGlossaryProtector protector(words.join(blank), terms);
    QCOMPARE(protector.replacements().size(), 101);
    QCOMPARE(protector.restored(protector.protectedText()), restored.join(blank));
}

void LumaphoneGlossaryProtectorTest::valuesAreLookedThroughForLaterTokens()
{
    const LumaphoneGlossaryProtector protector(
        q("x y"), {preserved(q("x"), q("LUMAPHON_TERM_1")), preserved(q("y"), q("LUMAPHON_TERM_0"))});
    QCOMPARE(protector.restored(q("LUMAPHON_TERM_0 LUMAPHON_TERM_1")), q("LUMAPHON_TERM_0 LUMAPHON_TERM_0"));
}

LUMAPHONE_TEST(LumaphoneGlossaryProtectorTest)

} // namespace lumaphoneglossaryprotectortest

#include "LumaphoneGlossaryProtectorTest.moc"
