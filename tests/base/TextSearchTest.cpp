#include "base/TextSearch.h"

#include "base/Text.h"
#include "support/program/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

namespace textsearchtest {

using namespace lumaphone::text;

class TextSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void ignoringCaseAndDiacritics_data();
    void ignoringCaseAndDiacritics();
    void exactly_data();
    void exactly();
    void whatIsFoundCanBeReplacedByItself();

private:
    static void expect(Comparison comparison);
};

void TextSearchTest::expect(Comparison comparison)
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QFETCH(QString, replaced);
    const TextSearch search(text, comparison);
    QCOMPARE(search.replacing(pattern, QStringLiteral("*")), replaced);
    QCOMPARE(search.contains(pattern), replaced != text);
}

namespace {

void row(const char *name, const char16_t *text, const char16_t *pattern, const char16_t *replaced)
{
    QTest::newRow(name) << QString::fromUtf16(text) << QString::fromUtf16(pattern)
                        << QString::fromUtf16(replaced);
}

void columns()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("replaced");
}

} // namespace

void TextSearchTest::ignoringCaseAndDiacritics_data()
{
    columns();
    row("accent and case", u"l'ÉCOLE est", u"ecole", u"l'* est");
    row("the accent is in the pattern", u"l'ECOLE est", u"école", u"l'* est");
    row("decomposed text", u"E\u0301COLE!", u"école", u"*!");
    row("decomposed pattern", u"ÉCOLE!", u"e\u0301cole", u"*!");
    row("several marks on one letter", u"Việt Nam", u"viet", u"* Nam");
    row("every occurrence", u"Lumaphone LUMAPHONE lumaphone", u"lumaphone", u"* * *");
    row("occurrences do not overlap", u"aaaaa", u"AA", u"**a");
    row("at both ends", u"àbbA", u"a", u"*bb*");
    row("inside a word", u"concatenate", u"CAT", u"con*enate");
    row("full-width letters keep their width, not their case", u"ＡＢＣ", u"ａｂｃ", u"*");
    row("full width is not half width", u"ＡＢＣ", u"abc", u"ＡＢＣ");
    row("half width is not full width", u"abc", u"ＡＢＣ", u"abc");
    row("half-width kana are not full-width kana", u"ｶﾞｽ", u"ガス", u"ｶﾞｽ");
    row("Turkish dotted capital", u"İSTANBUL", u"istanbul", u"*");
    row("Turkish dotted capital as pattern", u"istanbul", u"İstanbul", u"*");
    row("Turkish dotless small is a letter of its own", u"ISPARTA", u"ısparta", u"ISPARTA");
    row("Turkish dotless small is itself", u"ısparta", u"ıSPARTA", u"*");
    row("dotless is not dotted", u"ı", u"i", u"ı");
    row("sharp s is two letters", u"Straße 5", u"STRASSE", u"* 5");
    row("two letters are a sharp s", u"STRASSE", u"straße", u"*");
    row("half of a sharp s is not found", u"aßa", u"s", u"aßa");
    row("capital sharp s", u"STRAẞE", u"straße", u"*");
    row("a ligature is its letters", u"ﬁne", u"FIN", u"*e");
    row("half of a ligature is not found", u"ﬁne", u"f", u"ﬁne");
    row("a stroke is no mark", u"København", u"kobenhavn", u"København");
    row("Greek accents", u"ΑΘΉΝΑ", u"αθηνα", u"*");
    row("final sigma", u"ΣΟΦΟΣ", u"σοφός", u"*");
    row("iota below", u"ᾼδης", u"αδης", u"*");
    row("Cyrillic marks", u"Ёлка", u"елка", u"*");
    row("voiced kana stay apart", u"がく", u"かく", u"がく");
    row("decomposed voiced kana stay apart", u"か\u3099く", u"かく", u"か\u3099く");
    row("composed finds decomposed kana", u"か\u3099く", u"がく", u"*");
    row("half-voiced kana stay apart", u"パン", u"ハン", u"パン");
    row("hiragana is not katakana", u"かく", u"カク", u"かく");
    row("Hangul", u"한국어", u"한국", u"*어");
    row("half of a syllable is not found", u"한국", u"하", u"한국");
    row("decomposed Hangul", u"\u1112\u1161\u11ab국", u"한국", u"*");
    row("Hebrew points stay", u"ש\u05b8", u"ש", u"ש\u05b8");
    row("Devanagari vowel signs stay", u"कि", u"क", u"कि");
    row("Han outside the basic plane", u"𠮷野家", u"𠮷野", u"*家");
    row("half of a pair is not found", u"𠮷", u"\xd842", u"𠮷");
    row("Deseret case", u"𐐀x", u"𐐨", u"*x");
    row("text after an emoji", u"😀 ÉCOLE", u"ecole", u"😀 *");
    row("a pattern longer than the text", u"ab", u"abc", u"ab");
    row("an empty pattern", u"abc", u"", u"abc");
    row("an empty text", u"", u"abc", u"");
    row("both empty", u"", u"", u"");
    row("a lone mark", u"\u0301", u"\u0301", u"*");
    row("a mark is not found on a letter", u"é", u"\u0301", u"é");
    row("a line break is one character", u"a\r\nb", u"\n", u"a\r\nb");
    row("across a line break", u"É\r\nB", u"e\r\nb", u"*");
}

