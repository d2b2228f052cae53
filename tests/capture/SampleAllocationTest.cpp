#include "capture/AppleSystemSpeechTranscriber.h"
#include "capture/FakeSpeechFramework.h"
#include "support/Coroutines.h"
#include "support/TestSound.h"

#include <QTest>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

/// Smaller than the samples of one converted buffer below, larger than anything else on the sample path.
constexpr std::size_t audioBufferBytes = 600;
std::atomic<int> audioAllocations = 0;

void *allocated(std::size_t bytes)
{
    if (bytes >= audioBufferBytes) {
        ++audioAllocations;
    }
    if (void *const memory = std::malloc(bytes)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t bytes)
{
    return allocated(bytes);
}

void *operator new[](std::size_t bytes)
{
    return allocated(bytes);
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

using namespace lumaphone;
using namespace lumaphone::test;

class SampleAllocationTest : public QObject
{
    Q_OBJECT

private slots:
    void theSteadyStateAllocatesNoAudioBuffers_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("channels");
        QTest::newRow("16 kHz mono") << 16000.0 << 1;
        QTest::newRow("48 kHz stereo") << 48000.0 << 2;
        QTest::newRow("44.1 kHz stereo") << 44100.0 << 2;
        QTest::newRow("8 kHz mono") << 8000.0 << 1;
    }

    void theSteadyStateAllocatesNoAudioBuffers()
    {
        QFETCH(const double, rate);
        QFETCH(const int, channels);
        const auto framework = std::make_shared<FakeSpeechFramework>();
        framework->keepsSamples = false;
        const auto transcriber = AppleSystemSpeechTranscriber::create(
            framework, MainQueue::create(), std::make_shared<DetachedTasks>());
        test::waitFor(transcriber->start({AppleSystemSpeechLanguage::english}));
        const AudioStreamDescription description {rate, channels, SampleType::float32, true};
        TestSound sound(description, tone(440, 0.5, rate, 0, static_cast<std::size_t>(rate / 50)));
        const auto play = [&](int buffers) {
            for (int i = 0; i < buffers; ++i) {
                QVERIFY(transcriber->waitForRoom({}));
                transcriber->append(sound.buffer());
            }
        };
        audioAllocations = 0;
        play(100);
        QVERIFY2(audioAllocations >= 48, "the counter must see the ring being filled");
        audioAllocations = 0;
        play(2000);
        QCOMPARE(audioAllocations.load(), 0);
        transcriber->stop();
    }

    void largerBuffersGrowTheRingOnce()
    {
        const auto framework = std::make_shared<FakeSpeechFramework>();
        framework->keepsSamples = false;
        const auto transcriber = AppleSystemSpeechTranscriber::create(
            framework, MainQueue::create(), std::make_shared<DetachedTasks>());
        test::waitFor(transcriber->start({AppleSystemSpeechLanguage::english}));
        TestSound small(analysisDescription, std::vector<double>(320, 0.5));
        TestSound large(analysisDescription, std::vector<double>(640, 0.5));
        const auto play = [&](TestSound &sound, int buffers) {
            for (int i = 0; i < buffers; ++i) {
                QVERIFY(transcriber->waitForRoom({}));
                transcriber->append(sound.buffer());
            }
        };
        play(small, 48);
        audioAllocations = 0;
        play(large, 96);
        QCOMPARE(audioAllocations.load(), 48);
        play(small, 96);
        QCOMPARE(audioAllocations.load(), 48);
        transcriber->stop();
    }
};

QTEST_GUILESS_MAIN(SampleAllocationTest)
#include "SampleAllocationTest.moc"
