#include "platform/sound/CaptureDelivery.h"

#include "base/LocalizedError.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <functional>
#include <future>
#include <thread>
#include <vector>

namespace capturedeliverytest {

using namespace lumaphone;

namespace {

const AudioStreamDescription speech {16000, 1, SampleType::int16, true};
constexpr std::size_t bytesPerBuffer = 640;

SoundReceiver hearing(std::function<void(const AudioSampleBuffer &)> onSound)
{
    return {.onSound = std::move(onSound), .onEnded = {}};
}

/// Buffers of 20 ms, each filled with its number.
void appendBuffers(CaptureDelivery &delivery, int first, int count)
{
    for (int i = first; i < first + count; ++i) {
        const std::vector<std::byte> bytes(bytesPerBuffer, static_cast<std::byte>(i));
        delivery.append(bytes.data(), bytes.size());
    }
}

} // namespace

class CaptureDeliveryTest : public QObject
{
    Q_OBJECT

private slots:
    void buffersArriveInOrderOnTheQueueWithTheirDescription()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        delivery->prepare(speech);
        std::vector<int> numbers;
        bool isRight = true;
        delivery->attach(queue, hearing([&](const AudioSampleBuffer &buffer) {
            isRight &= queue.isCurrent() && buffer.isValid && buffer.dataIsReady && buffer.frames == 320
                && buffer.durationSeconds == 0.02 && buffer.description == speech && buffer.planes.size() == 1
                && buffer.planes[0].size() == bytesPerBuffer;
            numbers.push_back(static_cast<int>(buffer.planes[0].front()));
        }));
        appendBuffers(*delivery, 1, 5);
        queue.drain();
        QVERIFY(isRight);
        QCOMPARE(numbers, (std::vector {1, 2, 3, 4, 5}));
    }

    void aSlowQueueLosesTheOldestAndIsNeverWaitedFor()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        delivery->prepare(speech);
        std::vector<int> numbers;
        delivery->attach(queue, hearing([&](const AudioSampleBuffer &buffer) {
            numbers.push_back(static_cast<int>(buffer.planes[0].front()));
        }));
        std::promise<void> letGo;
        queue.post([held = letGo.get_future().share()] { held.wait(); });
        appendBuffers(*delivery, 0, 150);
        letGo.set_value();
        queue.drain();
        QCOMPARE(delivery->droppedBuffers(), std::size_t(51));
        QCOMPARE(numbers.size(), std::size_t(99));
        QCOMPARE(numbers.front(), 51);
        QCOMPARE(numbers.back(), 149);
    }

    void afterDetachingNothingArrives()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        delivery->prepare(speech);
        for (int round = 0; round < 50; ++round) {
            std::atomic<bool> isDetached {false};
            std::atomic<int> late {0};
            std::atomic<int> seen {0};
            delivery->attach(queue, hearing([&](const AudioSampleBuffer &) {
                ++seen;
                seen.notify_one();
                late += isDetached ? 1 : 0;
            }));
            std::jthread recorder([&](const std::stop_token &stop) {
                while (!stop.stop_requested()) {
                    appendBuffers(*delivery, 0, 1);
                    std::this_thread::yield();
                }
            });
            seen.wait(0);
            delivery->detach();
            isDetached = true;
            queue.drain();
            recorder.request_stop();
            recorder.join();
            QCOMPARE(late.load(), 0);
        }
    }

    void anEndIsToldToWhoIsAttached()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        const auto reason = std::make_exception_ptr(CaptureServiceError(QStringLiteral("unplugged")));
        QStringList reasons;
        delivery->fail(reason);
        delivery->attach(queue,
            {[](const AudioSampleBuffer &) {},
                [&](const std::exception_ptr &error) {
                    reasons << localizedDescription(error);
                }});
        delivery->fail(reason);
        QCOMPARE(reasons, QStringList {QStringLiteral("unplugged")});
        delivery->detach();
        delivery->fail(reason);
        QCOMPARE(reasons.size(), 1);
    }

    void detachingWaitsForAnEndThatIsBeingTold()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        for (int round = 0; round < 50; ++round) {
            std::atomic<bool> isTelling {false};
            std::atomic<bool> isTold {false};
            delivery->attach(queue,
                {[](const AudioSampleBuffer &) {},
                    [&](const std::exception_ptr &) {
                        isTelling = true;
                        isTelling.notify_one();
                        std::this_thread::yield();
                        isTold = true;
                    }});
            std::jthread recorder([&] { delivery->fail(nullptr); });
            isTelling.wait(false);
            delivery->detach();
            QVERIFY(isTold);
        }
    }

    void whatWaitedForAFormerConsumerNeverReachesTheNext()
    {
        SerialQueue first("test.first");
        SerialQueue second("test.second");
        const auto delivery = std::make_shared<CaptureDelivery>();
        delivery->prepare(speech);
        std::promise<void> letGo;
        first.post([held = letGo.get_future().share()] { held.wait(); });
        delivery->attach(first, hearing([](const AudioSampleBuffer &) { QFAIL("detached"); }));
        appendBuffers(*delivery, 1, 1);
        std::vector<int> numbers;
        bool isOnSecond = true;
        delivery->attach(second, hearing([&](const AudioSampleBuffer &buffer) {
            isOnSecond &= second.isCurrent();
            numbers.push_back(static_cast<int>(buffer.planes[0].front()));
        }));
        appendBuffers(*delivery, 7, 2);
        letGo.set_value();
        first.drain();
        second.drain();
        QVERIFY(isOnSecond);
        QCOMPARE(numbers, (std::vector {7, 8}));
    }

    void theBuffersFollowTheFormat()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        const AudioStreamDescription stereo {44100, 2, SampleType::float32, true};
        delivery->prepare(stereo);
        std::vector<std::size_t> sizes;
        std::optional<AudioStreamDescription> description;
        delivery->attach(queue, hearing([&](const AudioSampleBuffer &buffer) {
            sizes.push_back(buffer.planes[0].size());
            description = buffer.description;
        }));
        delivery->append(nullptr, std::size_t(882 * 2 * 4 * 3));
        queue.drain();
        QCOMPARE(sizes, std::vector<std::size_t>(3, 882 * 2 * 4));
        QCOMPARE(description, std::optional(stereo));
    }

    void soundBeforeAnybodyListensIsIgnored()
    {
        SerialQueue queue("test.samples");
        const auto delivery = std::make_shared<CaptureDelivery>();
        appendBuffers(*delivery, 1, 1);
        delivery->prepare(speech);
        appendBuffers(*delivery, 2, 1);
        std::vector<int> numbers;
        delivery->attach(queue, hearing([&](const AudioSampleBuffer &buffer) {
            numbers.push_back(static_cast<int>(buffer.planes[0].front()));
        }));
        appendBuffers(*delivery, 3, 1);
        queue.drain();
        QCOMPARE(numbers, (std::vector {3}));
    }
};

LUMAPHONE_TEST(CaptureDeliveryTest)

} // namespace capturedeliverytest

#include "CaptureDeliveryTest.moc"