void TextSearchTest::ignoringCaseAndDiacritics()
{
    expect(Comparison::ignoringCaseAndDiacritics);
}

void TextSearchTest::exactly_data()
{
    columns();
    row("the same", u"an iPhone", u"iPhone", u"an *");
    row("other case", u"an iphone", u"iPhone", u"an iphone");
    row("other marks", u"café", u"cafe", u"café");
    row("decomposed marks are marks", u"cafe\u0301", u"cafe", u"cafe\u0301");
    row("composed finds decomposed", u"cafe\u0301s", u"café", u"*s");
    row("decomposed finds composed", u"cafés", u"cafe\u0301", u"*s");
    row("order of marks", u"q\u0307\u0323", u"q\u0323\u0307", u"*");
    row("Ångström sign", u"\u212b", u"Å", u"*");
    row("sharp s", u"Straße", u"Strasse", u"Straße");
    row("dotted capital", u"İ", u"I", u"İ");
    row("Hangul", u"한국", u"하", u"한국");
    row("full width", u"Ａ", u"A", u"Ａ");
    row("every occurrence", u"TERM_1 TERM_10", u"TERM_1", u"* *0");
    row("what is put in is not searched again", u"a*a", u"a", u"***");
    row("a line break is one character", u"a\r\nb", u"\r", u"a\r\nb");
    row("regular expressions mean nothing", u"a.c abc", u"a.c", u"* abc");
}

void TextSearchTest::exactly()
{
    expect(Comparison::exact);
}

void TextSearchTest::whatIsFoundCanBeReplacedByItself()
{
    // Few letters, so that patterns occur; all the kinds that are folded or decomposed.
    const QString alphabet
        = QString::fromUtf16(u"aAeéÉ\u0301\u0323ßsSﬁiİıΣς한\u1112\u1161\u11abがか\u3099\r\n😀");
    const QList<uint> scalars = alphabet.toUcs4();
    QRandomGenerator random(20240229);
    const auto randomText = [&](int longest) {
        QString text;
        for (int left = random.bounded(longest + 1); left > 0; --left) {
            text.append(QStringView(QChar::fromUcs4(scalars[random.bounded(scalars.size())])));
        }
        return text;
    };
    int found = 0;
    for (int round = 0; round < 20000; ++round) {
        const QString text = randomText(12);
        const QString pattern = randomText(2);
        const TextSearch exact(text, Comparison::exact);
        QVERIFY2(canonicallyEqual(exact.replacing(pattern, pattern), text), qPrintable(text));
        const TextSearch folded(text, Comparison::ignoringCaseAndDiacritics);
        QCOMPARE(foldedForSearch(folded.replacing(pattern, pattern)), foldedForSearch(text));
        // Whatever is equal is equal without its case and marks as well.
        QVERIFY2(!exact.contains(pattern) || folded.contains(pattern), qPrintable(text));
        found += folded.contains(pattern) ? 1 : 0;
    }
    QVERIFY2(found > 1000, qPrintable(QString::number(found)));
}

LUMAPHONE_TEST(TextSearchTest)

} // namespace textsearchtest

#include "TextSearchTest.moc"
