#include "support/speech-scores/CaptionMeasures.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace captionmeasurestest {

using namespace lumaphone::test;

namespace {

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

TraceTime at(double seconds)
{
    return TraceTime(std::chrono::milliseconds(static_cast<int>(seconds * 1000)));
}

/// A line whose texts stand a tenth of a second apart.
CaptionHistory line(const QStringList &texts, bool isFinished, double begin = 0)
{
    CaptionHistory history {QStringLiteral("line"), {}};
    for (qsizetype i = 0; i < texts.size(); ++i) {
        history.changes.push_back(
            {at(begin + 0.1 * double(i)), texts[i], isFinished && i + 1 == texts.size()});
    }
    return history;
}

QString rounded(const std::optional<double> &seconds)
{
    return seconds ? QString::number(*seconds, 'f', 2) : QStringLiteral("-");
}

} // namespace

class CaptionMeasuresTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsTakenBackIsCounted_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("erased");
        QTest::newRow("a growing text") << QStringList {"a", "a b", "a b c"} << 0;
        QTest::newRow("the last word") << QStringList {"a b", "a c"} << 1;
        QTest::newRow("the first of three") << QStringList {"a b c", "x b c"} << 3;
        QTest::newRow("a shorter text") << QStringList {"a b c", "a"} << 2;
        QTest::newRow("taken back and shown again") << QStringList {"a b", "a", "a b"} << 1;
        QTest::newRow("twice") << QStringList {"a b", "a c", "a d"} << 2;
        QTest::newRow("a final text at once") << QStringList {"a b c"} << 0;
    }
    void whatIsTakenBackIsCounted()
    {
        QFETCH(QStringList, texts);
        QFETCH(int, erased);
        const Restlessness sum = restlessness({line(texts, true)}, words);
        QCOMPARE(sum.erased, erased);
        QCOMPARE(sum.final, words(texts.constLast()).size());
    }

    void linesThatWereGivenUpCountAsTakenBack()
    {
        const Restlessness sum
            = restlessness({line({"a", "a b"}, true), line({"only", "only this"}, false)}, words);
        QCOMPARE(sum.opened, 2);
        QCOMPARE(sum.finished, 1);
        QCOMPARE(sum.givenUp(), 1);
        QCOMPARE(sum.erased, 2);
        QCOMPARE(sum.final, 2);
        QCOMPARE(sum.erasure(), 1.0);
        QCOMPARE(sum.openedPerFinished(), 2.0);
    }

    void nothingIsCalm() { QCOMPARE(restlessness({}, words).erasure(), 0.0); }

    void delaysAreThoseOfTheStretchTheyBelongTo()
    {
        const auto delays = captionDelays({line({"he", "he was"}, true, 1.7), line({"and"}, true, 2.9),
                                              line({"she", "she was"}, true, 6.0)},
            {{at(1), at(2.5)}, {at(5), at(6.5)}});
        QCOMPARE(delays.size(), std::size_t(2));
        QCOMPARE(rounded(delays[0].first), "0.70");
        QCOMPARE(rounded(delays[0].final), "0.40"); // of its last line
        QCOMPARE(rounded(delays[1].first), "1.00");
        QCOMPARE(rounded(delays[1].final), "-0.40"); // before its end
    }

    void soonAfterOtherSpeechThereIsNoDelay_data()
    {
        QTest::addColumn<double>("pause");
        QTest::addColumn<bool>("isTold");
        QTest::newRow("0.2 s") << 0.2 << false;
        QTest::newRow("1.49 s") << 1.49 << false;
        QTest::newRow("1.5 s") << 1.5 << true;
    }
    void soonAfterOtherSpeechThereIsNoDelay()
    {
        QFETCH(double, pause);
        QFETCH(bool, isTold);
        const double second = 2 + pause;
        const auto delays = captionDelays({line({"he"}, true, 2.1), line({"she"}, true, second + 0.5)},
            {{at(1), at(2)}, {at(second), at(second + 1)}});
        QCOMPARE(delays[0].final.has_value(), isTold);
        QCOMPARE(delays[1].first.has_value(), isTold);
        QVERIFY(delays[0].first && delays[1].final);
        QVERIFY(delays[0].hasText && delays[1].hasText);
    }

    void speechThatWasMissedHasNoText()
    {
        const auto delays
            = captionDelays({line({"she"}, true, 6)}, {{at(1), at(2)}, {at(5), at(7)}, {at(10), at(11)}});
        QVERIFY(!delays[0].hasText && !delays[0].first && !delays[0].final);
        QVERIFY(delays[1].hasText);
        QVERIFY(!delays[2].hasText);
    }

    void aTextThatIsNotFinalInTimeLeavesBothOpen()
    {
        const auto delays = captionDelays({line({"he", "he was", "he was there"}, true, 4.8)},
            {{at(4), at(4.5)}, {at(4.95), at(5.5)}, {at(8), at(9)}});
        QVERIFY(delays[0].first);
        QVERIFY(!delays[0].final);
        QVERIFY(delays[1].hasText && !delays[1].first);
        QCOMPARE(rounded(delays[1].final), "-0.50");
        const auto late
            = captionDelays({line({"he"}, false, 1.5), line({"he was"}, true, 4.2), line({"she"}, true, 4.9)},
                {{at(1), at(2)}, {at(4), at(4.8)}});
        QVERIFY(late[0].first && !late[0].final);
        QVERIFY(!late[1].first && late[1].final);
    }

    void aLineThatGoesOnAfterAPauseTellsTheDelaysOfBoth()
    {
        CaptionHistory both = line({"he"}, true, 2.4);
        both.changes.push_back({at(5.6), "he was", false});
        both.changes.push_back({at(6.9), "he was", true});
        const auto delays = captionDelays({both}, {{at(1), at(2)}, {at(5), at(6)}});
        QCOMPARE(rounded(delays[0].final), "0.40");
        QCOMPARE(rounded(delays[1].first), "0.60");
        QCOMPARE(rounded(delays[1].final), "0.90");
    }
};

LUMAPHONE_TEST(CaptionMeasuresTest)

} // namespace captionmeasurestest

#include "CaptionMeasuresTest.moc"
