#include "support/speech-scores/SpeechBounds.h"

#include "support/PrivateSoundServer.h"
#include "support/Signals.h"
#include "support/WavFile.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>
#include <random>

namespace speechboundstest {

using namespace lumaphone::test;

namespace {

using Samples = std::vector<std::int16_t>;

Samples noise(double amplitude, double seconds)
{
    std::mt19937 chance(1);
    std::normal_distribution<double> sample(0, amplitude * 32767);
    Samples samples(std::size_t(seconds * 16000));
    for (std::int16_t &each : samples) {
        each = std::int16_t(std::lround(sample(chance)));
    }
    return samples;
}

Samples joined(const std::vector<Samples> &parts)
{
    Samples all;
    for (const Samples &part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Samples silence(double seconds)
{
    return Samples(std::size_t(seconds * 16000));
}

Samples voice(double seconds)
{
    const auto samples = sine(220, 0.3, seconds, 16000);
    return {samples.begin(), samples.end()};
}

} // namespace

class SpeechBoundsTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsLoudIsSpeech_data()
    {
        QTest::addColumn<Samples>("samples");
        QTest::addColumn<double>("begin");
        QTest::addColumn<double>("end");
        const Samples background = noise(0.003, 0.5);
        QTest::newRow("in silence") << joined({silence(1), voice(1), silence(1)}) << 1.0 << 2.0;
        QTest::newRow("in a background") << joined({background, voice(1), background}) << 0.5 << 1.5;
        QTest::newRow("a background within silence")
            << joined({silence(1), background, voice(1), background, silence(1)}) << 1.5 << 2.5;
        QTest::newRow("two words") << joined({background, voice(0.3), background, voice(0.3), background})
                                   << 0.5 << 1.6;
        QTest::newRow("a click before")
            << joined({silence(1), voice(0.01), silence(0.5), voice(1)}) << 1.51 << 2.51;
        QTest::newRow("nothing around") << voice(1) << 0.0 << 1.0;
    }
    void whatIsLoudIsSpeech()
    {
        QFETCH(Samples, samples);
        QFETCH(double, begin);
        QFETCH(double, end);
        const auto bounds = speechBounds(samples);
        QVERIFY(bounds);
        QCOMPARE(double(bounds->begin) / 16000, begin);
        QCOMPARE(double(bounds->end) / 16000, end);
    }

    void silenceHasNone()
    {
        QVERIFY(!speechBounds({}));
        QVERIFY(!speechBounds(silence(2)));
        QVERIFY(!speechBounds(voice(0.05)));
    }

    void silenceAroundARecordingChangesNothing()
    {
        for (const QString &path : PrivateSoundServer::speechFiles()) {
            const Samples speech = samplesOfWav(path);
            const auto alone = speechBounds(speech);
            const auto within = speechBounds(joined({silence(1), speech, silence(1)}));
            QVERIFY(alone && within);
            QCOMPARE(within->begin, alone->begin + 16000);
            QCOMPARE(within->end, alone->end + 16000);
            QVERIFY(alone->begin > 0 && alone->end < speech.size());
        }
    }
};

LUMAPHONE_TEST(SpeechBoundsTest)

} // namespace speechboundstest

#include "SpeechBoundsTest.moc"
