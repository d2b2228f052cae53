#include "speech/hosted/HostRecovery.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace hostrecoverytest {

using namespace lumaphone;
using namespace std::chrono_literals;

namespace {

host::Decoded finalAt(std::int64_t start)
{
    host::Decoded text;
    text.start = start;
    text.isFinal = true;
    return text;
}

} // namespace

class HostRecoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void threeRestartsAMinuteAreAllowed()
    {
        HostRecovery recovery;
        const HostRecovery::Time start;
        QVERIFY(recovery.died(start, 0));
        QVERIFY(recovery.died(start + 20s, 0));
        QVERIFY(recovery.died(start + 40s, 0));
        QVERIFY(!recovery.died(start + 59s, 0));
        QVERIFY(recovery.died(start + 60s, 0));
        QVERIFY(!recovery.died(start + 70s, 0));
        QVERIFY(recovery.died(start + 80s, 0));
    }

    void aHostThatStopsListeningTwiceInARowIsGivenUp()
    {
        HostRecovery recovery;
        QVERIFY(recovery.stalled({}, 500));
        QVERIFY(!recovery.stalled({}, 500));
    }

    void aHostThatHasListenedMeanwhileIsStartedAgain()
    {
        HostRecovery recovery;
        QVERIFY(recovery.stalled({}, 500));
        recovery.settled();
        QVERIFY(recovery.stalled({}, 900));
        recovery.decoded(finalAt(900));
        QVERIFY(recovery.stalled({}, 1300));
    }

    void theFirstTimeAllSoundIsGivenAgain()
    {
        HostRecovery recovery;
        recovery.closed({100, 200});
        QVERIFY(!recovery.died({}, 500)->skipTo);
    }

    void theSecondTimeTheSegmentInQuestionIsLeftOut()
    {
        HostRecovery recovery;
        recovery.closed({100, 200});
        recovery.closed({300, 400});
        QVERIFY(!recovery.died({}, 500)->skipTo);
        recovery.closed({100, 200});
        QCOMPARE(recovery.died({}, 500)->skipTo.value(), std::int64_t(200));
    }

    void withoutAClosedSegmentTheOpenOneIsLeftOut()
    {
        HostRecovery recovery;
        QVERIFY(!recovery.died({}, 500)->skipTo);
        QCOMPARE(recovery.died({}, 900)->skipTo.value(), std::int64_t(900));
    }

    void aFinalTextInBetweenIsProgress()
    {
        HostRecovery recovery;
        recovery.closed({100, 200});
        QVERIFY(!recovery.died({}, 500)->skipTo);
        recovery.closed({100, 200});
        recovery.decoded(finalAt(100));
        QVERIFY(!recovery.isOwedText());
        recovery.closed({300, 400});
        QVERIFY(recovery.isOwedText());
        QVERIFY(!recovery.died({}, 900)->skipTo);
    }

    void volatileTextsAreNoProgress()
    {
        HostRecovery recovery;
        recovery.died({}, 0);
        recovery.decoded({});
        QVERIFY(recovery.died({}, 70)->skipTo);
    }
};

LUMAPHONE_TEST(HostRecoveryTest)

} // namespace hostrecoverytest

#include "HostRecoveryTest.moc"
