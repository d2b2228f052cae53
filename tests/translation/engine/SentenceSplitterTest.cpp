#include "translation/engine/SentenceSplitter.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace sentencesplittertest {

using namespace lumaphone::engine;

class SentenceSplitterTest : public QObject
{
    Q_OBJECT

private slots:
    void textsAreCutAtSentenceEnds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("sentences");
        const auto row = [](const char *title, const QString &text, const QStringList &sentences) {
            QTest::newRow(title) << text << sentences;
        };
        row("nothing", QString(), {});
        row("blanks", QStringLiteral("  \n\t "), {});
        row("one without an end", QStringLiteral("hello there"), {QStringLiteral("hello there")});
        row("two in English", QStringLiteral("It rains. We stay!"),
            {QStringLiteral("It rains."), QStringLiteral("We stay!")});
        row("Japanese without spaces", QStringLiteral("雨です。行きません！なぜ？"),
            {QStringLiteral("雨です。"), QStringLiteral("行きません！"), QStringLiteral("なぜ？")});
        row("a closing bracket belongs to the sentence",
            QStringLiteral("「行きます。」と言いました。終わり。"),
            {QStringLiteral("「行きます。」"), QStringLiteral("と言いました。"), QStringLiteral("終わり。")});
        row("Korean", QStringLiteral("비가 옵니다. 집에 있습니다."),
            {QStringLiteral("비가 옵니다."), QStringLiteral("집에 있습니다.")});
        row("decimals", QStringLiteral("It costs 3.14 dollars. Or 1,000.50 yen."),
            {QStringLiteral("It costs 3.14 dollars."), QStringLiteral("Or 1,000.50 yen.")});
        row("titles", QStringLiteral("Dr. Smith met Mrs. Jones. They spoke."),
            {QStringLiteral("Dr. Smith met Mrs. Jones."), QStringLiteral("They spoke.")});
        row("initials", QStringLiteral("J. R. Smith left."), {QStringLiteral("J. R. Smith left.")});
        row("for example", QStringLiteral("Take fruit, e.g. Apples."),
            {QStringLiteral("Take fruit, e.g. Apples.")});
        row("a number", QStringLiteral("See No. 5 and vol. 2."), {QStringLiteral("See No. 5 and vol. 2.")});
        row("an answer", QStringLiteral("No. Never."), {QStringLiteral("No."), QStringLiteral("Never.")});
        row("an address", QStringLiteral("See https://example.org/a.b?c=d. Then go."),
            {QStringLiteral("See https://example.org/a.b?c=d."), QStringLiteral("Then go.")});
        row("three dots within", QStringLiteral("Well... maybe."), {QStringLiteral("Well... maybe.")});
        row("marks without a space", QStringLiteral("Really?!Yes.No"), {QStringLiteral("Really?!Yes.No")});
        row("a line break", QStringLiteral("first line\nsecond line"),
            {QStringLiteral("first line"), QStringLiteral("second line")});
        row("a placeholder", QStringLiteral("Ask LUMAPHON_TERM_0. LUMAPHON_TERM_1 knows."),
            {QStringLiteral("Ask LUMAPHON_TERM_0."), QStringLiteral("LUMAPHON_TERM_1 knows.")});
        row("I at the end", QStringLiteral("So do I. We agree."),
            {QStringLiteral("So do I."), QStringLiteral("We agree.")});
    }

    void textsAreCutAtSentenceEnds()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, sentences);
        QStringList found;
        for (const Sentence &sentence : splitIntoSentences(text))
            found.append(sentence.text);
        QCOMPARE(found, sentences);
    }

    void lineBreaksAreRemembered()
    {
        const auto sentences = splitIntoSentences(QStringLiteral("a\r\n\nb. C\n"));
        const QList<Sentence> expected
            = {{QStringLiteral("a"), true}, {QStringLiteral("b."), false}, {QStringLiteral("C"), false}};
        QVERIFY(sentences == expected);
    }

    void piecesAreJoinedAsTheirScriptsAsk_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<QString>("whole");
        QTest::newRow("English") << "It rains."
                                 << "We stay."
                                 << "It rains. We stay.";
        QTest::newRow("Chinese") << QStringLiteral("下雨了。") << QStringLiteral("我們走。")
                                 << QStringLiteral("下雨了。我們走。");
        QTest::newRow("Chinese and Latin")
            << QStringLiteral("下雨了。") << "OK." << QStringLiteral("下雨了。OK.");
        QTest::newRow("Korean") << QStringLiteral("비가 옵니다.") << QStringLiteral("갑니다.")
                                << QStringLiteral("비가 옵니다. 갑니다.");
        QTest::newRow("nothing before") << ""
                                        << "a"
                                        << "a";
        QTest::newRow("nothing after") << "a"
                                       << ""
                                       << "a";
        QTest::newRow("a rare ideograph") << QStringLiteral("𠮷") << "a" << QStringLiteral("𠮷a");
    }

    void piecesAreJoinedAsTheirScriptsAsk()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(QString, whole);
        QCOMPARE(joined(left, right), whole);
    }
};

LUMAPHONE_TEST(SentenceSplitterTest)

} // namespace sentencesplittertest

#include "SentenceSplitterTest.moc"
