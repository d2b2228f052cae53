#include "platform/sound/ThreadedSoundRecorder.h"

#include "platform/sound/RecordedSound.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace threadedsoundrecordertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const SoundDevice device {QStringLiteral("device"), QStringLiteral("Device")};

void waitForStop(const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any changed;
    std::unique_lock lock(mutex);
    changed.wait(lock, stop, [] { return false; });
}

/// Sound without end, as fast as it is taken.
void deliverUntilStopped(CaptureDelivery &delivery, const std::stop_token &stop)
{
    const std::vector<std::byte> bytes(640, std::byte {1});
    while (!stop.stop_requested()) {
        delivery.append(bytes.data(), bytes.size());
        std::this_thread::yield();
    }
}

void prepare(CaptureDelivery &delivery)
{
    delivery.prepare({16000, 1, SampleType::int16, true});
}

} // namespace

class ThreadedSoundRecorderTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<SerialQueue> m_queue;
    std::unique_ptr<RecordedSound> m_sound;

private slots:
    void init()
    {
        m_queue = std::make_unique<SerialQueue>("test.samples");
        m_sound = std::make_unique<RecordedSound>(*m_queue);
    }

    void nothingIsDeliveredAfterAStopHoweverMuchIsOnItsWay()
    {
        ThreadedSoundRecorder recorder(m_mainQueue,
            [](const SoundDevice &, CaptureDelivery &delivery, const std::stop_token &stop,
                const std::function<void()> &hasStarted) {
                prepare(delivery);
                hasStarted();
                deliverUntilStopped(delivery, stop);
                throw CaptureServiceError(QStringLiteral("cancelled"));
            });
        for (int round = 0; round < 20; ++round) {
            m_sound->clear();
            test::waitFor(recorder.start(device, *m_queue, m_sound->receiver()));
            QVERIFY(waitUntil([&] { return m_sound->sampleCount() > 0; }));
            recorder.stop();
            const std::size_t buffers = m_sound->buffers();
            m_queue->drain();
            QCOMPARE(m_sound->buffers(), buffers);
        }
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void theDeviceIsHandedOn()
    {
        std::optional<SoundDevice> opened;
        ThreadedSoundRecorder recorder(m_mainQueue,
            [&](const SoundDevice &given, CaptureDelivery &, const std::stop_token &stop,
                const std::function<void()> &hasStarted) {
                opened = given;
                hasStarted();
                waitForStop(stop);
            });
        test::waitFor(recorder.start(device, *m_queue, m_sound->receiver()));
        recorder.stop();
        QVERIFY(opened == device);
    }

    void anErrorOfTheStartIsThrownAndNothingIsDelivered()
    {
        ThreadedSoundRecorder recorder(m_mainQueue,
            [](const SoundDevice &, CaptureDelivery &delivery, const std::stop_token &,
                const std::function<void()> &) {
                prepare(delivery);
                throw CaptureServiceError(QStringLiteral("busy"));
            });
        const auto error = thrownBy<CaptureServiceError>(
            [&] { test::waitFor(recorder.start(device, *m_queue, m_sound->receiver())); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("busy"));
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void anEndByItselfIsToldOnce()
    {
        std::atomic<bool> mayEnd {false};
        ThreadedSoundRecorder recorder(m_mainQueue,
            [&](const SoundDevice &, CaptureDelivery &, const std::stop_token &,
                const std::function<void()> &hasStarted) {
                hasStarted();
                mayEnd.wait(false);
                throw CaptureServiceError(QStringLiteral("unplugged"));
            });
        test::waitFor(recorder.start(device, *m_queue, m_sound->receiver()));
        mayEnd = true;
        mayEnd.notify_all();
        QVERIFY(waitUntil([&] { return !m_sound->errors().isEmpty(); }));
        recorder.stop();
        QCOMPARE(m_sound->errors(), QStringList {QStringLiteral("unplugged")});
    }

    void aStopOrTheEndOfTheRecorderEndsAStart_data()
    {
        QTest::addColumn<bool>("isDropped");
        QTest::newRow("stopped") << false;
        QTest::newRow("dropped") << true;
    }

    void aStopOrTheEndOfTheRecorderEndsAStart()
    {
        QFETCH(const bool, isDropped);
        auto recorder = std::make_unique<ThreadedSoundRecorder>(m_mainQueue,
            [](const SoundDevice &, CaptureDelivery &, const std::stop_token &stop,
                const std::function<void()> &) {
                waitForStop(stop);
                throw CaptureServiceError(QStringLiteral("cancelled"));
            });
        QCoro::Task<> starting = recorder->start(device, *m_queue, m_sound->receiver());
        if (isDropped) {
            recorder.reset();
        } else {
            recorder->stop();
        }
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(std::move(starting)); }));
        QCOMPARE(m_sound->errors(), QStringList());
    }

    void aStartEndsTheOneBeforeItAndOnlyThat()
    {
        std::atomic<int> starts {0};
        ThreadedSoundRecorder recorder(m_mainQueue,
            [&](const SoundDevice &, CaptureDelivery &delivery, const std::stop_token &stop,
                const std::function<void()> &hasStarted) {
                if (++starts == 1) {
                    waitForStop(stop);
                    throw CaptureServiceError(QStringLiteral("cancelled"));
                }
                prepare(delivery);
                hasStarted();
                deliverUntilStopped(delivery, stop);
            });
        RecordedSound firstSound(*m_queue);
        QCoro::Task<> first = recorder.start(device, *m_queue, firstSound.receiver());
        QVERIFY(waitUntil([&] { return starts > 0; }));
        QCoro::Task<> second = recorder.start(device, *m_queue, m_sound->receiver());
        QVERIFY(thrownBy<CaptureServiceError>([&] { test::waitFor(std::move(first)); }));
        test::waitFor(std::move(second));
        QVERIFY(waitUntil([&] { return m_sound->buffers() > 0; }));
        recorder.stop();
        QCOMPARE(firstSound.buffers(), std::size_t(0));
    }
};

LUMAPHONE_TEST(ThreadedSoundRecorderTest)

} // namespace threadedsoundrecordertest

#include "ThreadedSoundRecorderTest.moc"
