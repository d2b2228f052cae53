#include "speech/host/DecodePlan.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace decodeplantest {

using namespace lumaphone;
using namespace std::chrono_literals;

namespace {

using Time = DecodePlan::Time;

SpeechSegment segmentAt(std::int64_t start, std::int64_t length = 16000)
{
    return {start, std::vector<float>(static_cast<std::size_t>(length)), length};
}

bool isVolatile(const DecodePlan::Job &job)
{
    return std::holds_alternative<DecodePlan::Volatile>(job);
}
bool isFinal(const DecodePlan::Job &job)
{
    return std::holds_alternative<DecodePlan::Final>(job);
}
bool isNothing(const DecodePlan::Job &job)
{
    return std::holds_alternative<DecodePlan::Nothing>(job);
}

} // namespace

class DecodePlanTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutSpeechThereIsNothingToDo()
    {
        DecodePlan plan;
        const auto job = plan.next(Time());
        QVERIFY(isNothing(job));
        QVERIFY(!std::get<DecodePlan::Nothing>(job).until);
    }

    void theFirstVolatileTextComesAtOnce()
    {
        DecodePlan plan;
        plan.opened({100, 4000, 0}, Time());
        const auto job = plan.next(Time());
        QVERIFY(isVolatile(job));
        QCOMPARE(std::get<DecodePlan::Volatile>(job).start, std::int64_t(100));
    }

    void theHopFollowsTheLastDecode_data()
    {
        QTest::addColumn<int>("decodeMs");
        QTest::addColumn<int>("hopMs");
        QTest::newRow("quick") << 20 << 400;
        QTest::newRow("just as quick as the shortest hop") << 145 << 400;
        QTest::newRow("slow") << 400 << 1100;
        QTest::newRow("very slow") << 2000 << 5500;
    }
    void theHopFollowsTheLastDecode()
    {
        QFETCH(int, decodeMs);
        QFETCH(int, hopMs);
        DecodePlan plan;
        Time now;
        plan.opened({0, 40000, 0}, now);
        QVERIFY(isVolatile(plan.next(now)));
        const Time due = now + std::chrono::milliseconds(hopMs);
        now += std::chrono::milliseconds(decodeMs);
        plan.done(now);
        plan.opened({0, 44000, 0}, due - 1ms);
        QVERIFY(isNothing(plan.next(due - 1ms)));
        plan.opened({0, 44512, 0}, due);
        QVERIFY(isVolatile(plan.next(due)));
    }

    /// Sound comes in pieces; the one that is about to arrive is worth more than a few milliseconds.
    void aVolatileTextThatIsDueWaitsForNewSoundButNotLong()
    {
        DecodePlan plan;
        const Time now;
        plan.opened({0, 40000, 0}, now);
        QVERIFY(isVolatile(plan.next(now)));
        plan.done(now + 10ms);
        plan.opened({0, 44000, 0}, now + 390ms);
        const Time latest = now + 450ms;
        for (const auto time : {395ms, 400ms, 449ms}) {
            const auto job = plan.next(now + time);
            QVERIFY(isNothing(job));
            QVERIFY(std::get<DecodePlan::Nothing>(job).until == latest);
        }
        QVERIFY(isVolatile(plan.next(latest)));
    }

    void theFirstWordsComeSooner()
    {
        DecodePlan plan;
        const Time now;
        plan.opened({0, 4000, 0}, now);
        QVERIFY(isVolatile(plan.next(now)));
        plan.done(now + 20ms);
        plan.opened({0, 8000, 0}, now + 250ms);
        QVERIFY(isVolatile(plan.next(now + 250ms)));
        plan.done(now + 270ms);
        plan.opened({0, DecodePlan::fewWords, 0}, now + 500ms);
        QVERIFY(isNothing(plan.next(now + 500ms)));
        plan.opened({0, DecodePlan::fewWords, 0}, now + 650ms);
        QVERIFY(isVolatile(plan.next(now + 650ms)));
    }

    /// What is decoded when a pause begins may be the final text; so it does not wait for the hop.
    void aPauseIsDecodedAtOnceAndOnce()
    {
        DecodePlan plan;
        const Time now;
        constexpr std::int64_t pause = DecodePlan::shortPause;
        plan.opened({0, 40000, 0}, now);
        QVERIFY(isVolatile(plan.next(now)));
        plan.done(now + 20ms);
        plan.opened({0, 40000, pause - 1}, now + 40ms);
        QVERIFY(isNothing(plan.next(now + 40ms)));
        plan.opened({0, 40000, pause}, now + 60ms);
        QVERIFY(isVolatile(plan.next(now + 60ms)));
        plan.done(now + 80ms);
        plan.opened({0, 40000, 2 * pause}, now + 10s);
        QVERIFY(isNothing(plan.next(now + 10s)));
        plan.opened({0, 41000, pause}, now + 10s);
        QVERIFY(isVolatile(plan.next(now + 10s)));
    }

    void pausesOneAfterAnotherDoNotKeepTheDecoderBusy()
    {
        DecodePlan plan;
        const Time now;
        plan.opened({0, 40000, DecodePlan::shortPause}, now);
        QVERIFY(isVolatile(plan.next(now)));
        plan.done(now + 200ms);
        plan.opened({0, 41000, DecodePlan::shortPause}, now + 210ms);
        const auto job = plan.next(now + 210ms);
        QVERIFY(isNothing(job));
        QVERIFY(std::get<DecodePlan::Nothing>(job).until == now + 300ms);
        QVERIFY(isVolatile(plan.next(now + 300ms)));
    }

    void aDecodeHeardTheWholeSegmentIfNobodySpokeSince()
    {
        const SpeechSegment segment {100, std::vector<float>(20000), 15000};
        constexpr std::int64_t pause = DecodePlan::shortPause;
        QVERIFY((DecodePlan::Extent {100, 15000, pause}.isWholeOf(segment)));
        QVERIFY(!(DecodePlan::Extent {100, 15000, pause - 1}.isWholeOf(segment)));
        QVERIFY(!(DecodePlan::Extent {100, 14000, pause}.isWholeOf(segment)));
        QVERIFY(!(DecodePlan::Extent {101, 15000, pause}.isWholeOf(segment)));
    }

    void withoutNewSpeechThereIsNoNewVolatileText()
    {
        DecodePlan plan;
        plan.opened({0, 4000, 0}, Time());
        QVERIFY(isVolatile(plan.next(Time())));
        plan.done(Time() + 10ms);
        plan.opened({0, 4000, 0}, Time());
        const auto job = plan.next(Time() + 10s);
        QVERIFY(isNothing(job));
        QVERIFY(!std::get<DecodePlan::Nothing>(job).until);
    }

    void aStaleVolatileTextIsDropped()
    {
        DecodePlan plan;
        plan.opened({0, 4000, 0}, Time());
        plan.closed(segmentAt(0), Time());
        QVERIFY(isFinal(plan.next(Time())));
        plan.done(Time() + 10ms);
        QVERIFY(isNothing(plan.next(Time() + 10s)));
        plan.opened({20000, 4000, 0}, Time());
        plan.nothingOpen();
        QVERIFY(isNothing(plan.next(Time() + 10s)));
    }

    void finalTextsComeFirstAndInOrder()
    {
        DecodePlan plan;
        plan.opened({0, 4000, 0}, Time());
        plan.closed(segmentAt(0), Time());
        plan.closed(segmentAt(20000), Time());
        plan.opened({40000, 9000, 0}, Time());
        QCOMPARE(*plan.oldestPending(), std::int64_t(0));
        for (const std::int64_t start : {0, 20000}) {
            const auto job = plan.next(Time() + 1ms);
            QVERIFY(isFinal(job));
            QCOMPARE(std::get<DecodePlan::Final>(job).segment.start, start);
            QCOMPARE(*plan.oldestPending(), start);
            plan.done(Time() + 1ms);
        }
        QVERIFY(!plan.oldestPending());
        QVERIFY(isVolatile(plan.next(Time() + 10s)));
    }

    void lateFinalsMakeTheHopLongerAndPromptOnesShorterAgain()
    {
        DecodePlan plan;
        Time now;
        QCOMPARE(plan.hop(), DecodePlan::Duration(400ms));
        const auto decodeFinalThatWaited = [&plan, &now](DecodePlan::Duration wait) {
            plan.closed(segmentAt(0), now);
            now += wait;
            QVERIFY(isFinal(plan.next(now)));
            plan.done(now);
        };
        decodeFinalThatWaited(1100ms);
        QCOMPARE(plan.hop(), DecodePlan::Duration(800ms));
        decodeFinalThatWaited(500ms);
        QCOMPARE(plan.hop(), DecodePlan::Duration(800ms));
        decodeFinalThatWaited(1100ms);
        decodeFinalThatWaited(1100ms);
        QCOMPARE(plan.hop(), DecodePlan::Duration(1600ms));
        decodeFinalThatWaited(100ms);
        decodeFinalThatWaited(100ms);
        QCOMPARE(plan.hop(), DecodePlan::Duration(400ms));
    }

    void veryLateFinalsCloseSegmentsEarlyUntilOneIsPrompt()
    {
        DecodePlan plan;
        Time now;
        plan.closed(segmentAt(0), now);
        QVERIFY(!plan.wantsEarlyClosing(now + 3s));
        QVERIFY(plan.wantsEarlyClosing(now + 3001ms));
        now += 4s;
        QVERIFY(isFinal(plan.next(now)));
        plan.done(now);
        QVERIFY(plan.wantsEarlyClosing(now));
        plan.closed(segmentAt(20000), now);
        QVERIFY(isFinal(plan.next(now + 200ms)));
        plan.done(now + 200ms);
        QVERIFY(!plan.wantsEarlyClosing(now + 200ms));
    }

    /// A decoder of any speed over random speech: every segment gets its final text, in order, and volatile
    /// texts never take more than 36 % of the time.
    void underAnyLoadEveryFinalTextComes()
    {
        std::mt19937 random(11);
        for (int round = 0; round < 50; ++round) {
            DecodePlan plan;
            Time now;
            const double speed = 0.02 + 0.1 * (random() % 20);
            Time busyUntil;
            bool isBusy = false;
            bool isDecodingVolatile = false;
            std::int64_t closed = 0;
            std::int64_t decoded = 0;
            DecodePlan::Duration volatileTime {};
            std::int64_t start = 0;
            std::int64_t voiced = 0;
            int left = 300;
            while (left > 0 || decoded < closed) {
                now += 32ms;
                if (left > 0) {
                    voiced += 512;
                    plan.opened({start, voiced, 0}, now);
                    if (random() % 60 == 0) {
                        plan.closed(segmentAt(start, voiced), now);
                        ++closed;
                        --left;
                        start += voiced;
                        voiced = 0;
                        plan.nothingOpen();
                    }
                }
                if (isBusy && now >= busyUntil) {
                    plan.done(now);
                    isBusy = false;
                }
                if (isBusy) {
                    continue;
                }
                const auto job = plan.next(now);
                std::int64_t length = voiced;
                if (const auto *const final = std::get_if<DecodePlan::Final>(&job)) {
                    length = final->segment.voiced;
                    ++decoded;
                } else if (isNothing(job)) {
                    continue;
                }
                isDecodingVolatile = isVolatile(job);
                const auto cost = std::chrono::duration_cast<DecodePlan::Duration>(
                    std::chrono::duration<double>(speed * static_cast<double>(length) / samplesPerSecond));
                volatileTime += isDecodingVolatile ? cost : DecodePlan::Duration {};
                busyUntil = now + cost;
                isBusy = true;
            }
            QCOMPARE(decoded, closed);
            const double share = std::chrono::duration<double>(volatileTime) / (now - Time());
            QVERIFY2(share < 0.5, qPrintable(QString::number(share)));
        }
    }
};

LUMAPHONE_TEST(DecodePlanTest)

} // namespace decodeplantest

#include "DecodePlanTest.moc"
