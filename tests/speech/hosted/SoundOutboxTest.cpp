#include "speech/hosted/SoundOutbox.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <numeric>
#include <random>

namespace soundoutboxtest {

using namespace lumaphone;

namespace {

std::vector<std::int16_t> numbers(std::int16_t first, std::size_t count)
{
    std::vector<std::int16_t> samples(count);
    std::iota(samples.begin(), samples.end(), first);
    return samples;
}

} // namespace

class SoundOutboxTest : public QObject
{
    Q_OBJECT

private slots:
    void soundLeavesInPieces()
    {
        SoundOutbox outbox;
        QVERIFY(!outbox.next(10));
        outbox.append(numbers(0, 15));
        QCOMPARE(outbox.unsent(), std::size_t(15));
        auto piece = outbox.next(10);
        QCOMPARE(piece->position, std::int64_t(0));
        QCOMPARE(piece->samples, numbers(0, 10));
        piece = outbox.next(10);
        QCOMPARE(piece->position, std::int64_t(10));
        QCOMPARE(piece->samples, numbers(10, 5));
        QVERIFY(!outbox.next(10));
    }

    void whatIsNotSettledIsSentAgain()
    {
        SoundOutbox outbox;
        outbox.append(numbers(0, 30));
        outbox.next(20);
        outbox.settle(12);
        outbox.rewind();
        QCOMPARE(outbox.unsent(), std::size_t(18));
        const auto piece = outbox.next(100);
        QCOMPARE(piece->position, std::int64_t(12));
        QCOMPARE(piece->samples, numbers(12, 18));
    }

    void whatWasNotSentStays()
    {
        SoundOutbox outbox;
        outbox.append(numbers(0, 30));
        outbox.next(20);
        outbox.settle(25);
        QCOMPARE(outbox.next(100)->position, std::int64_t(20));
    }

    void settlingBackwardsDoesNothing()
    {
        SoundOutbox outbox;
        outbox.append(numbers(0, 30));
        outbox.next(20);
        outbox.settle(10);
        outbox.settle(5);
        outbox.settle(-1);
        outbox.rewind();
        QCOMPARE(outbox.next(1)->position, std::int64_t(10));
    }

    void everySampleKeepsItsPosition()
    {
        std::mt19937 random(2);
        SoundOutbox outbox;
        std::int16_t appended = 0;
        for (int i = 0; i < 2000; ++i) {
            switch (random() % 4) {
            case 0: {
                const std::size_t count = random() % 10;
                outbox.append(numbers(appended, count));
                appended = static_cast<std::int16_t>(appended + static_cast<std::int16_t>(count));
                break;
            }
            case 1:
                outbox.settle(outbox.sentPosition() - std::int64_t(random() % 5));
                break;
            case 2:
                outbox.rewind();
                break;
            default:
                if (const auto piece = outbox.next(1 + random() % 8)) {
                    QCOMPARE(std::int64_t(piece->samples.front()), piece->position);
                }
            }
        }
        QVERIFY(appended > 1000);
    }
};

LUMAPHONE_TEST(SoundOutboxTest)

} // namespace soundoutboxtest

#include "SoundOutboxTest.moc"
