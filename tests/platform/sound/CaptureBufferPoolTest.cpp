#include "platform/sound/CaptureBufferPool.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <vector>

namespace capturebufferpooltest {

using namespace lumaphone;

namespace {

std::vector<std::byte> counted(int first, int count)
{
    std::vector<std::byte> bytes;
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::byte>(first + i));
    }
    return bytes;
}

void append(CaptureBufferPool &pool, const std::vector<std::byte> &bytes)
{
    pool.append(bytes.data(), bytes.size());
}

/// What the next full buffer holds; empty if there is none.
std::vector<std::byte> next(CaptureBufferPool &pool)
{
    const auto taken = pool.take();
    std::vector<std::byte> bytes;
    if (taken) {
        bytes.assign(taken->begin(), taken->end());
        pool.release();
    }
    return bytes;
}

} // namespace

class CaptureBufferPoolTest : public QObject
{
    Q_OBJECT

private slots:
    void piecesOfAnySizeBecomeBuffersOfOneSize()
    {
        CaptureBufferPool pool(4, 8);
        append(pool, counted(0, 3));
        QVERIFY(!pool.hasFullBuffer());
        append(pool, counted(3, 6));
        QCOMPARE(next(pool), counted(0, 4));
        QCOMPARE(next(pool), counted(4, 4));
        QVERIFY(!pool.take());
        append(pool, counted(9, 3));
        QCOMPARE(next(pool), counted(8, 4));
    }

    void missingDataIsSilence()
    {
        CaptureBufferPool pool(4, 3);
        append(pool, counted(1, 1));
        pool.append(nullptr, 3);
        QCOMPARE(next(pool), (std::vector {std::byte {1}, std::byte {0}, std::byte {0}, std::byte {0}}));
    }

    void theOldestGivesWayWhenNobodyTakes()
    {
        CaptureBufferPool pool(1, 4);
        append(pool, counted(0, 10));
        QCOMPARE(pool.droppedBuffers(), std::size_t(7));
        QCOMPARE(next(pool), counted(7, 1));
        QCOMPARE(next(pool), counted(8, 1));
        QCOMPARE(next(pool), counted(9, 1));
        QVERIFY(!pool.hasFullBuffer());
    }

    void aTakenBufferStaysUntouched()
    {
        CaptureBufferPool pool(2, 3);
        append(pool, counted(0, 2));
        const auto taken = pool.take();
        QVERIFY(taken);
        append(pool, counted(100, 20));
        QCOMPARE(std::vector(taken->begin(), taken->end()), counted(0, 2));
        pool.release();
        QCOMPARE(next(pool), counted(118, 2));
    }

    void theSameMemoryIsUsedOverAndOver()
    {
        CaptureBufferPool pool(4, 3);
        std::vector<const std::byte *> places;
        for (int i = 0; i < 30; ++i) {
            append(pool, counted(i, 4));
            const auto taken = pool.take();
            QVERIFY(taken);
            if (std::find(places.begin(), places.end(), taken->data()) == places.end()) {
                places.push_back(taken->data());
            }
            pool.release();
        }
        QVERIFY2(places.size() <= 3, qPrintable(QString::number(places.size())));
        QCOMPARE(pool.droppedBuffers(), std::size_t(0));
    }

    void clearingDropsWhatWaits()
    {
        CaptureBufferPool pool(2, 4);
        append(pool, counted(0, 5));
        pool.clear();
        QVERIFY(!pool.hasFullBuffer());
        append(pool, counted(50, 2));
        QCOMPARE(next(pool), counted(50, 2));
        QCOMPARE(pool.droppedBuffers(), std::size_t(0));
    }
};

LUMAPHONE_TEST(CaptureBufferPoolTest)

} // namespace capturebufferpooltest

#include "CaptureBufferPoolTest.moc"
