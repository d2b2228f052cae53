#include "base/Text.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>
#include <set>

namespace texttest {

using namespace lumaphone;

namespace {

/// The Unicode property White_Space.
const std::set<char32_t> whiteSpace {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x20, 0x85, 0xA0, 0x1680, 0x2000, 0x2001,
    0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F,
    0x3000};

QString allWhiteSpace()
{
    QString result;
    for (const char32_t scalar : whiteSpace) {
        result += QStringView(QChar::fromUcs4(scalar));
    }
    return result;
}

} // namespace

class TextTest : public QObject
{
    Q_OBJECT

private slots:
    void whiteSpaceIsTheUnicodeProperty()
    {
        for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
            const bool expected = whiteSpace.contains(scalar);
            if (text::isWhiteSpace(scalar) != expected) {
                QFAIL(qPrintable(QStringLiteral("U+%1").arg(uint(scalar), 4, 16)));
            }
        }
    }

    void trimsBothEnds_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("trimmed");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("every white space") << allWhiteSpace() << "";
        QTest::newRow("around a text") << allWhiteSpace() + QStringLiteral("a b") + allWhiteSpace() << "a b";
        QTest::newRow("inside stays") << QStringLiteral("a\u3000\nb") << QStringLiteral("a\u3000\nb");
        QTest::newRow("zero-width space stays")
            << QStringLiteral("\u200Ba\u200B") << QStringLiteral("\u200Ba\u200B");
        QTest::newRow("byte order mark stays") << QStringLiteral("\uFEFFa") << QStringLiteral("\uFEFFa");
        QTest::newRow("Mongolian vowel separator stays")
            << QStringLiteral("\u180Ea") << QStringLiteral("\u180Ea");
        QTest::newRow("information separators stay")
            << QStringLiteral("\u001Ca\u001F") << QStringLiteral("\u001Ca\u001F");
    }
    void trimsBothEnds()
    {
        QFETCH(QString, given);
        QTEST(text::trimmed(given), "trimmed");
    }

    void splitsAtRunsOfWhiteSpace_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QStringList>("pieces");
        const QStringList aAndB {QStringLiteral("a"), QStringLiteral("b")};
        QTest::newRow("empty") << "" << QStringList();
        QTest::newRow("white space only") << allWhiteSpace() << QStringList();
        QTest::newRow("one piece") << "abc" << QStringList {QStringLiteral("abc")};
        QTest::newRow("two pieces") << "a b" << aAndB;
        QTest::newRow("runs, also at the ends")
            << allWhiteSpace() + QStringLiteral("a\r\n\tb \u3000") << aAndB;
        QTest::newRow("zero-width space joins")
            << QStringLiteral("a\u200Bb") << QStringList {QStringLiteral("a\u200Bb")};
    }
    void splitsAtRunsOfWhiteSpace()
    {
        QFETCH(QString, given);
        QTEST(QStringList(text::splitAtWhiteSpace(given)), "pieces");
    }

    void lowercasesAllOfUnicode_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("lower");
        QTest::newRow("ASCII") << "Hello, WORLD 1"
                               << "hello, world 1";
        QTest::newRow("dotted capital I") << QStringLiteral("İ") << QStringLiteral("i\u0307");
        QTest::newRow("dotless i stays") << QStringLiteral("ı") << QStringLiteral("ı");
        QTest::newRow("I becomes i") << "I"
                                     << "i";
        QTest::newRow("capital sharp s") << QStringLiteral("ẞ") << QStringLiteral("ß");
        QTest::newRow("sigma at the end of a word") << QStringLiteral("ΣΑΣ") << QStringLiteral("σασ");
        QTest::newRow("title case digraph") << QStringLiteral("ǅ") << QStringLiteral("ǆ");
        QTest::newRow("full-width Latin") << QStringLiteral("Ａ") << QStringLiteral("ａ");
        QTest::newRow("Deseret") << QStringLiteral("\U00010400") << QStringLiteral("\U00010428");
        QTest::newRow("kana and Han stay") << QStringLiteral("カ漢") << QStringLiteral("カ漢");
    }
    void lowercasesAllOfUnicode()
    {
        QFETCH(QString, given);
        QTEST(text::lowercased(given), "lower");
    }

    void comparesCanonically_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("empty") << ""
                               << "" << true;
        QTest::newRow("empty and not") << ""
                                       << "a" << false;
        QTest::newRow("ASCII") << "abc"
                               << "abc" << true;
        QTest::newRow("ASCII differs") << "abc"
                                       << "abd" << false;
        QTest::newRow("ASCII prefix") << "abc"
                                      << "ab" << false;
        QTest::newRow("accent") << QStringLiteral("é") << QStringLiteral("e\u0301") << true;
        QTest::newRow("accent in the middle")
            << QStringLiteral("caféx") << QStringLiteral("cafe\u0301x") << true;
        QTest::newRow("accent missing") << QStringLiteral("e") << QStringLiteral("e\u0301") << false;
        QTest::newRow("another accent") << QStringLiteral("é") << QStringLiteral("è") << false;
        QTest::newRow("dakuten") << QStringLiteral("が") << QStringLiteral("か\u3099") << true;
        QTest::newRow("か and が") << QStringLiteral("か") << QStringLiteral("が") << false;
        QTest::newRow("order of marks")
            << QStringLiteral("q\u0307\u0323") << QStringLiteral("q\u0323\u0307") << true;
        QTest::newRow("order of marks of one class")
            << QStringLiteral("q\u0301\u0300") << QStringLiteral("q\u0300\u0301") << false;
        QTest::newRow("mark moved before another")
            << QStringLiteral("ạ\u0307") << QStringLiteral("ȧ\u0323") << true;
        QTest::newRow("Hangul syllable and jamo") << QStringLiteral("한") << QStringLiteral("한") << true;
        QTest::newRow("open syllable and final consonant")
            << QStringLiteral("각") << QStringLiteral("가\u11A8") << true;
        QTest::newRow("other syllables") << QStringLiteral("각") << QStringLiteral("간") << false;
        QTest::newRow("angstrom") << QStringLiteral("\u212B") << QStringLiteral("\u00C5") << true;
        QTest::newRow("singleton Han") << QStringLiteral("\uF900") << QStringLiteral("\u8C48") << true;
        QTest::newRow("singleton beyond the basic plane")
            << QStringLiteral("\U0002F800") << QStringLiteral("\u4E3D") << true;
        QTest::newRow("compatibility is no equivalence") << QStringLiteral("Ａ") << "A" << false;
        QTest::newRow("ligature") << QStringLiteral("ﬁ") << "fi" << false;
        QTest::newRow("case") << "a"
                              << "A" << false;
        QTest::newRow("emoji") << QStringLiteral("👨‍👩‍👧") << QStringLiteral("👨‍👩‍👦")
                               << false;
    }
    void comparesCanonically()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QTEST(text::canonicallyEqual(a, b), "equal");
        QTEST(text::canonicallyEqual(b, a), "equal");
        QTEST(text::canonicalForm(a) == text::canonicalForm(b), "equal");
    }

    void comparesRandomTextsAsTheirDecompositionsCompare()
    {
        const std::u32string scalars = U"aeqA\u0301\u0300\u0307\u0323\u3099\u309Aéạがかはぱ\uAC00\uAC01\uAC1C"
                                       U"\u1100\u1161\u11A8漢\uF900\U0002F800\U00011099\U000110BA😀";
        std::mt19937 random(7);
        const auto randomText = [&] {
            QString result;
            for (auto length = random() % 4; length > 0; --length) {
                result += QStringView(QChar::fromUcs4(scalars[random() % scalars.size()]));
            }
            return result;
        };
        int equal = 0;
        for (int i = 0; i < 200'000; ++i) {
            const QString a = randomText();
            const QString respelled = a.normalized(
                random() % 2 == 0 ? QString::NormalizationForm_C : QString::NormalizationForm_D);
            const QString b = random() % 2 == 0 ? randomText() : respelled + randomText().left(1);
            const bool expected
                = a.normalized(QString::NormalizationForm_D) == b.normalized(QString::NormalizationForm_D);
            equal += expected && a != b ? 1 : 0;
            if (text::canonicallyEqual(a, b) != expected) {
                QFAIL(qPrintable(a + QStringLiteral(" | ") + b));
            }
        }
        QVERIFY2(equal > 5'000, qPrintable(QString::number(equal)));
    }

    void countsCharactersAsPeopleDo_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<int>("count");
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("ASCII") << "abc" << 3;
        QTest::newRow("line break") << "\r\n" << 1;
        QTest::newRow("decomposed") << QStringLiteral("e\u0301か\u3099") << 2;
        QTest::newRow("jamo") << QStringLiteral("한국") << 2;
        QTest::newRow("family") << QStringLiteral("👨‍👩‍👧‍👦") << 1;
        QTest::newRow("flags") << QStringLiteral("🇹🇼🇯🇵") << 2;
        QTest::newRow("skin tone") << QStringLiteral("👍🏽👍") << 2;
    }
    void countsCharactersAsPeopleDo()
    {
        QFETCH(QString, given);
        QTEST(int(text::characters(given).size()), "count");
    }

    void charactersAreEqualUnderCanonicalEquivalence()
    {
        QCOMPARE(
            text::characters(QStringLiteral("éが한")), text::characters(QStringLiteral("e\u0301か\u3099한")));
    }

    void foldsForSearch_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("case") << "Hello"
                              << "hELLO" << true;
        QTest::newRow("accents") << QStringLiteral("ÉCOLE") << "ecole" << true;
        QTest::newRow("decomposed accents")
            << QStringLiteral("e\u0301cole") << QStringLiteral("École") << true;
        QTest::newRow("sharp s") << QStringLiteral("STRAẞE") << QStringLiteral("straße") << true;
        QTest::newRow("Vietnamese") << QStringLiteral("Việt") << "viet" << true;
        QTest::newRow("Greek") << QStringLiteral("Ώρα") << QStringLiteral("ωρα") << true;
        QTest::newRow("final sigma") << QStringLiteral("ΟΔΟΣ") << QStringLiteral("οδος") << true;
        QTest::newRow("Cyrillic io") << QStringLiteral("Ёлка") << QStringLiteral("елка") << true;
        QTest::newRow("Turkish capital I with dot") << QStringLiteral("İ") << "i" << true;
        QTest::newRow("Turkish dotless i") << QStringLiteral("ı") << "i" << false;
        QTest::newRow("full-width Latin") << QStringLiteral("Ａ") << "A" << false;
        QTest::newRow("full-width case") << QStringLiteral("Ａ") << QStringLiteral("ａ") << true;
        QTest::newRow("stroke is no diacritic") << QStringLiteral("ø") << "o" << false;
        QTest::newRow("か and が") << QStringLiteral("か") << QStringLiteral("が") << false;
        QTest::newRow("ハ and パ") << QStringLiteral("ハ") << QStringLiteral("パ") << false;
        QTest::newRow("が composed and decomposed")
            << QStringLiteral("が") << QStringLiteral("か\u3099") << true;
        QTest::newRow("katakana and hiragana") << QStringLiteral("カ") << QStringLiteral("か") << false;
        QTest::newRow("half-width katakana") << QStringLiteral("ｶ") << QStringLiteral("カ") << false;
        QTest::newRow("Hangul") << QStringLiteral("각") << QStringLiteral("가") << false;
        QTest::newRow("Hangul jamo") << QStringLiteral("각") << QStringLiteral("가\u11A8") << true;
        QTest::newRow("Han") << QStringLiteral("漢") << QStringLiteral("汉") << false;
        QTest::newRow("Devanagari vowel signs stay") << QStringLiteral("कि") << QStringLiteral("क") << false;
    }
    void foldsForSearch()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QTEST(text::foldedForSearch(a) == text::foldedForSearch(b), "equal");
    }

    void aFoldedTextStaysAsItIs()
    {
        for (const QString &given :
            {QStringLiteral("ÉCOLE İıß"), QStringLiteral("がパ각ｶﾞ"), QStringLiteral("q\u0323\u0307")}) {
            const QString folded = text::foldedForSearch(given);
            QCOMPARE(text::foldedForSearch(folded), folded);
        }
    }
};

LUMAPHONE_TEST(TextTest)

} // namespace texttest

#include "TextTest.moc"
