#include "capture/PaceWatch.h"

#include <QTest>

using namespace lumaphone;
using namespace std::chrono_literals;

class PaceWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void fallingBehindAndCatchingUpAreNoticedOnceEach()
    {
        PaceWatch watch;
        QVERIFY(!watch.note(0ms));
        QVERIFY(!watch.note(5s));
        QCOMPARE(watch.note(5001ms), std::optional(true));
        QVERIFY(!watch.note(9s));
        QVERIFY(!watch.note(4s)); // not yet: it may grow again
        QVERIFY(!watch.note(6s));
        QVERIFY(!watch.note(1s));
        QCOMPARE(watch.note(999ms), std::optional(false));
        QVERIFY(!watch.note(4s));
        QCOMPARE(watch.note(6s), std::optional(true));
    }
};

QTEST_GUILESS_MAIN(PaceWatchTest)
#include "PaceWatchTest.moc"
