#include "storage/TranscriptSubtitles.h"

#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace transcriptsubtitlestest {

using namespace lumaphone;

namespace {

const QDateTime begin = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());

/// A session whose lines were opened at these seconds, named a, b, c and so on.
TranscriptDocument openedAt(const QList<double> &seconds)
{
    TranscriptDocument document;
    document.metadata.startedAt = begin;
    for (const double second : seconds) {
        SavedTranscriptLine line;
        line.sourceText = QString(QChar(static_cast<char16_t>(u'a' + document.lines.size())));
        line.translatedText = line.sourceText.toUpper();
        line.createdAt = begin.addMSecs(qRound64(second * 1000));
        document.lines.append(line);
    }
    return document;
}

/// The times of the cues, without anything else.
QStringList times(const TranscriptDocument &document)
{
    QStringList result;
    for (const QString &row : srtText(document, TranscriptTextChoice::source).split(QLatin1Char('\n'))) {
        if (row.contains(QStringLiteral(" --> "))) {
            result.append(row);
        }
    }
    return result;
}

} // namespace

class TranscriptSubtitlesTest : public QObject
{
    Q_OBJECT

private slots:
    void subRip();
    void webVtt();
    void bilingualShowsTheSourceAbove();
    void linesWithoutTextAreLeftOutAndNotCounted();
    void aLineLastsUntilTheNextButSevenSecondsAtMost_data();
    void aLineLastsUntilTheNextButSevenSecondsAtMost();
    void withoutAStartTheFirstLineIsTheStart();
    void textsCannotBreakTheFile();
    void anEmptyDocument();
};

void TranscriptSubtitlesTest::subRip()
{
    QCOMPARE(srtText(openedAt({1, 4}), TranscriptTextChoice::source),
        QStringLiteral("1\n00:00:01,000 --> 00:00:04,000\na\n\n2\n00:00:04,000 --> 00:00:11,000\nb\n\n"));
}

void TranscriptSubtitlesTest::webVtt()
{
    QCOMPARE(vttText(openedAt({1, 4}), TranscriptTextChoice::translation),
        QStringLiteral("WEBVTT\n\n00:00:01.000 --> 00:00:04.000\nA\n\n00:00:04.000 --> 00:00:11.000\nB\n\n"));
}

void TranscriptSubtitlesTest::bilingualShowsTheSourceAbove()
{
    TranscriptDocument document = openedAt({0});
    document.lines.first().translatedText = QStringLiteral("甲\n乙");
    QCOMPARE(srtText(document, TranscriptTextChoice::bilingual),
        QStringLiteral("1\n00:00:00,000 --> 00:00:07,000\na\n甲\n乙\n\n"));
    document.lines.first().translatedText.clear();
    QCOMPARE(srtText(document, TranscriptTextChoice::bilingual),
        QStringLiteral("1\n00:00:00,000 --> 00:00:07,000\na\n\n"));
}

void TranscriptSubtitlesTest::linesWithoutTextAreLeftOutAndNotCounted()
{
    TranscriptDocument document = openedAt({0, 2, 4});
    document.lines[1].translatedText.clear();
    QCOMPARE(srtText(document, TranscriptTextChoice::translation),
        QStringLiteral("1\n00:00:00,000 --> 00:00:02,000\nA\n\n2\n00:00:04,000 --> 00:00:11,000\nC\n\n"));
}

