#include "platform/sound/RecordingThread.h"

#include "platform/CaptureServiceError.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace recordingthreadtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

void waitForStop(const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any changed;
    std::unique_lock lock(mutex);
    changed.wait(lock, stop, [] { return false; });
}

QCoro::Task<> waitingFor(Completion<> completion)
{
    co_await completion;
}

} // namespace

class RecordingThreadTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();

private slots:
    void aStartedRecordingIsStoppedWithoutAFailure()
    {
        std::atomic<int> failures {0};
        auto recording = std::make_unique<RecordingThread>(
            m_mainQueue,
            [](const std::stop_token &stop, const std::function<void()> &hasStarted) {
                hasStarted();
                waitForStop(stop);
                throw CaptureServiceError(QStringLiteral("cancelled"));
            },
            [&](const std::exception_ptr &) { ++failures; });
        test::waitFor(waitingFor(recording->started()));
        test::waitFor(waitingFor(recording->started()));
        QVERIFY(!recording->hasEnded());
        recording.reset();
        QCOMPARE(failures.load(), 0);
    }

    void anErrorBeforeTheStartGoesToWhoWaitsForTheStart()
    {
        std::atomic<int> failures {0};
        auto recording = std::make_unique<RecordingThread>(
            m_mainQueue,
            [](const std::stop_token &, const std::function<void()> &) {
                throw CaptureServiceError(QStringLiteral("no such device"));
            },
            [&](const std::exception_ptr &) { ++failures; });
        const auto error
            = thrownBy<CaptureServiceError>([&] { test::waitFor(waitingFor(recording->started())); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("no such device"));
        QVERIFY(recording->hasEnded());
        recording.reset();
        QCOMPARE(failures.load(), 0);
    }

    void anErrorAfterTheStartIsAFailureTheRecordingHasEndedThen()
    {
        std::atomic<bool> mayFail {false};
        QString text;
        RecordingThread *told = nullptr;
        bool hadEnded = false;
        std::atomic<bool> isTold {false};
        RecordingThread recording(
            m_mainQueue,
            [&](const std::stop_token &, const std::function<void()> &hasStarted) {
                hasStarted();
                mayFail.wait(false);
                throw CaptureServiceError(QStringLiteral("unplugged"));
            },
            [&](const std::exception_ptr &error) {
                text = localizedDescription(error);
                hadEnded = told->hasEnded();
                isTold = true;
            });
        told = &recording;
        test::waitFor(waitingFor(recording.started()));
        mayFail = true;
        mayFail.notify_all();
        QVERIFY(waitUntil([&] { return isTold.load(); }));
        QCOMPARE(text, QStringLiteral("unplugged"));
        QVERIFY(hadEnded);
    }

    void aStopWhileOpeningEndsTheWaitForTheStart()
    {
        auto recording = std::make_unique<RecordingThread>(
            m_mainQueue,
            [](const std::stop_token &stop, const std::function<void()> &) {
                waitForStop(stop);
                throw CaptureServiceError(QStringLiteral("cancelled"));
            },
            [](const std::exception_ptr &) { qFatal("not started"); });
        const Completion<> started = recording->started();
        recording.reset();
        const auto error = thrownBy<CaptureServiceError>([&] { test::waitFor(waitingFor(started)); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("cancelled"));
    }
};

LUMAPHONE_TEST(RecordingThreadTest)

} // namespace recordingthreadtest

#include "RecordingThreadTest.moc"
