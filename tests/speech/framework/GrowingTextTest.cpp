#include "speech/framework/GrowingText.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace growingtexttest {

using namespace lumaphone;

namespace {

QStringList words(const QString &text)
{
    QStringList words;
    for (const TextUnit &unit : unitsOf(text)) {
        words.append(unit.word);
    }
    return words;
}

/// Whether the session takes `next` for the same utterance whatever its length: one begins with the other.
bool goesOn(const QString &before, const QString &next)
{
    const QString a = before.simplified().toLower();
    const QString b = next.simplified().toLower();
    return a.startsWith(b) || b.startsWith(a);
}

} // namespace

class GrowingTextTest : public QObject
{
    Q_OBJECT

private slots:
    void aTextHasWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty") << "" << QStringList {};
        QTest::newRow("punctuation") << " … ,." << QStringList {};
        QTest::newRow("English") << "And Mr. John, don't you?"
                                 << QStringList {"And", "Mr", "John", "don't", "you"};
        QTest::newRow("hyphens") << "ill-disposed -" << QStringList {"ill", "disposed"};
        QTest::newRow("quotes") << "'Yes', he said" << QStringList {"Yes", "he", "said"};
        QTest::newRow("digits") << "at 10:45 or 3.5" << QStringList {"at", "10", "45", "or", "3", "5"};
        QTest::newRow("Han") << "今天，很好。" << QStringList {"今", "天", "很", "好"};
        QTest::newRow("kana and Latin") << "すごいAIです" << QStringList {"す", "ご", "い", "AI", "で", "す"};
        QTest::newRow("Hangul") << "오늘은 날씨가" << QStringList {"오늘은", "날씨가"};
    }
    void aTextHasWords()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        QCOMPARE(words(text), expected);
    }

    void onlyWhatTwoHypothesesAgreeOnIsShown_data()
    {
        QTest::addColumn<QStringList>("hypotheses");
        QTest::addColumn<QStringList>("expected"); // one after another, "|" between two of one hypothesis
        QTest::newRow("one") << QStringList {"good"} << QStringList {""};
        QTest::newRow("growing") << QStringList {"good", "good morning", "good morning everyone"}
                                 << QStringList {"", "good", "good morning"};
        QTest::newRow("the same again") << QStringList {"good morning", "good morning", "good morning"}
                                        << QStringList {"", "good morning", ""};
        QTest::newRow("an unfinished word")
            << QStringList {"good mor", "good morning"} << QStringList {"", "good"};
        QTest::newRow("nothing in common")
            << QStringList {"現天", "she天", "今天天气"} << QStringList {"", "", ""};
        QTest::newRow("Han") << QStringList {"今天天", "今天天气很", "今天天气很好"}
                             << QStringList {"", "今天天", "今天天气很"};
        QTest::newRow("one character of Han is too little")
            << QStringList {"這", "這", "한국어를", "한국어를 공"} << QStringList {"", "", "", "한국어를"};
        QTest::newRow("Hangul") << QStringList {"오늘은 날", "오늘은 날씨가", "오늘은 날씨가 좋습"}
                                << QStringList {"", "오늘은", "오늘은 날씨가"};
        QTest::newRow("a shorter agreement does not take back") << QStringList {
            "a b c d", "a b c d", "a b x", "a b c d e"} << QStringList {"", "a b c d", "", ""};
        QTest::newRow("a contradiction goes back to what still holds") << QStringList {
            "a b c", "a b c", "a x y z", "a x y z"} << QStringList {"", "a b c", "", "a|a x y z"};
        QTest::newRow("another first word waits for the end")
            << QStringList {"a b", "a b", "x y", "x y", "x y"} << QStringList {"", "a b", "", "", ""};
        QTest::newRow("decomposed and composed")
            << QStringList {"caf\u00e9 au", "cafe\u0301 au lait"} << QStringList {"", "caf\u00e9 au"};
        QTest::newRow("empty hypotheses") << QStringList {"", "", "a"} << QStringList {"", "", ""};
        QTest::newRow("a full stop that comes and goes") << QStringList {
            "He was.", "He was not.", "He was, not an."} << QStringList {"", "He was", "He was, not"};
        QTest::newRow("what is shown keeps its commas and capitals")
            << QStringList {"he was, not", "he was, not", "He was not ill", "He was not ill"}
            << QStringList {"", "he was, not", "", "he was, not ill"};
    }
    void onlyWhatTwoHypothesesAgreeOnIsShown()
    {
        QFETCH(QStringList, hypotheses);
        QFETCH(QStringList, expected);
        GrowingText growing({});
        QStringList shown;
        for (const QString &hypothesis : hypotheses) {
            shown.append(growing.heard(hypothesis).join(QLatin1Char('|')));
        }
        QCOMPARE(shown, expected);
    }

    void theFirstWordMayNeedMoreAgreement()
    {
        GrowingText growing({.onFirstWord = 3, .onOtherWords = 2});
        QCOMPARE(growing.heard("he was"), QStringList {});
        QCOMPARE(growing.heard("he was"), QStringList {});
        QCOMPARE(growing.heard("he was not"), QStringList {"he was"});
        QCOMPARE(growing.heard("he was not ill"), QStringList {"he was not"});
    }

    void whatIsNotToBeShownYetCountsAllTheSame()
    {
        GrowingText growing({});
        growing.listen("he was");
        QCOMPARE(growing.heard("he was not"), QStringList {"he was"});
    }

    void oneHypothesisMayBeEnough()
    {
        GrowingText growing({1, 1});
        QCOMPARE(growing.heard("he"), QStringList {"he"});
        QCOMPARE(growing.heard("he was"), QStringList {"he was"});
        QCOMPARE(growing.heard("he is"), (QStringList {"he", "he is"}));
    }

    void theFinalTextIsReachedFromWhatIsShown_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("finalText");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("nothing shown") << ""
                                       << "He was." << QStringList {"He was."};
        QTest::newRow("nothing at all") << ""
                                        << "" << QStringList {};
        QTest::newRow("no final text") << "he was"
                                       << "" << QStringList {"he was"};
        QTest::newRow("it goes on") << "he was"
                                    << "He was not ill." << QStringList {"He was not ill."};
        QTest::newRow("it ends earlier") << "he was not"
                                         << "He was" << QStringList {"He was"};
        QTest::newRow("another word")
            << "he was not until"
            << "He was not ill-disposed." << QStringList {"He was not", "He was not ill-disposed."};
        QTest::newRow("a comma less") << "he was, not"
                                      << "He was not." << QStringList {"He was", "He was not."};
        QTest::newRow("a part of the first word") << "unless"
                                                  << "Until then." << QStringList {"Un", "Until then."};
        QTest::newRow("nothing in common") << "only"
                                           << "Leisure." << QStringList {"Leisure."};
        QTest::newRow("Han") << "今天天汽"
                             << "今天天氣好。" << QStringList {"今天天", "今天天氣好。"};
    }
    void theFinalTextIsReachedFromWhatIsShown()
    {
        QFETCH(QString, shown);
        QFETCH(QString, finalText);
        QFETCH(QStringList, expected);
        GrowingText growing({1, 1});
        growing.heard(shown);
        QCOMPARE(growing.concluded(finalText), expected);
    }

    void anotherUtteranceStartsAfresh()
    {
        GrowingText growing({});
        QCOMPARE(growing.heard("a b"), QStringList {});
        QCOMPARE(growing.concluded("a b"), QStringList {"a b"});
        QCOMPARE(growing.heard("a b"), QStringList {});
        growing.forget();
        QCOMPARE(growing.heard("a b"), QStringList {});
        QCOMPARE(growing.heard("a b"), QStringList {"a b"});
    }

    /// Whatever comes: each text goes on from the one before, but for a final text with another beginning.
    void everyTextGoesOnFromTheOneBefore()
    {
        std::mt19937 random(20);
        const QStringList vocabulary {
            "He", "he", "was,", "was", "not", "ill", "Ill.", "an", "a", "今天", "很", "don't"};
        std::uniform_int_distribution<qsizetype> word(0, vocabulary.size() - 1);
        int texts = 0;
        for (int round = 0; round < 2000; ++round) {
            GrowingText growing({1 + round % 3, 1 + round / 3 % 3});
            QString last;
            QStringList sentence;
            for (int step = 0; step < 12; ++step) {
                if (!sentence.isEmpty() && random() % 3 == 0) {
                    sentence[static_cast<qsizetype>(random()) % sentence.size()] = vocabulary[word(random)];
                }
                sentence.append(vocabulary[word(random)]);
                for (const QString &text : growing.heard(sentence.join(' '))) {
                    QVERIFY2(last.isEmpty() || goesOn(last, text), qPrintable(last + " -> " + text));
                    QVERIFY(!text.isEmpty());
                    last = text;
                    ++texts;
                }
            }
            const QString finalText = sentence.join(' ');
            const QStringList end = growing.concluded(finalText);
            const bool isOther = !last.isEmpty() && last.at(0).toLower() != finalText.at(0).toLower();
            QCOMPARE(end.last() == finalText, !isOther);
            for (const QString &text : end) {
                QVERIFY2(last.isEmpty() || goesOn(last, text), qPrintable(last + " -> " + text));
                last = text;
            }
        }
        QVERIFY(texts > 5000);
    }
};

LUMAPHONE_TEST(GrowingTextTest)

} // namespace growingtexttest

#include "GrowingTextTest.moc"
