#include "support/speech-scores/CaptionTrace.h"

#include "base/Json.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace captiontracetest {

using namespace lumaphone;
using namespace lumaphone::test;
using std::chrono::seconds;

namespace {

const TraceTime start {};

// Not raw strings: moc loses count of the braces in them.
QByteArray lineEvent(const QByteArray &id, const QByteArray &text, bool isFinal)
{
    return "{\"event\":\"line\",\"id\":\"" + id + "\",\"sourceText\":\"" + text
        + "\",\"isFinal\":" + (isFinal ? "true}" : "false}");
}

QByteArray statusEvent(const QByteArray &status, bool isFailure)
{
    return "{\"event\":\"status\",\"status\":\"" + status
        + "\",\"isFailure\":" + (isFailure ? "true}" : "false}");
}

} // namespace

class CaptionTraceTest : public QObject
{
    Q_OBJECT

private slots:
    void changesOfALineAreItsHistory()
    {
        CaptionTrace trace;
        trace.add(lineEvent("A", "he", false), start + seconds(1));
        trace.add(lineEvent("B", "she", false), start + seconds(2));
        trace.add(lineEvent("A", "he was", true), start + seconds(3));
        QCOMPARE(trace.lines().size(), std::size_t(2));
        const CaptionHistory &line = trace.lines()[0];
        QCOMPARE(line.changes.size(), std::size_t(2));
        QVERIFY(line.appeared() == start + seconds(1));
        QVERIFY(line.changes[1].at == start + seconds(3));
        QCOMPARE(line.text(), "he was");
        QVERIFY(line.isFinished());
        QVERIFY(!trace.lines()[1].isFinished());
    }

    void finishedLinesOfATimeAreItsText()
    {
        CaptionTrace trace;
        trace.add(lineEvent("A", "one", true), start + seconds(1));
        trace.add(lineEvent("B", "two", false), start + seconds(2));
        trace.add(lineEvent("C", "three", true), start + seconds(3));
        trace.add(lineEvent("B", "two", true), start + seconds(4));
        trace.add(lineEvent("D", "given up", false), start + seconds(5));
        QCOMPARE(trace.finalText(), "one two three");
        QCOMPARE(trace.finalText(start + seconds(2), start + seconds(3)), "two");
        QCOMPARE(trace.finalText(start + seconds(6)), QString());
    }

    void aLineThatWasFinalMayBeGivenUpAfterAll()
    {
        CaptionTrace trace;
        trace.add(lineEvent("A", "one", true), start);
        trace.add(lineEvent("A", "one more", false), start);
        QVERIFY(!trace.lines()[0].isFinished());
        QCOMPARE(trace.finalText(), QString());
    }

    void aStatusHasTheTimeAtWhichItWasToldFirst()
    {
        CaptionTrace trace;
        trace.add(statusEvent("running", false), start + seconds(1));
        trace.add(statusEvent("running", false), start + seconds(2));
        QVERIFY(trace.statusTime("running") == start + seconds(1));
        QVERIFY(!trace.statusTime("stopped"));
        QVERIFY(!trace.failure());
    }

    void theFirstFailureIsKept()
    {
        CaptionTrace trace;
        trace.add(statusEvent("no output", true), start);
        trace.add(statusEvent("nothing else", true), start);
        QCOMPARE(trace.failure().value_or(QString()), "no output");
    }

    void whatTheProgramDoesNotWriteIsAnError_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("no JSON") << QByteArray("listening");
        QTest::newRow("an unknown event") << QByteArray(R"({"event":"applause"})");
        QTest::newRow("a line without a text") << QByteArray(R"({"event":"line","id":"A","isFinal":true})");
    }
    void whatTheProgramDoesNotWriteIsAnError()
    {
        QFETCH(QByteArray, line);
        CaptionTrace trace;
        QVERIFY_EXCEPTION_THROWN(trace.add(line, start), json::DecodingError);
    }
};

LUMAPHONE_TEST(CaptionTraceTest)

} // namespace captiontracetest

#include "CaptionTraceTest.moc"