void TranscriptSubtitlesTest::aLineLastsUntilTheNextButSevenSecondsAtMost_data()
{
    QTest::addColumn<QList<double>>("openedAtSeconds");
    QTest::addColumn<double>("endedAtSecond");
    QTest::addColumn<QStringList>("wanted");
    const double none = -1;
    QTest::newRow("a long pause") << QList<double> {0, 60} << none
                                  << QStringList {QStringLiteral("00:00:00,000 --> 00:00:07,000"),
                                         QStringLiteral("00:01:00,000 --> 00:01:07,000")};
    QTest::newRow("two in the same second share it")
        << QList<double> {5, 5, 6} << none
        << QStringList {QStringLiteral("00:00:05,000 --> 00:00:05,500"),
               QStringLiteral("00:00:05,500 --> 00:00:06,000"),
               QStringLiteral("00:00:06,000 --> 00:00:13,000")};
    QTest::newRow("two last ones in the same second")
        << QList<double> {5, 5} << none
        << QStringList {QStringLiteral("00:00:05,000 --> 00:00:12,000"),
               QStringLiteral("00:00:12,000 --> 00:00:19,000")};
    QTest::newRow("the clock was set back") << QList<double> {5, 2, 9} << none
                                            << QStringList {QStringLiteral("00:00:05,000 --> 00:00:07,000"),
                                                   QStringLiteral("00:00:07,000 --> 00:00:09,000"),
                                                   QStringLiteral("00:00:09,000 --> 00:00:16,000")};
    QTest::newRow("before the session's start")
        << QList<double> {-3, 4} << none
        << QStringList {QStringLiteral("00:00:00,000 --> 00:00:04,000"),
               QStringLiteral("00:00:04,000 --> 00:00:11,000")};
    QTest::newRow("the session ends")
        << QList<double> {5} << 8.0 << QStringList {QStringLiteral("00:00:05,000 --> 00:00:08,000")};
    QTest::newRow("the session ended long after")
        << QList<double> {5} << 100.0 << QStringList {QStringLiteral("00:00:05,000 --> 00:00:12,000")};
    QTest::newRow("the session ended with the line")
        << QList<double> {5} << 5.0 << QStringList {QStringLiteral("00:00:05,000 --> 00:00:12,000")};
    QTest::newRow("milliseconds and hours") << QList<double> {
        360000.25} << none << QStringList {QStringLiteral("100:00:00,250 --> 100:00:07,250")};
}

void TranscriptSubtitlesTest::aLineLastsUntilTheNextButSevenSecondsAtMost()
{
    QFETCH(const QList<double>, openedAtSeconds);
    QFETCH(const double, endedAtSecond);
    QFETCH(const QStringList, wanted);
    TranscriptDocument document = openedAt(openedAtSeconds);
    if (endedAtSecond >= 0) {
        document.metadata.endedAt = begin.addMSecs(qRound64(endedAtSecond * 1000));
    }
    QCOMPARE(times(document), wanted);
}

void TranscriptSubtitlesTest::withoutAStartTheFirstLineIsTheStart()
{
    TranscriptDocument document = openedAt({30, 33});
    document.metadata.startedAt.reset();
    QCOMPARE(times(document).first(), QStringLiteral("00:00:00,000 --> 00:00:03,000"));
}

void TranscriptSubtitlesTest::textsCannotBreakTheFile()
{
    TranscriptDocument document = openedAt({0});
    document.lines.first().sourceText
        = QStringLiteral("one\r\n\n\n  two \u2028 --> <b>&\"三\"").append(QChar(0)).append(QChar(7));
    QCOMPARE(srtText(document, TranscriptTextChoice::source),
        QStringLiteral("1\n00:00:00,000 --> 00:00:07,000\none\ntwo\n→ <b>&\"三\"\n\n"));
    QCOMPARE(vttText(document, TranscriptTextChoice::source),
        QStringLiteral("WEBVTT\n\n00:00:00.000 --> 00:00:07.000\none\ntwo\n--&gt; &lt;b&gt;&amp;\"三\"\n\n"));
}

void TranscriptSubtitlesTest::anEmptyDocument()
{
    QCOMPARE(srtText({}, TranscriptTextChoice::bilingual), QString());
    QCOMPARE(vttText({}, TranscriptTextChoice::bilingual), QStringLiteral("WEBVTT\n\n"));
}

LUMAPHONE_TEST(TranscriptSubtitlesTest)

} // namespace transcriptsubtitlestest

#include "TranscriptSubtitlesTest.moc"
