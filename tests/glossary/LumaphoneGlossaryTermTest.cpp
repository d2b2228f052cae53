#include "glossary/LumaphoneGlossaryTerm.h"

#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <functional>

namespace lumaphoneglossarytermtest {

using namespace lumaphone;

class LumaphoneGlossaryTermTest : public QObject
{
    Q_OBJECT

private slots:
    void modesAreListedInTheOrderOfMenus();
    void rawValuesAreReadExactly_data();
    void rawValuesAreReadExactly();
    void everyFieldCountsForEquality_data();
    void everyFieldCountsForEquality();
    void canonicallyEquivalentTextsAreEqual();
    void cleaningTrimsTheThreeTexts_data();
    void cleaningTrimsTheThreeTexts();
    void cleaningKeepsTheRest();
};

void LumaphoneGlossaryTermTest::modesAreListedInTheOrderOfMenus()
{
    QStringList values;
    for (const LumaphoneGlossaryTermMode mode : allLumaphoneGlossaryTermModes) {
        values.append(rawValue(mode));
    }
    QCOMPARE(values, (QStringList {QStringLiteral("preserve"), QStringLiteral("translate")}));
}

void LumaphoneGlossaryTermTest::rawValuesAreReadExactly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("known");
    QTest::newRow("preserve") << "preserve" << true;
    QTest::newRow("translate") << "translate" << true;
    QTest::newRow("capital") << "Preserve" << false;
    QTest::newRow("blank") << "preserve " << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("unknown") << "keep" << false;
}

void LumaphoneGlossaryTermTest::rawValuesAreReadExactly()
{
    QFETCH(QString, text);
    QFETCH(bool, known);
    const auto mode = lumaphoneGlossaryTermMode(text);
    QCOMPARE(mode.has_value(), known);
    QCOMPARE(mode ? rawValue(*mode) : text, text);
}

namespace {

using Change = std::function<void(LumaphoneGlossaryTerm &)>;

} // namespace

void LumaphoneGlossaryTermTest::everyFieldCountsForEquality_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("id") << Change([](auto &term) { term.id = QUuid::createUuid(); });
    QTest::newRow("source") << Change([](auto &term) { term.source = QStringLiteral("b"); });
    QTest::newRow("target") << Change([](auto &term) { term.target = QStringLiteral("b"); });
    QTest::newRow("mode") << Change([](auto &term) { term.mode = LumaphoneGlossaryTermMode::translate; });
    QTest::newRow("note") << Change([](auto &term) { term.note = QStringLiteral("b"); });
    QTest::newRow("isEnabled") << Change([](auto &term) { term.isEnabled = false; });
    QTest::newRow("caseSensitive") << Change([](auto &term) { term.caseSensitive = true; });
}

void LumaphoneGlossaryTermTest::everyFieldCountsForEquality()
{
    QFETCH(Change, change);
    const LumaphoneGlossaryTerm term = test::preserved(QStringLiteral("a"), QStringLiteral("A"));
    LumaphoneGlossaryTerm other = term;
    QVERIFY(other == term);
    change(other);
    QVERIFY(other != term);
}

void LumaphoneGlossaryTermTest::canonicallyEquivalentTextsAreEqual()
{
    const LumaphoneGlossaryTerm composed = test::preserved(QStringLiteral("café"));
    LumaphoneGlossaryTerm decomposed = composed;
    decomposed.source = QStringLiteral("cafe\u0301");
    QVERIFY(decomposed == composed);
}

void LumaphoneGlossaryTermTest::cleaningTrimsTheThreeTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cleaned");
    QTest::newRow("nothing to do") << "a b"
                                   << "a b";
    QTest::newRow("two leading blanks and a line feed") << "  Codex\n"
                                                        << "Codex";
    QTest::newRow("tabs and carriage returns") << "\t\r\na\r\n"
                                               << "a";
    QTest::newRow("ideographic space") << "\u3000東京\u3000"
                                       << "東京";
    QTest::newRow("no-break space, line separator") << "\u00a0a\u2028"
                                                    << "a";
    QTest::newRow("inner line break") << "a\nb"
                                      << "a\nb";
    QTest::newRow("zero-width space stays") << "\u200ba\u200b"
                                            << "\u200ba\u200b";
    QTest::newRow("only blanks") << " \t "
                                 << "";
    QTest::newRow("empty") << ""
                           << "";
}

void LumaphoneGlossaryTermTest::cleaningTrimsTheThreeTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, cleaned);
    LumaphoneGlossaryTerm term = test::preserved(text, text);
    term.note = text;
    QCOMPARE(term.cleaned().source, cleaned);
    QCOMPARE(term.cleaned().target, cleaned);
    QCOMPARE(term.cleaned().note, cleaned);
}

void LumaphoneGlossaryTermTest::cleaningKeepsTheRest()
{
    LumaphoneGlossaryTerm term = test::translated(QStringLiteral(" a "), QStringLiteral("b"));
    term.caseSensitive = true;
    term.isEnabled = false;
    const LumaphoneGlossaryTerm cleaned = term.cleaned();
    QCOMPARE(cleaned.id, term.id);
    QCOMPARE(cleaned.mode, LumaphoneGlossaryTermMode::translate);
    QCOMPARE(cleaned.isEnabled, false);
    QCOMPARE(cleaned.caseSensitive, true);
}

LUMAPHONE_TEST(LumaphoneGlossaryTermTest)

} // namespace lumaphoneglossarytermtest

#include "LumaphoneGlossaryTermTest.moc"
