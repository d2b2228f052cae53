#include "base/Completion.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <memory>
#include <stdexcept>
#include <thread>

namespace completiontest {

using namespace lumaphone;
namespace test = lumaphone::test;
using lumaphone::test::settle;

namespace {

template<typename T> QCoro::Task<T> awaited(Completion<T> completion)
{
    co_return co_await completion;
}

} // namespace

class CompletionTest : public QObject
{
    Q_OBJECT

    std::shared_ptr<MainQueue> m_queue = MainQueue::create();

private slots:
    void anAnswerGivenBeforehandIsThereAtOnce()
    {
        const Completion<int> completion(m_queue);
        completion.resolve(42);
        QCOMPARE(test::waitFor(awaited(completion)), 42);
    }

    void anAnswerInTurnWaitsForTheEventLoop()
    {
        const Completion<int> completion(m_queue);
        completion.resolve(42);
        const auto inTurn = [](Completion<int> answer) -> QCoro::Task<int> {
            co_return co_await answer.inTurn();
        };
        auto task = inTurn(completion);
        QVERIFY(!task.isReady());
        QCOMPARE(test::waitFor(std::move(task)), 42);
    }

    void anAnswerFromAnotherThreadResumesTheMainThread()
    {
        const Completion<int> completion(m_queue);
        bool onMainThread = false;
        const auto check
            = [](Completion<int> answer, std::shared_ptr<MainQueue> queue, bool &result) -> QCoro::Task<int> {
            const int value = co_await answer;
            result = queue->isCurrent();
            co_return value;
        };
        auto task = check(completion, m_queue, onMainThread);
        std::thread thread([completion] { completion.resolve(7); });
        QCOMPARE(test::waitFor(std::move(task)), 7);
        thread.join();
        QVERIFY(onMainThread);
    }

    void theFirstAnswerCounts()
    {
        const Completion<int> completion(m_queue);
        completion.resolve(1);
        completion.resolve(2);
        completion.fail(std::make_exception_ptr(std::runtime_error("late")));
        QCOMPARE(test::waitFor(awaited(completion)), 1);
    }

    void aFailureIsThrown()
    {
        const Completion<> completion(m_queue);
        auto task = awaited(completion);
        completion.fail(std::make_exception_ptr(std::runtime_error("broken")));
        completion.resolve();
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, test::waitFor(std::move(task)));
    }

    void valuesMayBeMoveOnly()
    {
        const Completion<std::unique_ptr<int>> completion(m_queue);
        completion.resolve(std::make_unique<int>(3));
        QCOMPARE(*test::waitFor(awaited(completion)), 3);
    }

    void racingAnswersResumeOnce()
    {
        for (int round = 0; round < 200; ++round) {
            const Completion<int> completion(m_queue);
            int resumed = 0;
            const auto count = [](Completion<int> answer, int &times) -> QCoro::Task<int> {
                const int value = co_await answer;
                ++times;
                co_return value;
            };
            auto task = count(completion, resumed);
            std::thread first([completion] { completion.resolve(1); });
            std::thread second([completion] { completion.resolve(2); });
            const int value = test::waitFor(std::move(task));
            first.join();
            second.join();
            settle();
            QVERIFY(value == 1 || value == 2);
            QCOMPARE(resumed, 1);
        }
    }

    void backgroundWorkHandsItsResultOver()
    {
        const std::thread::id mainThread = std::this_thread::get_id();
        const auto result
            = test::waitFor(runInBackground(m_queue, "test-work", [] { return std::this_thread::get_id(); }));
        QVERIFY(result != mainThread);
        int ran = 0;
        test::waitFor(runInBackground(m_queue, "test-work", [&ran] { ++ran; }));
        QCOMPARE(ran, 1);
    }

    void backgroundWorkLetsItsCallerGoOn()
    {
        // Sooner or later the work is done before it is awaited.
        for (int round = 0; round < 1000; ++round) {
            auto task = runInBackground(m_queue, "test-work", [] {});
            QVERIFY(!task.isReady());
            test::waitFor(std::move(task));
        }
    }

    void backgroundWorkHandsItsExceptionOver()
    {
        QVERIFY_THROWS_EXCEPTION(std::runtime_error,
            test::waitFor(
                runInBackground(m_queue, "test-work", []() -> int { throw std::runtime_error("broken"); })));
    }
};

LUMAPHONE_TEST(CompletionTest)

} // namespace completiontest

#include "CompletionTest.moc"
