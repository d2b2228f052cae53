#include "translation/GlossarySelection.h"

#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace glossaryselectiontest {

using namespace lumaphone;
using test::caseSensitive;
using test::preserved;
using test::translated;

class GlossarySelectionTest : public QObject
{
    Q_OBJECT

private slots:
    void aTermIsTakenIfItsSourceOccurs_data();
    void aTermIsTakenIfItsSourceOccurs();
    void theListKeepsItsOrder();
    void modesMakeNoDifference();
    void nothingOccursInAnEmptyText();
    void tenThousandTermsAreLookedFor();
};

void GlossarySelectionTest::aTermIsTakenIfItsSourceOccurs_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("isCaseSensitive");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("occurs");
    QTest::newRow("the same") << "Codex" << false << "I like Codex." << true;
    QTest::newRow("other case") << "codex" << false << "I like CODEX." << true;
    QTest::newRow("other case, case-sensitive") << "codex" << true << "I like CODEX." << false;
    QTest::newRow("the same, case-sensitive") << "Codex" << true << "I like Codex." << true;
    QTest::newRow("case and diacritics") << "ecole" << false << "ÉCOLE" << true;
    QTest::newRow("diacritics, case-sensitive") << "ecole" << true << "école" << false;
    QTest::newRow("canonically equal, case-sensitive") << "école" << true << "e\u0301cole" << true;
    QTest::newRow("within a word") << "art" << false << "Starting" << true;
    QTest::newRow("Japanese") << "東京" << false << "今日は東京です" << true;
    QTest::newRow("voiced kana") << "ハン" << false << "パン" << false;
    QTest::newRow("Hangul") << "서울" << false << "서울에서" << true;
    QTest::newRow("half a syllable") << "서" << false << "선" << false;
    QTest::newRow("full width") << "ｃｏｄｅｘ" << false << "ＣＯＤＥＸ" << true;
    QTest::newRow("half width in a full-width text") << "codex" << false << "ＣＯＤＥＸ" << false;
    QTest::newRow("an empty source") << "" << false << "a" << false;
    QTest::newRow("an empty source, case-sensitive") << "" << true << "a" << false;
}

void GlossarySelectionTest::aTermIsTakenIfItsSourceOccurs()
{
    QFETCH(QString, source);
    QFETCH(bool, isCaseSensitive);
    QFETCH(QString, text);
    LumaphoneGlossaryTerm term = preserved(source);
    term.caseSensitive = isCaseSensitive;
    const auto occurring = glossaryTermsOccurring({term}, text);
    QTEST(!occurring.isEmpty(), "occurs");
    QVERIFY(occurring.isEmpty() || occurring == QList {term});
}

void GlossarySelectionTest::theListKeepsItsOrder()
{
    const QList<LumaphoneGlossaryTerm> terms {
        preserved(QStringLiteral("zebra")),
        preserved(QStringLiteral("horse")),
        caseSensitive(preserved(QStringLiteral("Ape"))),
        preserved(QStringLiteral("ZEB")),
        preserved(QStringLiteral("zebra")),
    };
    QCOMPARE(test::sources(glossaryTermsOccurring(terms, QStringLiteral("An Ape and a Zebra"))),
        test::strings({"zebra", "Ape", "ZEB", "zebra"}));
}

void GlossarySelectionTest::modesMakeNoDifference()
{
    const QList<LumaphoneGlossaryTerm> terms {
        translated(QStringLiteral("a"), QStringLiteral("甲")), preserved(QStringLiteral("b"))};
    QCOMPARE(glossaryTermsOccurring(terms, QStringLiteral("ab")), terms);
}

void GlossarySelectionTest::nothingOccursInAnEmptyText()
{
    QVERIFY(
        glossaryTermsOccurring({preserved(QStringLiteral("a")), preserved(QString())}, QString()).isEmpty());
}

void GlossarySelectionTest::tenThousandTermsAreLookedFor()
{
    QList<LumaphoneGlossaryTerm> terms;
    for (int i = 0; i < 10000; ++i) {
        terms.append(preserved(QStringLiteral("Térm %1.").arg(i)));
    }
    QCOMPARE(test::sources(glossaryTermsOccurring(terms, QStringLiteral("From TERM 9999. to term 17."))),
        test::strings({"Térm 17.", "Térm 9999."}));
}

LUMAPHONE_TEST(GlossarySelectionTest)

} // namespace glossaryselectiontest

#include "GlossarySelectionTest.moc"
