#include "base/MainQueue.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QThread>

#include <thread>
#include <vector>

namespace mainqueuetest {

using namespace lumaphone;
using namespace lumaphone::test;

class MainQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void closuresRunInTheEventLoopInOrder()
    {
        const auto queue = MainQueue::create();
        std::vector<int> ran;
        queue->post([&] { ran.push_back(1); });
        queue->post([&] { ran.push_back(2); });
        QVERIFY(ran.empty());
        settle();
        QCOMPARE(ran, (std::vector {1, 2}));
    }

    void closuresOfAnotherThreadRunOnTheMainThread()
    {
        const auto queue = MainQueue::create();
        QVERIFY(queue->isCurrent());
        std::vector<int> ran;
        bool onMainThread = true;
        std::thread poster([&] {
            onMainThread = onMainThread && !queue->isCurrent();
            for (int i = 0; i < 1000; ++i) {
                queue->post([&, i] {
                    ran.push_back(i);
                    onMainThread = onMainThread && queue->isCurrent();
                });
            }
        });
        QVERIFY(waitUntil([&] { return ran.size() == 1000; }));
        poster.join();
        QVERIFY(onMainThread);
        QVERIFY(std::is_sorted(ran.begin(), ran.end()));
    }

    void aClosureMayPostAnother()
    {
        const auto queue = MainQueue::create();
        std::vector<int> ran;
        queue->post([&] {
            queue->post([&] { ran.push_back(2); });
            ran.push_back(1);
        });
        settle();
        QCOMPARE(ran, (std::vector {1, 2}));
    }

    void aClosedQueueDropsEverything()
    {
        const auto queue = MainQueue::create();
        int ran = 0;
        queue->post([&] { ++ran; });
        queue->close();
        queue->post([&] { ++ran; });
        settle();
        QCOMPARE(ran, 0);
    }

    void aClosureMayCloseTheQueue()
    {
        const auto queue = MainQueue::create();
        int ran = 0;
        queue->post([&] {
            ++ran;
            queue->close();
        });
        queue->post([&] { ++ran; });
        settle();
        QCOMPARE(ran, 1);
    }

    void aQueueThatIsGoneRunsNothing()
    {
        auto queue = MainQueue::create();
        int ran = 0;
        queue->post([&] { ++ran; });
        queue.reset();
        settle();
        QCOMPARE(ran, 0);
    }

    void theLastOwnerMayBeAnotherThread()
    {
        auto queue = MainQueue::create();
        std::thread owner([queue = std::move(queue)]() mutable {
            queue->post([] {});
            queue.reset();
        });
        owner.join();
        settle();
    }

    void aDroppedClosureMayPost()
    {
        struct PostsWhenDestroyed
        {
            explicit PostsWhenDestroyed(std::shared_ptr<MainQueue> target)
                : queue(std::move(target))
            {
            }
            ~PostsWhenDestroyed()
            {
                queue->post([] {});
            }
            std::shared_ptr<MainQueue> queue;
        };
        const auto queue = MainQueue::create();
        queue->post([held = std::make_shared<PostsWhenDestroyed>(queue)] {});
        queue->close();
    }
};

LUMAPHONE_TEST(MainQueueTest)

} // namespace mainqueuetest

#include "MainQueueTest.moc"
