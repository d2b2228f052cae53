#include "app/floating/ReadingPage.h"

#include "app/floating/ReadingPace.h"
#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace readingpagetest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

enum Finished { unfinished, finished };

/// A page, and somebody who looks at it at the right moments.
struct Reader
{
    ReadingPage page;
    ReadingPage::Time now {0};

    explicit Reader(int lines) { page.setSize(lines); }

    void say(uint id, const QString &source, Finished state, const QString &translation = {})
    {
        page.update({countedUuid(id), source, "english", translation, state == finished}, now);
        page.advance(now);
    }
    void pass(std::chrono::milliseconds time)
    {
        now += time;
        page.advance(now);
    }
    /// The shown lines, each as "source" or "source=translation".
    QStringList shown() const
    {
        QStringList lines;
        for (const ReadingPage::Row &row : page.rows()) {
            lines.append(row.line.translation.isEmpty() ? row.line.source
                                                        : row.line.source + "=" + row.line.translation);
        }
        return lines;
    }
};

} // namespace

class ReadingPageTest : public QObject
{
    Q_OBJECT

private slots:
    void theNewestLinesAreShown()
    {
        Reader reader(3);
        for (uint id = 1; id <= 5; ++id) {
            reader.say(id, QString::number(id), finished, "譯");
            reader.pass(1s);
        }
        QCOMPARE(reader.shown(), QStringList({"3=譯", "4=譯", "5=譯"}));
        QVERIFY(reader.page.hasOlder());
        reader.page.setSize(2);
        QCOMPARE(reader.shown(), QStringList({"4=譯", "5=譯"}));
    }

    void aLineThatGrowsKeepsItsRow()
    {
        Reader reader(2);
        reader.say(1, "a", unfinished);
        const std::size_t key = reader.page.rows().front().key;
        reader.say(1, "a b", unfinished, "甲");
        // The last translation stays until there is another one.
        reader.say(1, "a b c", unfinished);
        QCOMPARE(reader.shown(), QStringList({"a b c=甲"}));
        reader.say(1, "a b c", finished, "甲乙丙");
        QCOMPARE(reader.shown(), QStringList({"a b c=甲乙丙"}));
        QCOMPARE(reader.page.rows().front().key, key);
    }

    void finishedTextIsNotRewrittenWhileItStands()
    {
        Reader reader(2);
        reader.say(1, "one", finished, "一");
        reader.say(1, "one more", unfinished);
        QCOMPARE(reader.shown(), QStringList({"one=一", "one more"}));
        reader.say(1, "one more", finished, "再一個");
        QCOMPARE(reader.shown(), QStringList({"one=一", "one more=再一個"}));
        // Another translation waits until nobody reads it.
        reader.say(1, "one more", finished, "又一個");
        QCOMPARE(reader.shown(), QStringList({"one=一", "one more=再一個"}));
        reader.pass(10s);
        reader.say(2, "two", finished, "二");
        reader.pass(10s);
        reader.say(3, "three", finished, "三");
        QCOMPARE(reader.shown(), QStringList({"two=二", "three=三"}));
        // Whoever scrolls back sees the corrected line once.
        reader.page.scroll(-1, reader.now);
        QCOMPARE(reader.shown(), QStringList({"one more=又一個", "two=二"}));
        reader.page.scroll(-1, reader.now);
        QCOMPARE(reader.shown(), QStringList({"one more=又一個", "two=二"}));
    }

    void aFinishedLineReceivesItsTranslation()
    {
        Reader reader(2);
        reader.say(1, "one", unfinished, "一？");
        reader.say(1, "one two", finished);
        QCOMPARE(reader.shown(), QStringList({"one two=一？"}));
        reader.say(1, "one two", finished, "一、二");
        QCOMPARE(reader.shown(), QStringList({"one two=一、二"}));
        reader.say(1, "one two", finished, "1, 2");
        QCOMPARE(reader.shown(), QStringList({"one two=一、二"}));
    }

    void aFinishedLineStaysFinished()
    {
        Reader reader(1);
        reader.say(1, "one", finished, "一");
        reader.say(1, "one", unfinished, "一");
        reader.say(1, "one and", unfinished);
        QCOMPARE(reader.shown(), QStringList({"one=一"}));
    }

    void aFinishedLineStandsLongEnoughToBeRead()
    {
        Reader reader(1);
        const QString eighteen = QString("字").repeated(18);
        reader.say(1, "one", finished, eighteen);
        reader.pass(500ms);
        reader.say(2, "two", unfinished, "二");
        reader.pass(1499ms);
        QCOMPARE(reader.shown(), QStringList({"one=" + eighteen}));
        reader.pass(1ms);
        QCOMPARE(reader.shown(), QStringList({"two=二"}));
    }

    void aPageSaysWhenTheNextLineComes()
    {
        Reader reader(1);
        reader.say(1, "one", finished, "一");
        reader.page.update({countedUuid(2), "two", "english", "二", true}, reader.now);
        QCOMPARE(reader.page.advance(reader.now), std::optional<ReadingPage::Time>(1s));
        QCOMPARE(reader.page.advance(1s), std::optional<ReadingPage::Time>());
    }

