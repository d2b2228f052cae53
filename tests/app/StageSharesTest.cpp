#include "app/live/StageShares.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>

namespace stagesharestest {

using namespace lumaphone;

class StageSharesTest : public QObject
{
    Q_OBJECT

private slots:
    void theStageGrowsWithTheWorkspace()
    {
        QCOMPARE(stageHeight(624), 244); // of the smallest window
        QCOMPARE(stageHeight(700), 300);
        QCOMPARE(stageHeight(1400), 300);
        for (int workspace = 600; workspace < 720; ++workspace) {
            const int growth = stageHeight(workspace + 1) - stageHeight(workspace);
            QVERIFY(growth >= 0 && growth <= 1);
        }
    }

    void largeTypeNeedsAllItsMargins()
    {
        QVERIFY(isStageCompact(244));
        QVERIFY(isStageCompact(283));
        QVERIFY(!isStageCompact(284));
    }

    void whatGivesWay_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("translation");
        QTest::addColumn<int>("notice");
        QTest::addColumn<int>("margin");
        QTest::addColumn<bool>("hasPills");
        QTest::addColumn<int>("source");
        QTest::newRow("all has its place") << 300 << 1 << 0 << 32 << true << 2;
        QTest::newRow("a third line takes the margins") << 300 << 3 << 0 << 20 << true << 2;
        QTest::newRow("so does a notice") << 300 << 2 << 1 << 21 << true << 2;
        QTest::newRow("both take the source") << 300 << 3 << 1 << 25 << true << 0;
        QTest::newRow("a long notice takes one of its lines") << 300 << 2 << 3 << 19 << true << 1;
        QTest::newRow("both at their longest take the pills") << 300 << 3 << 3 << 25 << false << 0;
        QTest::newRow("compact") << 244 << 2 << 0 << 24 << true << 2;
        QTest::newRow("compact, a third line") << 244 << 3 << 0 << 12 << true << 2;
        QTest::newRow("compact, a notice") << 244 << 2 << 1 << 20 << true << 1;
        QTest::newRow("compact, both") << 244 << 3 << 1 << 16 << true << 0;
        QTest::newRow("compact, a long notice") << 244 << 2 << 3 << 17 << true << 0;
        QTest::newRow("compact, both at their longest") << 244 << 3 << 3 << 15 << false << 0;
    }
    void whatGivesWay()
    {
        QFETCH(int, height);
        QFETCH(int, translation);
        QFETCH(int, notice);
        const StageShares shares = shareStage({height, translation, notice});
        QCOMPARE(shares.translationLines, std::clamp(translation, 2, 3));
        QCOMPARE(shares.noticeLines, notice);
        QTEST(shares.hasPills, "hasPills");
        QTEST(shares.sourceLines, "source");
        QTEST(shares.margin, "margin");
    }

    void nothingGivesWayEarlierThanItMust()
    {
        for (int height = 200; height <= 320; ++height) {
            for (int translation = 0; translation <= 6; ++translation) {
                for (int notice = 0; notice <= 3; ++notice) {
                    const StageShares shares = shareStage({height, translation, notice});
                    const QByteArray name = QByteArray::number(height) + ' ' + QByteArray::number(translation)
                        + ' ' + QByteArray::number(notice);
                    QVERIFY2(heightOf(shares) <= height, name);
                    StageShares more = shares;
                    more.margin = stageType(shares.isCompact).leastMargin;
                    more.gap = stage::leastGap;
                    if (shares.sourceLines < stage::mostSourceLines && shares.hasPills) {
                        ++more.sourceLines;
                        QVERIFY2(heightOf(more) > height, name);
                    } else if (!shares.hasPills) {
                        QCOMPARE(shares.sourceLines, 0);
                        more.hasPills = true;
                        QVERIFY2(shares.noticeLines < notice || heightOf(more) > height, name);
                    }
                    // In every window that there can be, the words have their place.
                    if (height >= stageHeight(0)) {
                        QVERIFY2(shares.translationLines == std::clamp(translation, 2, 3), name);
                        QVERIFY2(shares.noticeLines == notice, name);
                    }
                }
            }
        }
    }
};

LUMAPHONE_TEST(StageSharesTest)

} // namespace stagesharestest

#include "StageSharesTest.moc"
