#include "app/floating/FloatingCaptionReader.h"

#include "support/LiveSession.h"
#include "support/program/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace floatingcaptionreadertest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

/// Somebody who reads a session in virtual time.
struct Fixture
{
    LiveSession session;
    FloatingCaptionReader reader {session.settings, session.clock};
    QAbstractItemModelTester tester {reader.rows(), QAbstractItemModelTester::FailureReportingMode::QtTest};

    explicit Fixture(int lines)
    {
        session.settings.setCaptionLines(lines);
        session.started();
        reader.observe(*session.controller);
    }
    void say(const char *text, const char *translation)
    {
        session.translator->translations[text] = translation;
        session.final(text);
        session.clock->advance(13s);
    }
    QStringList shown()
    {
        QStringList lines;
        for (const ReadingPage::Row &row : reader.rows()->rows()) {
            lines.append(row.line.source + "=" + row.line.translation);
        }
        return lines;
    }
};

} // namespace

class FloatingCaptionReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void theLinesOfTheSessionAreRead()
    {
        Fixture f(2);
        QVERIFY(f.reader.isOn());
        f.say("いち", "一");
        f.say("に", "二");
        f.say("さん", "三");
        QCOMPARE(f.shown(), QStringList({"に=二", "さん=三"}));
        f.session.controller->clearCaptions();
        QCOMPARE(f.shown(), QStringList());
    }

    void whatTheProgramSaysStandsBelowUntilSomebodySpeaks()
    {
        Fixture f(3);
        f.say("いち", "一");
        f.reader.noteSaid("無法翻譯", "原因");
        QCOMPARE(f.shown(), QStringList({"いち=一", "無法翻譯=原因"}));
        f.reader.noteSpoken();
        QCOMPARE(f.shown(), QStringList({"いち=一"}));
    }

    void withoutReadingLinesThereIsNoMode()
    {
        Fixture f(0);
        QVERIFY(!f.reader.isOn());
        QSignalSpy changes(&f.reader, &FloatingCaptionReader::isOnChanged);
        f.session.settings.setCaptionLines(6);
        QVERIFY(f.reader.isOn());
        QVERIFY(changes.count() > 0);
    }

    void aHeldPageTellsHowManyLinesWait()
    {
        Fixture f(2);
        f.say("いち", "一");
        f.say("に", "二");
        f.reader.toggleHold();
        QVERIFY(f.reader.isHeld());
        f.say("さん", "三");
        QCOMPARE(f.reader.waiting(), 1);
        QCOMPARE(f.shown(), QStringList({"いち=一", "に=二"}));
        f.reader.toggleHold();
        QVERIFY(!f.reader.isHeld());
        QCOMPARE(f.shown(), QStringList({"に=二", "さん=三"}));
    }

    void theWheelCountsWholeNotches()
    {
        Fixture f(1);
        f.say("いち", "一");
        f.say("に", "二");
        f.say("さん", "三");
        f.reader.turnWheel(60);
        QVERIFY(!f.reader.isHeld());
        f.reader.turnWheel(60);
        QCOMPARE(f.shown(), QStringList({"に=二"}));
        f.reader.turnWheel(-240);
        QVERIFY(!f.reader.isHeld());
        QCOMPARE(f.shown(), QStringList({"さん=三"}));
    }

    void aLineComesWhenTheOneBeforeHasBeenRead()
    {
        Fixture f(1);
        f.session.translator->translations["いち"] = QString("字").repeated(27);
        f.session.translator->translations["ぜんぜんちがう"] = "二";
        f.session.final("いち");
        f.session.clock->advance(1s);
        f.session.final("ぜんぜんちがう");
        f.session.clock->advance(1900ms);
        QVERIFY2(f.shown().front().startsWith("いち"), qPrintable(f.shown().front()));
        f.session.clock->advance(200ms);
        QVERIFY2(f.shown().front().startsWith("ぜんぜん"), qPrintable(f.shown().front()));
    }

    void captionsLeaveInSilence()
    {
        Fixture f(0);
        f.session.settings.setCaptionSilence(5);
        f.say("いち", "一");
        QVERIFY(f.reader.isQuiet());
        f.reader.noteSpoken();
        QVERIFY(!f.reader.isQuiet());
        f.session.clock->advance(4999ms);
        QVERIFY(!f.reader.isQuiet());
        f.session.clock->advance(1ms);
        QVERIFY(f.reader.isQuiet());
        f.session.partial("また");
        QVERIFY(!f.reader.isQuiet());
    }

    void captionsStayByDefault()
    {
        Fixture f(0);
        f.say("いち", "一");
        f.session.clock->advance(24h);
        QVERIFY(!f.reader.isQuiet());
    }

    void silenceNeverTakesWhatHasNotBeenRead()
    {
        Fixture f(0);
        f.session.settings.setCaptionSilence(1);
        f.reader.noteSaid("a", QString("字").repeated(45));
        f.session.clock->advance(4999ms);
        QVERIFY(!f.reader.isQuiet());
        f.session.clock->advance(1ms);
        QVERIFY(f.reader.isQuiet());
    }

    void aHeldPageDoesNotLeave()
    {
        Fixture f(2);
        f.session.settings.setCaptionSilence(5);
        f.say("いち", "一");
        f.reader.noteSpoken();
        f.reader.toggleHold();
        f.session.clock->advance(1h);
        QVERIFY(!f.reader.isQuiet());
    }

    void aClosedPanelForgetsWhatWasHeld()
    {
        Fixture f(1);
        f.say("いち", "一");
        f.reader.noteSaid("a", "b");
        f.reader.toggleHold();
        f.reader.leave();
        QVERIFY(!f.reader.isHeld());
        QCOMPARE(f.shown(), QStringList({"いち=一"}));
    }
};

LUMAPHONE_TEST(FloatingCaptionReaderTest)

} // namespace floatingcaptionreadertest

#include "FloatingCaptionReaderTest.moc"
