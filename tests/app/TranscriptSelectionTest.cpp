#include "app/live/TranscriptSelection.h"

#include "support/program/TestProgram.h"

#include <QStringList>
#include <QTest>

namespace transcriptselectiontest {

using namespace lumaphone;
using Extent = TranscriptSelection::Extent;

namespace {

/// Four lines; the third has no translation.
QString textOf(int row, Extent column)
{
    static const QStringList sources {"abcdef", "ghi", "jkl", "mnopqr"};
    static const QStringList translations {"一二三", "四五六", "", "七八九"};
    return column == Extent::source ? sources[row] : translations[row];
}

TranscriptSelection selected(Extent extent, TranscriptPosition anchor, TranscriptPosition head)
{
    TranscriptSelection selection;
    selection.begin(extent, anchor);
    selection.extend(head);
    return selection;
}

} // namespace

class TranscriptSelectionTest : public QObject
{
    Q_OBJECT

private slots:
    void itsTextIsWhatLiesBetween_data()
    {
        QTest::addColumn<Extent>("extent");
        QTest::addColumn<QList<int>>("places"); // row and offset of anchor and head
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, Extent extent, QList<int> places, const char *text) {
            QTest::newRow(name) << extent << places << QString(text);
        };
        row("within a line", Extent::source, {0, 1, 0, 4}, "bcd");
        row("backwards", Extent::source, {0, 4, 0, 1}, "bcd");
        row("across lines", Extent::source, {0, 4, 3, 2}, "ef\nghi\njkl\nmn");
        row("across lines, upwards", Extent::source, {3, 2, 0, 4}, "ef\nghi\njkl\nmn");
        row("over a line without translation", Extent::translation, {1, 1, 3, 1}, "五六\n七");
        row("from the end of a line", Extent::source, {0, 6, 1, 3}, "ghi");
        row("nothing", Extent::source, {1, 2, 1, 2}, "");
        row("beyond a text that has shrunk", Extent::source, {1, 1, 1, 90}, "hi");
        row("one whole line", Extent::lines, {0, 0, 0, 0}, "abcdef\n一二三");
        row("whole lines", Extent::lines, {2, 0, 0, 0}, "abcdef\n一二三\n\nghi\n四五六\n\njkl");
    }
    void itsTextIsWhatLiesBetween()
    {
        QFETCH(const Extent, extent);
        QFETCH(const QList<int>, places);
        const TranscriptSelection selection
            = selected(extent, {places[0], places[1]}, {places[2], places[3]});
        QTEST(selection.text(&textOf), "text");
        QCOMPARE(selection.isEmpty(), QString(QTest::currentDataTag()) == "nothing");
    }

    void onlyItsOwnColumnIsMarked()
    {
        const TranscriptSelection text = selected(Extent::translation, {0, 1}, {2, 0});
        QCOMPARE(text.in(0, Extent::translation, 3), (TextRange {1, 3}));
        QCOMPARE(text.in(1, Extent::translation, 3), (TextRange {0, 3}));
        QCOMPARE(text.in(1, Extent::source, 3), (TextRange {}));
        QCOMPARE(text.in(3, Extent::translation, 3), (TextRange {}));
        QVERIFY(!text.anchorRow());
        const TranscriptSelection lines = selected(Extent::lines, {1, 0}, {2, 0});
        QCOMPARE(lines.in(1, Extent::source, 3), (TextRange {0, 3}));
        QCOMPARE(lines.in(2, Extent::translation, 2), (TextRange {0, 2}));
        QCOMPARE(lines.anchorRow(), 1);
    }

    void itFollowsItsLines()
    {
        TranscriptSelection selection = selected(Extent::source, {1, 1}, {3, 2});
        selection.rowInserted(4);
        QCOMPARE(selection.rows(), (std::pair {1, 3}));
        selection.rowInserted(2);
        QCOMPARE(selection.rows(), (std::pair {1, 4}));
        selection.rowInserted(0);
        QCOMPARE(selection.rows(), (std::pair {2, 5}));
    }

    void withoutABeginningThereIsNone()
    {
        TranscriptSelection selection;
        selection.extend({1, 1});
        QVERIFY(selection.isEmpty());
        QVERIFY(!selection.rows());
        QCOMPARE(selection.text(&textOf), "");
        selection.begin(Extent::lines, {1, 0});
        QVERIFY(!selection.isEmpty());
        selection.clear();
        QVERIFY(selection.isEmpty());
    }
};

LUMAPHONE_TEST(TranscriptSelectionTest)

} // namespace transcriptselectiontest

#include "TranscriptSelectionTest.moc"
