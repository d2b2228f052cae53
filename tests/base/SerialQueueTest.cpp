#include "base/SerialQueue.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <pthread.h>

#include <array>
#include <memory>
#include <vector>

namespace serialqueuetest {

using namespace lumaphone;

class SerialQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void closuresRunInOrderOnOneOtherThread()
    {
        SerialQueue queue("app.lumaphone.test");
        std::vector<int> ran;
        std::vector<std::thread::id> threads;
        for (int i = 0; i < 1000; ++i) {
            queue.post([&, i] {
                ran.push_back(i);
                threads.push_back(std::this_thread::get_id());
            });
        }
        queue.drain();
        QCOMPARE(ran.size(), std::size_t(1000));
        QVERIFY(std::is_sorted(ran.begin(), ran.end()));
        QVERIFY(std::all_of(threads.begin(), threads.end(),
            [&](std::thread::id id) { return id == threads[0] && id != std::this_thread::get_id(); }));
    }

    void closuresOfSeveralThreadsNeverOverlap()
    {
        SerialQueue queue("app.lumaphone.test");
        int inside = 0;
        int overlaps = 0;
        int count = 0;
        {
            std::vector<std::jthread> posters;
            for (int poster = 0; poster < 4; ++poster) {
                posters.emplace_back([&] {
                    for (int i = 0; i < 500; ++i) {
                        queue.post([&] {
                            overlaps += ++inside == 1 ? 0 : 1;
                            ++count;
                            --inside;
                        });
                    }
                });
            }
        }
        queue.drain();
        QCOMPARE(count, 2000);
        QCOMPARE(overlaps, 0);
    }

    void theQueueKnowsItsThreadAndItsName()
    {
        SerialQueue queue("app.lumaphone.system-audio-samples");
        QCOMPARE(QByteArray::fromStdString(queue.label()), QByteArray("app.lumaphone.system-audio-samples"));
        QVERIFY(!queue.isCurrent());
        bool isCurrent = false;
        std::array<char, 32> name {};
        queue.post([&] {
            isCurrent = queue.isCurrent();
            pthread_getname_np(pthread_self(), name.data(), name.size());
        });
        queue.drain();
        QVERIFY(isCurrent);
        QCOMPARE(QByteArray(name.data()), QByteArray("system-audio-sa"));
    }

    void aClosureMayPostAnother()
    {
        SerialQueue queue("app.lumaphone.test");
        std::vector<int> ran;
        queue.post([&] {
            queue.post([&] { ran.push_back(2); });
            ran.push_back(1);
        });
        queue.drain();
        queue.drain();
        QCOMPARE(ran, (std::vector {1, 2}));
    }

    void endingRunsWhatWasPosted()
    {
        int count = 0;
        {
            SerialQueue queue("app.lumaphone.test");
            for (int i = 0; i < 100; ++i) {
                queue.post([&count] { ++count; });
            }
        }
        QCOMPARE(count, 100);
    }

    void aClosureIsDestroyedBeforeTheNextRuns()
    {
        SerialQueue queue("app.lumaphone.test");
        auto held = std::make_shared<int>(1);
        const std::weak_ptr<int> weak = held;
        bool isGone = false;
        queue.post([held = std::move(held)] {});
        queue.post([&] { isGone = weak.expired(); });
        queue.drain();
        QVERIFY(isGone);
    }
};

LUMAPHONE_TEST(SerialQueueTest)

} // namespace serialqueuetest

#include "SerialQueueTest.moc"
