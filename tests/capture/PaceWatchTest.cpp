#include "capture/PaceWatch.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace pacewatchtest {

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

LUMAPHONE_TEST(PaceWatchTest)

} // namespace pacewatchtest

#include "PaceWatchTest.moc"
