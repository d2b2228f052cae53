#include "support/speech-scores/SampleClock.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace sampleclocktest {

using namespace lumaphone::test;
using std::chrono::milliseconds;

namespace {

const TraceTime start {};

/// Four seconds in pieces of 20 ms, each of which arrives so late after its last sample.
SampleClock clockWithDelays(const std::function<int(int piece)> &delayMs)
{
    SampleClock clock(16000);
    for (int piece = 1; piece <= 200; ++piece) {
        clock.arrived(std::size_t(piece) * 320, start + milliseconds(20 * piece + delayMs(piece)));
    }
    return clock;
}

qint64 msOf(const SampleClock &clock, std::size_t sample)
{
    return std::chrono::duration_cast<milliseconds>(clock.timeOf(sample) - start).count();
}

} // namespace

class SampleClockTest : public QObject
{
    Q_OBJECT

private slots:
    void promptPiecesTellTheTime()
    {
        const SampleClock clock = clockWithDelays([](int) { return 0; });
        QCOMPARE(msOf(clock, 0), 0);
        QCOMPARE(msOf(clock, 16000), 1000);
        QCOMPARE(msOf(clock, 16160), 1010);
        QCOMPARE(msOf(clock, 64000), 4000);
    }

    void piecesThatWaitedDoNotMatter()
    {
        const SampleClock clock = clockWithDelays([](int piece) { return piece % 10 == 0 ? 0 : 35; });
        QCOMPARE(msOf(clock, 16160), 1010);
        QCOMPARE(msOf(clock, 63900), 3993);
    }

    void aPauseOfTheSoundMovesWhatFollows()
    {
        const SampleClock clock = clockWithDelays([](int piece) { return piece > 100 ? 500 : 0; });
        QCOMPARE(msOf(clock, 8000), 500);
        QCOMPARE(msOf(clock, 56000), 4000);
    }
};

LUMAPHONE_TEST(SampleClockTest)

} // namespace sampleclocktest

#include "SampleClockTest.moc"
