#include "base/DetachedTasks.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <future>
#include <memory>

namespace detachedtaskstest {

using namespace lumaphone;

class DetachedTasksTest : public QObject
{
    Q_OBJECT

private slots:
    void runningDoesNotWait()
    {
        std::promise<void> proceed;
        std::atomic<bool> ended = false;
        DetachedTasks tasks;
        tasks.run("slow", [&, mayProceed = proceed.get_future().share()] {
            mayProceed.wait();
            ended = true;
        });
        QVERIFY(!ended);
        proceed.set_value();
        tasks.wait();
        QVERIFY(ended);
    }

    void tasksRunBesideEachOther()
    {
        DetachedTasks tasks;
        std::promise<void> fromSecond;
        tasks.run("first", [&fromSecond] { fromSecond.get_future().wait(); });
        tasks.run("second", [&fromSecond] { fromSecond.set_value(); });
        tasks.wait();
    }

    void theDestructorWaitsForEveryTask()
    {
        std::atomic<int> ended = 0;
        {
            DetachedTasks tasks;
            for (int i = 0; i < 50; ++i) {
                tasks.run("task", [&ended] { ++ended; });
            }
        }
        QCOMPARE(ended.load(), 50);
    }

    void whatATaskHoldsIsLetGoWhenItEnds()
    {
        DetachedTasks tasks;
        auto held = std::make_shared<int>(1);
        const std::weak_ptr<int> weak = held;
        tasks.run("task", [held = std::move(held)] {});
        tasks.wait();
        QVERIFY(weak.expired());
    }
};

LUMAPHONE_TEST(DetachedTasksTest)

} // namespace detachedtaskstest

#include "DetachedTasksTest.moc"