    void aLineWithoutItsTranslationIsWaitedFor()
    {
        Reader reader(1);
        reader.say(1, "one", finished);
        reader.pass(1s);
        reader.say(2, "two", finished, "二");
        reader.pass(2500ms);
        reader.say(1, "one", finished, "一");
        QCOMPARE(reader.shown(), QStringList({"one=一"}));
        // It can be read from now on.
        reader.pass(999ms);
        QCOMPARE(reader.shown(), QStringList({"one=一"}));
        reader.pass(1ms);
        QCOMPARE(reader.shown(), QStringList({"two=二"}));
    }

    void noLineWaitsTooLong()
    {
        Reader reader(1);
        const QString endless = QString("字").repeated(200);
        reader.say(1, "one", finished, endless);
        for (uint id = 2; id < 30; ++id) {
            reader.pass(1s);
            reader.say(id, QString::number(id), unfinished, endless);
            const int newestShown = reader.shown().front().section('=', 0, 0).toInt();
            QVERIFY2(id < 7 || newestShown >= int(id) - 4, qPrintable(reader.shown().front()));
        }
    }

    void aHeldPageStaysAsItIs()
    {
        Reader reader(2);
        reader.say(1, "one", finished, "一");
        reader.say(2, "two", unfinished, "二");
        reader.page.hold();
        reader.say(2, "two and", unfinished);
        reader.say(2, "two and more", finished, "二三");
        reader.say(3, "three", finished, "三");
        reader.say(4, "four", unfinished);
        reader.pass(1min);
        QCOMPARE(reader.shown(), QStringList({"one=一", "two=二"}));
        QVERIFY(reader.page.isHeld());
        QCOMPARE(reader.page.waiting(), 2);
        reader.page.follow(reader.now);
        QCOMPARE(reader.shown(), QStringList({"three=三", "four"}));
        QCOMPARE(reader.page.waiting(), 0);
    }

    void theWheelGoesBackAndForward()
    {
        Reader reader(2);
        for (uint id = 1; id <= 5; ++id) {
            reader.say(id, QString::number(id), finished, "譯");
            reader.pass(10s);
        }
        reader.page.scroll(1, reader.now);
        QVERIFY(!reader.page.isHeld());
        reader.page.scroll(-1, reader.now);
        QCOMPARE(reader.shown(), QStringList({"3=譯", "4=譯"}));
        QCOMPARE(reader.page.waiting(), 1);
        reader.say(6, "6", finished, "譯");
        reader.page.scroll(-9, reader.now);
        QCOMPARE(reader.shown(), QStringList({"1=譯", "2=譯"}));
        QCOMPARE(reader.page.waiting(), 4);
        QVERIFY(!reader.page.hasOlder());
        reader.page.scroll(2, reader.now);
        QCOMPARE(reader.shown(), QStringList({"3=譯", "4=譯"}));
        reader.page.scroll(2, reader.now);
        QVERIFY(!reader.page.isHeld());
        QCOMPARE(reader.shown(), QStringList({"5=譯", "6=譯"}));
    }

    void aPageThatIsNotFullCannotBeScrolled()
    {
        Reader reader(3);
        reader.say(1, "one", finished, "一");
        reader.page.scroll(-1, reader.now);
        QVERIFY(!reader.page.isHeld());
    }

    void anotherSessionBeginsAnew()
    {
        Reader reader(2);
        reader.say(1, "one", finished, "一");
        reader.page.hold();
        reader.page.reset({{countedUuid(7), "seven", "english", "七", true}}, reader.now);
        QVERIFY(!reader.page.isHeld());
        QCOMPARE(reader.shown(), QStringList({"seven=七"}));
        reader.page.reset({}, reader.now);
        QCOMPARE(reader.shown(), QStringList());
    }

    void aLongTextIsReadLonger_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("milliseconds");
        QTest::newRow("nothing") << "" << 1000;
        QTest::newRow("a word") << "好" << 1000;
        QTest::newRow("Chinese") << QString("字").repeated(18) << 2000;
        QTest::newRow("marks are not read") << QString("字，").repeated(18) + "……" << 2000;
        QTest::newRow("kana and hangul") << QString("かカ글").repeated(6) << 2000;
        QTest::newRow("letters") << QString("x").repeated(36) << 2000;
        QTest::newRow("letters and blanks") << QString("word ").repeated(9) << 2500;
        QTest::newRow("a rare character is one") << QString("𠮷").repeated(18) << 2000;
        QTest::newRow("endless") << QString("字").repeated(900) << 7000;
    }
    void aLongTextIsReadLonger()
    {
        QFETCH(QString, text);
        QTEST(int(readingpace::readingTime(text).count()), "milliseconds");
    }
};

LUMAPHONE_TEST(ReadingPageTest)

} // namespace readingpagetest

#include "ReadingPageTest.moc"
