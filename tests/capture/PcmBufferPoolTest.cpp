#include "capture/PcmBufferPool.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <set>

namespace pcmbufferpooltest {

using namespace lumaphone;

class PcmBufferPoolTest : public QObject
{
    Q_OBJECT

private slots:
    void slotsComeRoundInOrder()
    {
        PcmBufferPool pool;
        std::vector<const PcmBuffer *> first;
        for (std::size_t i = 0; i < PcmBufferPool::slotCount; ++i) {
            first.push_back(pool.reusablePCMBuffer(100).get());
        }
        QCOMPARE(std::set<const PcmBuffer *>(first.begin(), first.end()).size(), std::size_t(48));
        for (int round = 0; round < 2; ++round) {
            for (const PcmBuffer *expected : first) {
                QCOMPARE(pool.reusablePCMBuffer(100).get(), expected);
            }
        }
    }

    void aReusedBufferIsEmpty()
    {
        PcmBufferPool pool;
        pool.reusablePCMBuffer(10)->setFrameLength(10);
        for (int i = 0; i < 47; ++i) {
            pool.reusablePCMBuffer(10);
        }
        QCOMPARE(pool.reusablePCMBuffer(10)->frameLength(), std::size_t(0));
    }

    void aBufferIsReplacedOnlyByALargerOne_data()
    {
        QTest::addColumn<int>("wanted");
        QTest::addColumn<int>("capacity");
        QTest::newRow("smaller: the old one stays") << 50 << 100;
        QTest::newRow("the same: the old one stays") << 100 << 100;
        QTest::newRow("one more: a new one of exactly that size") << 101 << 101;
        QTest::newRow("none at all") << 0 << 100;
    }

    void aBufferIsReplacedOnlyByALargerOne()
    {
        QFETCH(const int, wanted);
        QFETCH(const int, capacity);
        PcmBufferPool pool;
        for (int i = 0; i < 48; ++i) {
            pool.reusablePCMBuffer(100);
        }
        QCOMPARE(pool.reusablePCMBuffer(wanted)->frameCapacity(), std::size_t(capacity));
    }

    void aBufferThatSomebodyReadsIsLeftAlone()
    {
        PcmBufferPool pool;
        const auto held = pool.reusablePCMBuffer(4);
        held->setFrameLength(4);
        std::fill(held->storage().begin(), held->storage().end(), std::int16_t(7));
        for (int i = 0; i < 47; ++i) {
            pool.reusablePCMBuffer(4);
        }
        const auto next = pool.reusablePCMBuffer(4);
        QVERIFY(next != held);
        QCOMPARE(held->frameLength(), std::size_t(4));
        QCOMPARE(held->samples()[3], std::int16_t(7));
    }

    void resettingStartsAfresh()
    {
        PcmBufferPool pool;
        pool.reusablePCMBuffer(100);
        pool.resetReusablePCMBuffers();
        QCOMPARE(pool.reusablePCMBuffer(5)->frameCapacity(), std::size_t(5));
    }
};

LUMAPHONE_TEST(PcmBufferPoolTest)

} // namespace pcmbufferpooltest

#include "PcmBufferPoolTest.moc"
