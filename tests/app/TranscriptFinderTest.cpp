#include "app/live/TranscriptFinder.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace transcriptfindertest {

using namespace lumaphone;

namespace {

/// Three lines in which "ab" occurs five times.
TranscriptFinder searched(const QString &pattern = QStringLiteral("ab"))
{
    TranscriptFinder finder;
    finder.setPattern(pattern);
    finder.searchRow(0, QStringLiteral("AB, ab"), QStringLiteral("甲"));
    finder.searchRow(1, QStringLiteral("none"), QStringLiteral("ab"));
    finder.searchRow(2, QStringLiteral("xabab"), QString());
    return finder;
}

} // namespace

class TranscriptFinderTest : public QObject
{
    Q_OBJECT

private slots:
    void itFindsInBothColumnsWhateverTheCase()
    {
        const TranscriptFinder finder = searched();
        QCOMPARE(finder.count(), 5);
        QCOMPARE(finder.in(0).size(), 2u);
        QCOMPARE(finder.in(0)[1], (TranscriptMatch {0, false, 4, 6}));
        QCOMPARE(finder.in(1)[0], (TranscriptMatch {1, true, 0, 2}));
        QCOMPARE(finder.in(2)[1], (TranscriptMatch {2, false, 3, 5}));
        QCOMPARE(finder.in(3).size(), 0u);
        QCOMPARE(finder.number(), 0);
        QVERIFY(!finder.current());
    }

    void nothingIsNeverFound()
    {
        QCOMPARE(searched(QString()).count(), 0);
        QCOMPARE(searched(QStringLiteral("水")).count(), 0);
        TranscriptFinder finder = searched(QStringLiteral("水"));
        finder.lookNear(0);
        finder.step(1);
        QVERIFY(!finder.current());
        QCOMPARE(finder.number(), 0);
    }

    void aKeyboardsOwnSpellingIsFoundToo()
    {
        TranscriptFinder finder;
        finder.setPattern(QString::fromUtf8("か\u3099")); // two characters of the code that are one
        finder.searchRow(0, QString::fromUtf8("が"), QString());
        QCOMPARE(finder.count(), 1);
    }

    void itGoesRoundFromWhereItBegan()
    {
        TranscriptFinder finder = searched();
        finder.lookNear(1);
        QCOMPARE(finder.number(), 3);
        finder.step(1);
        QCOMPARE(finder.current(), (TranscriptMatch {2, false, 1, 3}));
        finder.step(2);
        QCOMPARE(finder.number(), 1);
        finder.step(-1);
        QCOMPARE(finder.number(), 5);
        finder.lookNear(7); // behind the last
        QCOMPARE(finder.number(), 5);
    }

    void withoutAPlaceItBeginsAtAnEnd()
    {
        TranscriptFinder finder = searched();
        finder.step(1);
        QCOMPARE(finder.number(), 1);
        finder = searched();
        finder.step(-1);
        QCOMPARE(finder.number(), 5);
    }

    void newLinesLeaveWhatIsLookedAt()
    {
        TranscriptFinder finder = searched();
        finder.lookNear(2);
        const TranscriptMatch lookedAt = *finder.current();
        finder.rowInserted(3);
        finder.searchRow(3, QStringLiteral("ab ab"), QStringLiteral("ab"));
        QCOMPARE(finder.count(), 8);
        QCOMPARE(finder.current(), lookedAt);
        finder.rowInserted(1); // between them
        finder.searchRow(1, QStringLiteral("ab"), QString());
        QCOMPARE(finder.count(), 9);
        QCOMPARE(finder.current(), (TranscriptMatch {3, false, lookedAt.from, lookedAt.to}));
        QCOMPARE(finder.number(), 5);
    }

    void aLineThatChangesIsSearchedAgain()
    {
        TranscriptFinder finder = searched();
        finder.lookNear(1);
        finder.searchRow(0, QStringLiteral("ab ab ab"), QString());
        QCOMPARE(finder.count(), 6);
        QCOMPARE(finder.current()->row, 1);
        finder.searchRow(1, QStringLiteral("gone"), QString());
        QCOMPARE(finder.count(), 5);
        QCOMPARE(finder.current(), (TranscriptMatch {2, false, 1, 3})); // what stands in its place
        finder.searchRow(2, QString(), QString());
        QCOMPARE(finder.number(), 3);
        finder.searchRow(0, QString(), QString());
        QVERIFY(!finder.current());
        QCOMPARE(finder.count(), 0);
    }
};

LUMAPHONE_TEST(TranscriptFinderTest)

} // namespace transcriptfindertest

#include "TranscriptFinderTest.moc"
