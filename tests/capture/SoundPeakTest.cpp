#include "capture/SoundPeak.h"

#include "capture/SystemAudioSampleSummary.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace soundpeaktest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

constexpr AudioStreamDescription stereo(SampleType type, bool isInterleaved)
{
    return {48000, 2, type, isInterleaved};
}

} // namespace

class SoundPeakTest : public QObject
{
    Q_OBJECT

private slots:
    void theLoudestSampleOfAnyChannelCounts_data()
    {
        QTest::addColumn<AudioStreamDescription>("description");
        QTest::newRow("16 bit") << stereo(SampleType::int16, true);
        QTest::newRow("16 bit, planes") << stereo(SampleType::int16, false);
        QTest::newRow("32 bit") << stereo(SampleType::int32, true);
        QTest::newRow("floating point, planes") << stereo(SampleType::float32, false);
    }
    void theLoudestSampleOfAnyChannelCounts()
    {
        QFETCH(const AudioStreamDescription, description);
        const auto peak = [&](const std::vector<double> &left, const std::vector<double> &right) {
            TestSound sound(description, std::vector<std::vector<double>> {left, right});
            return soundPeak(sound.buffer());
        };
        QCOMPARE(peak({0, 0, 0}, {0, 0, 0}), 0.0);
        QVERIFY(std::abs(peak({0, 0.25, 0}, {0, -0.75, 0.1}) - 0.75) < 0.001);
        QVERIFY(std::abs(peak({0, 0, -0.5}, {0, 0, 0.1}) - 0.5) < 0.001);
        QVERIFY(peak({-1, 0, 0}, {0, 0, 0}) <= 1);
    }

    void whatIsNoSampleIsNotLoud()
    {
        TestSound sound(analysisDescription, std::vector<double> {0.5, 0.5});
        AudioSampleBuffer buffer = sound.buffer();
        buffer.description.reset();
        QCOMPARE(soundPeak(buffer), 0.0);
        buffer = sound.buffer();
        buffer.planes = {};
        QCOMPARE(soundPeak(buffer), 0.0);
        TestSound odd({48000, 1, SampleType::float32, true},
            std::vector<double> {std::numeric_limits<double>::quiet_NaN(), 0.25});
        QVERIFY(std::abs(soundPeak(odd.buffer()) - 0.25) < 0.001);
        TestSound loud({48000, 1, SampleType::float32, true}, std::vector<double> {7});
        QCOMPARE(soundPeak(loud.buffer()), 1.0);
    }

    void theSummaryOfABufferHasIt()
    {
        TestSound sound(analysisDescription, std::vector<double> {0, 0.5});
        QVERIFY(std::abs(makeSummary(sound.buffer(), QLocale::c()).peak - 0.5) < 0.001);
    }
};

LUMAPHONE_TEST(SoundPeakTest)

} // namespace soundpeaktest

#include "SoundPeakTest.moc"
