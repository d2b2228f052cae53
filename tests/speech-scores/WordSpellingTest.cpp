#include "support/speech-scores/WordSpelling.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <stdexcept>

namespace wordspellingtest {

using namespace lumaphone;
using namespace lumaphone::test;
using enum AppleSystemSpeechLanguage;

class WordSpellingTest : public QObject
{
    Q_OBJECT

private slots:
    void englishHasOneSpelling_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("words");
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("only marks") << "... – ?!"
                                    << "";
        QTest::newRow("case and full stop") << "Go forward."
                                            << "go forward";
        QTest::newRow("commas") << "Five, five."
                                << "five five";
        QTest::newRow("a hyphen") << "rather cold-hearted"
                                  << "rather cold hearted";
        QTest::newRow("a dash") << "yes—no"
                                << "yes no";
        QTest::newRow("an ellipsis") << "well…then"
                                     << "well then";
        QTest::newRow("Mr.") << "Mr. John, MR John"
                             << "mister john mister john";
        QTest::newRow("the word") << "mister John"
                                  << "mister john";
        QTest::newRow("Mrs. and Dr.") << "Mrs. Gray, Dr. Gray"
                                      << "missus gray doctor gray";
        QTest::newRow("a word that begins like it") << "mrs mrsa"
                                                    << "missus mrsa";
        QTest::newRow("a contraction") << "Don't"
                                       << "don't";
        QTest::newRow("a typographic apostrophe") << "don’t"
                                                  << "don't";
        QTest::newRow("no contraction") << "do not"
                                        << "do not";
        QTest::newRow("quotes") << "'Go', he said, \"go\""
                                << "go he said go";
        QTest::newRow("initials") << "The U.S. is"
                                  << "the us is";
        QTest::newRow("signs for words") << "Salt & pepper, 5%"
                                         << "salt and pepper five percent";
        QTest::newRow("a digit") << "4 of clubs"
                                 << "four of clubs";
        QTest::newRow("two digits") << "33"
                                    << "thirty three";
        QTest::newRow("a number with a hyphen") << "thirty-three"
                                                << "thirty three";
        QTest::newRow("zero and tens") << "0 10 20"
                                       << "zero ten twenty";
        QTest::newRow("hundreds") << "100 692"
                                  << "one hundred six hundred ninety two";
        QTest::newRow("a list of numbers") << "4, 6, 92."
                                           << "four six ninety two";
        QTest::newRow("a list without blanks") << "4,6"
                                               << "four six";
        QTest::newRow("a year") << "in 1811"
                                << "in eighteen eleven";
        QTest::newRow("no year") << "2000 1905"
                                 << "two thousand one thousand nine hundred five";
        QTest::newRow("a row of digits") << "29340"
                                         << "two nine three four zero";
        QTest::newRow("a leading zero") << "007"
                                        << "zero zero seven";
        QTest::newRow("thousands") << "29,340 and 1,000,000"
                                   << "twenty nine thousand three hundred forty and one million";
        QTest::newRow("a fraction") << "2.50"
                                    << "two point five zero";
        QTest::newRow("at the end of a sentence") << "It was 2."
                                                  << "it was two";
        QTest::newRow("ordinals") << "1st 2nd 3rd 12th 20th 21st"
                                  << "first second third twelfth twentieth twenty first";
        QTest::newRow("a time") << "3:30"
                                << "three thirty";
        QTest::newRow("full-width") << "３３"
                                    << "thirty three";
        QTest::newRow("a number beside letters") << "MP3"
                                                 << "mp3";
    }
    void englishHasOneSpelling()
    {
        QFETCH(QString, text);
        QFETCH(QString, words);
        QCOMPARE(spelledWords(text, english).join(QLatin1Char(' ')), words);
    }

    void theOtherLanguagesHaveTheirUnits_data()
    {
        QTest::addColumn<AppleSystemSpeechLanguage>("language");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("Korean words")
            << korean << "안녕하세요, 여러분!" << QStringList {"안녕하세요", "여러분"};
        QTest::newRow("Japanese characters")
            << japanese << "今日は、晴れ。" << QStringList {"今", "日", "は", "晴", "れ"};
        QTest::newRow("Mandarin characters")
            << mandarin << "今天 很好！" << QStringList {"今", "天", "很", "好"};
    }
    void theOtherLanguagesHaveTheirUnits()
    {
        QFETCH(AppleSystemSpeechLanguage, language);
        QFETCH(QString, text);
        QFETCH(QStringList, words);
        QCOMPARE(spelledWords(text, language), words);
    }

    void detectionIsNoLanguage()
    {
        QVERIFY_EXCEPTION_THROWN(spelledWords("word", automatic), std::invalid_argument);
    }

    void errorsAreCounted_data()
    {
        QTest::addColumn<QString>("spoken");
        QTest::addColumn<QString>("heard");
        QTest::addColumn<int>("errors");
        QTest::newRow("nothing at all") << ""
                                        << "" << 0;
        QTest::newRow("the same") << "a b c"
                                  << "a b c" << 0;
        QTest::newRow("nothing heard") << "a b c"
                                       << "" << 3;
        QTest::newRow("nothing said") << ""
                                      << "a b" << 2;
        QTest::newRow("another word") << "a b c"
                                      << "a x c" << 1;
        QTest::newRow("a word too few") << "a b c"
                                        << "a c" << 1;
        QTest::newRow("a word too many") << "a b c"
                                         << "a b b c" << 1;
        QTest::newRow("moved by one") << "a b c d"
                                      << "b c d e" << 2;
        QTest::newRow("more wrong than said") << "a"
                                              << "x y z" << 3;
    }
    void errorsAreCounted()
    {
        QFETCH(QString, spoken);
        QFETCH(QString, heard);
        QFETCH(int, errors);
        QCOMPARE(wordErrors(spelledWords(spoken, english), spelledWords(heard, english)), errors);
    }

    void errorsHaveTheirPlaces_data()
    {
        QTest::addColumn<QString>("spoken");
        QTest::addColumn<QString>("heard");
        QTest::addColumn<QList<qsizetype>>("errors");
        using Errors = QList<qsizetype>;
        QTest::newRow("none") << "a b"
                              << "a b" << Errors {0, 0};
        QTest::newRow("nothing heard") << "a b"
                                       << "" << Errors {1, 1};
        QTest::newRow("another word") << "a b c"
                                      << "a x c" << Errors {0, 1, 0};
        QTest::newRow("a word too few") << "a b c"
                                        << "a c" << Errors {0, 1, 0};
        QTest::newRow("words too many") << "a b c"
                                        << "a b x y c" << Errors {0, 2, 0};
        QTest::newRow("a word too many at the beginning") << "a b"
                                                          << "x a b" << Errors {1, 0};
        QTest::newRow("a word too many at the end") << "a b"
                                                    << "a b x" << Errors {0, 1};
        QTest::newRow("several") << "a b c d e"
                                 << "x b d e f" << Errors {1, 0, 1, 0, 1};
    }
    void errorsHaveTheirPlaces()
    {
        QFETCH(QString, spoken);
        QFETCH(QString, heard);
        QFETCH(QList<qsizetype>, errors);
        QCOMPARE(errorsOfWords(spelledWords(spoken, english), spelledWords(heard, english)), errors);
    }
};

LUMAPHONE_TEST(WordSpellingTest)

} // namespace wordspellingtest

#include "WordSpellingTest.moc"
