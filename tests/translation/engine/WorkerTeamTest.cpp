#include "translation/engine/WorkerTeam.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <numeric>
#include <vector>

namespace workerteamtest {

using namespace lumaphone::engine;

class WorkerTeamTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPieceIsDoneOnce_data()
    {
        QTest::addColumn<int>("members");
        for (const int members : {0, 1, 2, 3, 5})
            QTest::addRow("%d members", members) << members;
    }

    void everyPieceIsDoneOnce()
    {
        QFETCH(int, members);
        WorkerTeam team(members);
        QCOMPARE(team.members(), std::max(1, members));
        for (int round = 0; round < 2000; ++round) {
            const int pieces = 1 + round % 17;
            // Plain numbers on purpose: what a piece writes is visible when run() returns.
            std::vector<int> done(std::size_t(pieces), 0);
            team.run(pieces, [&](int, int piece) { done[std::size_t(piece)] += piece + 1; });
            for (int piece = 0; piece < pieces; ++piece)
                QCOMPARE(done[std::size_t(piece)], piece + 1);
        }
    }

    void aMemberNeverWorksTwiceAtOnce()
    {
        WorkerTeam team(4);
        std::vector<int> atWork(4, 0);
        std::atomic<bool> hasOverlapped = false;
        for (int round = 0; round < 500; ++round) {
            team.run(32, [&](int member, int) {
                if (++atWork[std::size_t(member)] != 1)
                    hasOverlapped = true;
                --atWork[std::size_t(member)];
            });
        }
        QVERIFY(!hasOverlapped);
    }

    void helpersSleepAndWakeAgain()
    {
        WorkerTeam team(2);
        for (int round = 0; round < 20; ++round) {
            std::atomic<int> done = 0;
            team.run(8, [&](int, int) { ++done; });
            QCOMPARE(done.load(), 8);
            QTest::qWait(1);
        }
    }
};

LUMAPHONE_TEST(WorkerTeamTest)

} // namespace workerteamtest

#include "WorkerTeamTest.moc"
