#include "base/AsyncStream.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace asyncstreamtest {

using namespace lumaphone;

class AsyncStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void elementsArriveInOrder()
    {
        AsyncStream<int> stream;
        QVERIFY(stream.yield(1));
        QVERIFY(stream.yield(2));
        stream.finish();
        QCOMPARE(stream.next({}), std::optional(1));
        QCOMPARE(stream.next({}), std::optional(2));
        QCOMPARE(stream.next({}), std::nullopt);
        QCOMPARE(stream.next({}), std::nullopt);
    }

    void onlyTheNewestAreKept()
    {
        AsyncStream<int> stream(3);
        for (int i = 0; i < 10; ++i) {
            stream.yield(i);
        }
        stream.finish();
        QCOMPARE(stream.next({}), std::optional(7));
        QCOMPARE(stream.next({}), std::optional(8));
        QCOMPARE(stream.next({}), std::optional(9));
        QCOMPARE(stream.next({}), std::nullopt);
    }

    void anEndedStreamTakesNothing()
    {
        AsyncStream<int> stream;
        stream.finish();
        QVERIFY(!stream.yield(1));
        stream.fail(std::make_exception_ptr(std::runtime_error("late")));
        QCOMPARE(stream.next({}), std::nullopt);
    }

    void anErrorComesOnceAfterWhatIsPending()
    {
        AsyncStream<int> stream;
        stream.yield(1);
        stream.fail(std::make_exception_ptr(std::runtime_error("broken")));
        QCOMPARE(stream.next({}), std::optional(1));
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, stream.next({}));
        QCOMPARE(stream.next({}), std::nullopt);
    }

    void elementsMayBeMoveOnly()
    {
        AsyncStream<std::unique_ptr<int>> stream;
        stream.yield(std::make_unique<int>(5));
        QCOMPARE(**stream.next({}), 5);
    }

    void aStopEndsTheWaiting()
    {
        AsyncStream<int> stream;
        std::stop_source stop;
        std::optional<int> received = 1;
        std::thread consumer([&] { received = stream.next(stop.get_token()); });
        stop.request_stop();
        consumer.join();
        QCOMPARE(received, std::nullopt);
        QVERIFY(stream.yield(2));
    }

    void everyElementOfSeveralProducersArrivesOnce()
    {
        constexpr int perProducer = 2000;
        AsyncStream<int> stream;
        std::vector<int> received;
        std::thread consumer([&] {
            while (const auto element = stream.next({})) {
                received.push_back(*element);
            }
        });
        {
            std::vector<std::jthread> producers;
            for (int producer = 0; producer < 4; ++producer) {
                producers.emplace_back([&stream, producer] {
                    for (int i = 0; i < perProducer; ++i) {
                        stream.yield(producer * perProducer + i);
                    }
                });
            }
        }
        stream.finish();
        consumer.join();
        QCOMPARE(received.size(), std::size_t(4 * perProducer));
        std::vector<int> last(4, -1);
        for (const int element : received) {
            int &previous = last[std::size_t(element / perProducer)];
            QVERIFY(element > previous);
            previous = element;
        }
    }

    void aPatientProducerLosesNothing()
    {
        AsyncStream<int> stream(2);
        int received = 0;
        std::thread consumer([&] {
            while (const auto element = stream.next({})) {
                received += *element == received ? 1 : 1'000'000;
            }
        });
        for (int i = 0; i < 5000; ++i) {
            QVERIFY(stream.waitForRoom({}));
            stream.yield(i);
        }
        stream.finish();
        consumer.join();
        QCOMPARE(received, 5000);
    }

    void waitingForRoomEndsWithTheStreamOrAStop()
    {
        AsyncStream<int> stream(1);
        stream.yield(1);
        std::stop_source stop;
        bool hasRoom = true;
        std::thread stopped([&] { hasRoom = stream.waitForRoom(stop.get_token()); });
        stop.request_stop();
        stopped.join();
        QVERIFY(!hasRoom);
        std::thread ended([&] { hasRoom = stream.waitForRoom({}); });
        stream.finish();
        ended.join();
        QVERIFY(!hasRoom);
    }

    void aRequestedStopComesBeforeWhatIsPending()
    {
        AsyncStream<int> stream;
        stream.yield(1);
        std::stop_source stop;
        stop.request_stop();
        QVERIFY(!stream.next(stop.get_token()));
        QVERIFY(stream.next({}) == 1);
    }
};

LUMAPHONE_TEST(AsyncStreamTest)

} // namespace asyncstreamtest

#include "AsyncStreamTest.moc"
