#include "session/revision/RevisionRule.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace revisionruletest {

using namespace lumaphone;

namespace {

QString repeated(const char *character, int count)
{
    return QString::fromUtf8(character).repeated(count);
}

/// `shared` equal characters followed by different ones, `length` in all.
QString sentence(const char *sharedCharacter, int shared, const char *otherCharacter, int length)
{
    return repeated(sharedCharacter, shared) + repeated(otherCharacter, length - shared);
}

} // namespace

class RevisionRuleTest : public QObject
{
    Q_OBJECT

private slots:
    void normalizes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("normalized");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("white space only") << QStringLiteral(" \t\r\n\u3000\u2029\u0085") << "";
        QTest::newRow("runs of white space become one blank")
            << QStringLiteral("\u3000Hello \t\n world\u00A0") << "hello world";
        QTest::newRow("a zero-width space is no white space")
            << QStringLiteral("a\u200Bb\uFEFFc") << QStringLiteral("a\u200Bb\uFEFFc");
        QTest::newRow("capital I with dot becomes two scalars")
            << QStringLiteral("İ") << QStringLiteral("i\u0307");
        QTest::newRow("capital sharp s") << QStringLiteral("STRAẞE") << QStringLiteral("straße");
        QTest::newRow("sigma without regard to context") << QStringLiteral("ΟΔΟΣ") << QStringLiteral("οδοσ");
        QTest::newRow("capitals beyond the basic plane")
            << QStringLiteral("\U00010400") << QStringLiteral("\U00010428");
        QTest::newRow("katakana become hiragana") << QStringLiteral("カタカナ") << QStringLiteral("かたかな");
        QTest::newRow("first folded katakana") << QStringLiteral("\u30A1") << QStringLiteral("\u3041");
        QTest::newRow("last folded katakana") << QStringLiteral("\u30F6") << QStringLiteral("\u3096");
        QTest::newRow("vu") << QStringLiteral("ヴ") << QStringLiteral("ゔ");
        QTest::newRow("beyond the folded range")
            << QStringLiteral("\u30A0ヷヺー・ヽヿ") << QStringLiteral("\u30A0ヷヺー・ヽヿ");
        QTest::newRow("half-width katakana stay") << QStringLiteral("ｶﾅ") << QStringLiteral("ｶﾅ");
        QTest::newRow("hiragana stay") << QStringLiteral("ひらがな") << QStringLiteral("ひらがな");
        QTest::newRow("full-width Latin is lower-cased") << QStringLiteral("ＡＢ") << QStringLiteral("ａｂ");
        QTest::newRow("decomposed katakana keeps its mark")
            << QStringLiteral("カ\u3099") << QStringLiteral("か\u3099");
    }
    void normalizes()
    {
        QFETCH(QString, text);
        QTEST(normalizedForComparison(text), "normalized");
    }

    void countsCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("ASCII") << "abc" << 3;
        QTest::newRow("carriage return and line feed are one") << "a\r\nb" << 3;
        QTest::newRow("composed kana") << QStringLiteral("がぎ") << 2;
        QTest::newRow("decomposed kana") << QStringLiteral("か\u3099き\u3099") << 2;
        QTest::newRow("half-width kana with its own mark") << QStringLiteral("ｶﾞ") << 1;
        QTest::newRow("Hangul syllables") << QStringLiteral("한국어") << 3;
        QTest::newRow("Hangul jamo") << QStringLiteral("한국") << 2;
        QTest::newRow("family of four") << QStringLiteral("👨‍👩‍👧‍👦!") << 2;
        QTest::newRow("skin tone and profession") << QStringLiteral("👩🏽‍🚀") << 1;
        QTest::newRow("two flags") << QStringLiteral("🇹🇼🇯🇵") << 2;
        QTest::newRow("keycap") << QStringLiteral("1️⃣2") << 2;
        QTest::newRow("variation selector on Han") << QStringLiteral("葛\U000E0100城") << 2;
        QTest::newRow("mark on a Latin letter without composed form") << QStringLiteral("q\u0307q") << 2;
        QTest::newRow("Thai vowel below") << QStringLiteral("กุ") << 1;
        QTest::newRow("Han beyond the basic plane") << QStringLiteral("𠮷野") << 2;
    }
    void countsCharacters()
    {
        QFETCH(QString, text);
        QFETCH(int, count);
        const CharacterSequence characters(text);
        QCOMPARE(characters.size(), count);
        QString joined;
        for (qsizetype i = 0; i < characters.size(); ++i) {
            QVERIFY(!characters[i].isEmpty());
            joined += characters[i];
        }
        QCOMPARE(joined, text.normalized(QString::NormalizationForm_C));
    }

    void measuresTheCommonPrefix_data()
    {
        QTest::addColumn<QString>("x");
        QTest::addColumn<QString>("y");
        QTest::addColumn<int>("length");
        QTest::newRow("both empty") << ""
                                    << "" << 0;
        QTest::newRow("one empty") << ""
                                   << "abc" << 0;
        QTest::newRow("stops at the first difference") << "abcdef"
                                                       << "abxdef" << 2;
        QTest::newRow("ends with the shorter one") << "ab"
                                                   << "abc" << 2;
        QTest::newRow("equal") << "abc"
                               << "abc" << 3;
        QTest::newRow("different at once") << "abc"
                                           << "xbc" << 0;
        QTest::newRow("composed and decomposed")
            << QStringLiteral("éがx") << QStringLiteral("e\u0301か\u3099y") << 2;
        QTest::newRow("a base letter is not its accented character")
            << QStringLiteral("cafe") << QStringLiteral("cafe\u0301") << 3;
        QTest::newRow("syllable and its jamo") << QStringLiteral("한국") << QStringLiteral("한구") << 1;
        QTest::newRow("a family differs in one member")
            << QStringLiteral("a👨‍👩‍👧‍👦") << QStringLiteral("a👨‍👩‍👧") << 1;
        QTest::newRow("order of marks does not matter")
            << QStringLiteral("q\u0323\u0307") << QStringLiteral("q\u0307\u0323") << 1;
        QTest::newRow("angstrom sign") << QStringLiteral("\u212B") << QStringLiteral("\u00C5") << 1;
    }
    void measuresTheCommonPrefix()
    {
        QFETCH(QString, x);
        QFETCH(QString, y);
        QTEST(int(commonPrefixLength(CharacterSequence(x), CharacterSequence(y))), "length");
        QTEST(int(commonPrefixLength(CharacterSequence(y), CharacterSequence(x))), "length");
    }

    void measuresTheEditDistance_data()
    {
        QTest::addColumn<QString>("x");
        QTest::addColumn<QString>("y");
        QTest::addColumn<int>("distance");
        QTest::newRow("both empty") << ""
                                    << "" << 0;
        QTest::newRow("one empty") << ""
                                   << "abc" << 3;
        QTest::newRow("equal") << "abc"
                               << "abc" << 0;
        QTest::newRow("substitution") << "abc"
                                      << "axc" << 1;
        QTest::newRow("insertion") << "hello word"
                                   << "hello world" << 1;
        QTest::newRow("swapped neighbours are two edits") << "ab"
                                                          << "ba" << 2;
        QTest::newRow("kitten and sitting") << "kitten"
                                            << "sitting" << 3;
        QTest::newRow("nothing in common") << "abc"
                                           << "xyzw" << 4;
        QTest::newRow("one character, not its scalars")
            << QStringLiteral("a👨‍👩‍👧‍👦b") << "axb" << 1;
        QTest::newRow("equivalent spellings are equal")
            << QStringLiteral("が") << QStringLiteral("か\u3099") << 0;
    }
    void measuresTheEditDistance()
    {
        QFETCH(QString, x);
        QFETCH(QString, y);
        QTEST(int(editDistance(CharacterSequence(x), CharacterSequence(y))), "distance");
        QTEST(int(editDistance(CharacterSequence(y), CharacterSequence(x))), "distance");
    }

    void recognisesShortRevisions_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("incoming");
        QTest::addColumn<bool>("isRevision");
        QTest::newRow("the shorter one has only 2 characters") << "ab"
                                                               << "abc" << false;
        QTest::newRow("3 characters, up to 2 edits") << "abc"
                                                     << "abxyz" << false;
        QTest::newRow("3 against 4, 2 edits") << "abc"
                                              << "abxy" << true;
        QTest::newRow("common prefix of 1") << "abc"
                                            << "axc" << false;
        QTest::newRow("common prefix of 2") << "abc"
                                            << "abx" << true;
        QTest::newRow("5 characters allow 2") << "abcde"
                                              << "abcxy" << true;
        QTest::newRow("5 characters do not allow 3") << "abcde"
                                                     << "abxyz" << false;
        QTest::newRow("6 characters allow 2") << "abcdef"
                                              << "abcdxy" << true;
        QTest::newRow("6 characters do not allow 3") << "abcdef"
                                                     << "abcxyz" << false;
        QTest::newRow("9 characters allow 3") << "abcdefghi"
                                              << "abcdefxyz" << true;
        QTest::newRow("8 characters do not allow 3") << "abcdefgh"
                                                     << "abcdexyz" << false;
        QTest::newRow("11 characters allow 3, the division rounds down") << "abcdefghijk"
                                                                         << "abcdefghxyz" << true;
        QTest::newRow("11 characters do not allow 4") << "abcdefghijk"
                                                      << "abcdefgwxyz" << false;
        QTest::newRow("18 characters are short")
            << sentence("a", 12, "b", 18) << sentence("a", 12, "c", 18) << true;
        QTest::newRow("19 characters are not")
            << sentence("a", 13, "b", 19) << sentence("a", 13, "c", 19) << false;
        QTest::newRow("18 against 24") << repeated("a", 18) << sentence("a", 16, "c", 24) << true;
        QTest::newRow("18 against 25") << repeated("a", 18) << sentence("a", 17, "c", 25) << false;
        QTest::newRow("empty") << ""
                               << "abc" << false;
        QTest::newRow("characters are counted, not units")
            << QStringLiteral("👨‍👩‍👧‍👦👨‍👩‍👧‍👦a")
            << QStringLiteral("👨‍👩‍👧‍👦👨‍👩‍👧‍👦b") << true;
    }
    void recognisesShortRevisions()
    {
        QFETCH(QString, current);
        QFETCH(QString, incoming);
        QTEST(isLikelyShortRevision(CharacterSequence(current), CharacterSequence(incoming)), "isRevision");
        QTEST(isLikelyShortRevision(CharacterSequence(incoming), CharacterSequence(current)), "isRevision");
    }

    void recognisesLongRevisions_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("incoming");
        QTest::addColumn<bool>("isRevision");
        QTest::newRow("17 of 30: below 58 %")
            << sentence("あ", 17, "い", 30) << sentence("あ", 17, "う", 30) << false;
        QTest::newRow("18 of 30") << sentence("あ", 18, "い", 30) << sentence("あ", 18, "う", 30) << true;
        QTest::newRow("29 of 50: exactly 58 %")
            << sentence("a", 29, "b", 50) << sentence("a", 29, "c", 40) << true;
        QTest::newRow("28 of 50") << sentence("a", 28, "b", 50) << sentence("a", 28, "c", 40) << false;
        QTest::newRow("the longer one counts")
            << sentence("a", 14, "b", 20) << sentence("a", 14, "c", 25) << false;
        QTest::newRow("11 characters are too short")
            << repeated("a", 11) << sentence("a", 11, "b", 15) << false;
        QTest::newRow("12 characters, prefix of 12")
            << repeated("a", 12) << sentence("a", 12, "b", 20) << true;
        QTest::newRow("prefix of 11") << sentence("a", 11, "b", 12) << sentence("a", 11, "c", 12) << false;
    }
    void recognisesLongRevisions()
    {
        QFETCH(QString, current);
        QFETCH(QString, incoming);
        QTEST(hasStrongCommonPrefix(CharacterSequence(current), CharacterSequence(incoming)), "isRevision");
        QTEST(hasStrongCommonPrefix(CharacterSequence(incoming), CharacterSequence(current)), "isRevision");
    }

    void decides_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("incoming");
        QTest::addColumn<bool>("isRevision");
        QTest::newRow("extended") << QStringLiteral("今日は") << QStringLiteral("今日は雨") << true;
        QTest::newRow("shortened") << QStringLiteral("今日は雨") << QStringLiteral("今日は") << true;
        QTest::newRow("one character begins the other") << "a"
                                                        << "abcdefghijklmnopqrstuvwxyz" << true;
        QTest::newRow("equal") << QStringLiteral("はい") << QStringLiteral("はい") << true;
        QTest::newRow("case") << "Hello"
                              << "HELLO" << true;
        QTest::newRow("runs of white space") << QStringLiteral("a  b\u3000c") << "a b c" << true;
        QTest::newRow("katakana and hiragana") << QStringLiteral("アメ") << QStringLiteral("あめ") << true;
        QTest::newRow("composed katakana and decomposed hiragana")
            << QStringLiteral("ガラス") << QStringLiteral("か\u3099らす") << true;
        QTest::newRow("half-width katakana is another text")
            << QStringLiteral("ｱﾒ") << QStringLiteral("あめ") << false;
        QTest::newRow("composed and decomposed accent")
            << QStringLiteral("café") << QStringLiteral("cafe\u0301 noir") << true;
        QTest::newRow("an accent more is another character")
            << QStringLiteral("e") << QStringLiteral("e\u0301x") << false;
        QTest::newRow("half a family is no beginning of it")
            << QStringLiteral("👨‍👩") << QStringLiteral("👨‍👩‍👧 x") << false;
        QTest::newRow("empty current") << ""
                                       << "a" << false;
        QTest::newRow("empty incoming") << "a"
                                        << "" << false;
        QTest::newRow("both empty") << ""
                                    << "" << false;
        QTest::newRow("white space only")
            << QStringLiteral(" \u3000\n") << QStringLiteral(" \u3000\n") << false;
        QTest::newRow("short phrase recognised anew") << "hello word"
                                                      << "hello world" << true;
        QTest::newRow("another short phrase") << "hello"
                                              << "howdy" << false;
        QTest::newRow("long sentence, tail changed, 18 of 30")
            << sentence("a", 18, "b", 30) << sentence("a", 18, "c", 30) << true;
        QTest::newRow("long sentence, 17 of 30")
            << sentence("a", 17, "b", 30) << sentence("a", 17, "c", 30) << false;
        QTest::newRow("dotted capital I")
            << QStringLiteral("İSTANBUL") << QStringLiteral("i\u0307stanbul") << true;
    }
    void decides()
    {
        QFETCH(QString, current);
        QFETCH(QString, incoming);
        QTEST(fallbackIsRevisionOfCurrentPartial(current, incoming), "isRevision");
        QTEST(fallbackIsRevisionOfCurrentPartial(incoming, current), "isRevision");
    }
};

LUMAPHONE_TEST(RevisionRuleTest)

} // namespace revisionruletest

#include "RevisionRuleTest.moc"
