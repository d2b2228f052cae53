#include "capture/AudioConverter.h"

#include "capture/SingleAudioBufferInputProvider.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

namespace audioconvertertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Samples = std::vector<std::int16_t>;

/// Converts buffers of changing length, as a sound server delivers them.
class Conversion
{
public:
    explicit Conversion(const AudioStreamDescription &source)
        : m_converter(AudioConverter::create(source))
    {
    }

    AudioConverter::Status put(const AudioSampleBuffer &buffer)
    {
        PcmBuffer output(m_converter->outputCapacity(static_cast<std::size_t>(buffer.frames)));
        SingleAudioBufferInputProvider provider(buffer);
        const auto status = m_converter->convert(
            output, [&provider](AudioConverterInputStatus &input) { return provider.provideInput(input); });
        keep(output);
        return status;
    }

    AudioConverter::Status finish()
    {
        PcmBuffer output(m_converter->pendingFrames() + m_converter->outputCapacity(0));
        const auto status = m_converter->convert(output, [](AudioConverterInputStatus &input) {
            input = AudioConverterInputStatus::endOfStream;
            return nullptr;
        });
        keep(output);
        return status;
    }

    const Samples &samples() const { return m_samples; }

private:
    void keep(const PcmBuffer &output)
    {
        m_samples.insert(m_samples.end(), output.samples().begin(), output.samples().end());
    }

    std::unique_ptr<AudioConverter> m_converter;
    Samples m_samples;
};

/// The amplitude of one frequency, with full scale 1.
double amplitudeAt(std::span<const std::int16_t> samples, double frequencyHz)
{
    std::complex<double> sum;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * frequencyHz * static_cast<double>(i) / 16000;
        sum += static_cast<double>(samples[i]) * std::polar(1.0, -angle);
    }
    return 2 * std::abs(sum) / static_cast<double>(samples.size()) / 32768;
}

/// The root mean square, with full scale 1.
double loudness(std::span<const std::int16_t> samples)
{
    double sum = 0;
    for (const std::int16_t sample : samples) {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return std::sqrt(sum / static_cast<double>(samples.size())) / 32768;
}

const char *nameOf(SampleType type)
{
    switch (type) {
    case SampleType::int16:
        return "int16";
    case SampleType::int32:
        return "int32";
    case SampleType::float32:
        return "float32";
    }
    Q_UNREACHABLE();
}

} // namespace

class AudioConverterTest : public QObject
{
    Q_OBJECT

private slots:
    void aToneStaysItself_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("interleaved");
        for (const double rate : {8000., 11025., 16000., 22050., 24000., 32000., 44100., 48000., 88200.,
                 96000., 176400., 192000.}) {
            for (const int channels : {1, 2, 3, 6, 8}) {
                for (const SampleType type : {SampleType::int16, SampleType::int32, SampleType::float32}) {
                    for (const bool interleaved : {true, false}) {
                        QTest::addRow("%g Hz, %d channels, %s, %s", rate, channels, nameOf(type),
                            interleaved ? "interleaved" : "planar")
                            << rate << channels << static_cast<int>(type) << interleaved;
                    }
                }
            }
        }
    }

    void aToneStaysItself()
    {
        QFETCH(const double, rate);
        QFETCH(const int, channels);
        QFETCH(const int, type);
        QFETCH(const bool, interleaved);
        const AudioStreamDescription description {rate, channels, static_cast<SampleType>(type), interleaved};
        Conversion conversion(description);
        const auto total = static_cast<std::int64_t>(rate * 0.5);
        std::int64_t position = 0;
        // Lengths that fit no block of the resampler, so that seams would be heard.
        for (int i = 0; position < total; ++i) {
            const auto frames = std::min<std::int64_t>(total - position, 97 + 211 * (i % 5));
            TestSound sound(description, tone(440, 0.5, rate, position, static_cast<std::size_t>(frames)));
            QVERIFY(conversion.put(sound.buffer()) != AudioConverter::Status::error);
            position += frames;
        }
        conversion.finish();
        const Samples &samples = conversion.samples();
        QVERIFY2(std::abs(static_cast<double>(samples.size()) - 8000) <= 2,
            qPrintable(QString::number(samples.size())));
        // 350 ms in the middle: whole periods of 440 Hz, away from both ends.
        const auto middle = std::span(samples).subspan(1200, 5600);
        const double amplitude = amplitudeAt(middle, 440);
        QVERIFY2(std::abs(amplitude - 0.5) < 0.005, qPrintable(QString::number(amplitude)));
        // Nothing else is in it: the tone alone accounts for all of the loudness.
        QVERIFY(std::abs(loudness(middle) - 0.5 / std::numbers::sqrt2) < 0.004);
    }

    void everyRateKeepsTheLengthAcrossManyBuffers_data()
    {
        QTest::addColumn<double>("rate");
        for (const double rate : {8000., 11025., 16000., 44100., 44099., 48000., 96000., 192000.}) {
            QTest::addRow("%g Hz", rate) << rate;
        }
    }

    void everyRateKeepsTheLengthAcrossManyBuffers()
    {
        QFETCH(const double, rate);
        const AudioStreamDescription description {rate, 1, SampleType::int16, true};
        Conversion conversion(description);
        TestSound sound(description, std::vector<double>(300, 0.25));
        constexpr int buffers = 500;
        for (int i = 0; i < buffers; ++i) {
            conversion.put(sound.buffer());
        }
        const double due = buffers * 300 / rate * 16000;
        // While running, at most 60 ms are on their way.
        QVERIFY(static_cast<double>(conversion.samples().size()) > due - 960);
        conversion.finish();
        QVERIFY2(std::abs(static_cast<double>(conversion.samples().size()) - due) <= 2,
            qPrintable(QStringLiteral("%1 of %2").arg(conversion.samples().size()).arg(due)));
    }

    void frequenciesAboveTheBandDoNotFoldIntoIt()
    {
        const AudioStreamDescription description {48000, 1, SampleType::float32, true};
        Conversion conversion(description);
        TestSound sound(description, tone(11000, 0.9, 48000, 0, 48000));
        conversion.put(sound.buffer());
        const auto middle = std::span(conversion.samples()).subspan(2000, 10000);
        QVERIFY(loudness(middle) < 0.001);
    }

    void theRightRatePassesUnchanged()
    {
        Conversion conversion(analysisDescription);
        std::vector<double> samples;
        for (const int value : {0, 1, -1, 1234, -20000, 32767, -32767}) {
            samples.push_back(value / 32767.0);
        }
        TestSound sound(analysisDescription, samples);
        QVERIFY(conversion.put(sound.buffer()) == AudioConverter::Status::haveData);
        QVERIFY(conversion.samples() == (Samples {0, 1, -1, 1234, -20000, 32767, -32767}));
    }

    void channelsAreMixedEqually_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<bool>("interleaved");
        QTest::newRow("16 kHz, interleaved") << 16000.0 << true;
        QTest::newRow("16 kHz, planar") << 16000.0 << false;
        QTest::newRow("48 kHz, interleaved") << 48000.0 << true;
        QTest::newRow("48 kHz, planar") << 48000.0 << false;
    }

    void channelsAreMixedEqually()
    {
        QFETCH(const double, rate);
        QFETCH(const bool, interleaved);
        const AudioStreamDescription description {rate, 4, SampleType::float32, interleaved};
        const std::size_t frames = 24000;
        Conversion conversion(description);
        TestSound sound(description,
            {std::vector<double>(frames, 0.8), std::vector<double>(frames, 0.4),
                std::vector<double>(frames, -0.4), std::vector<double>(frames, 0.0)});
        conversion.put(sound.buffer());
        QVERIFY(std::abs(conversion.samples().at(4000) - 0.2 * 32768) < 8);
    }

    void tooLoudSoundSaturates_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        for (const double rate : {16000., 48000.}) {
            QTest::addRow("too high at %g", rate) << rate << 2.5 << 32767;
            QTest::addRow("too low at %g", rate) << rate << -2.5 << -32768;
            QTest::addRow("full scale at %g", rate) << rate << 1.0 << 32767;
            QTest::addRow("infinite at %g", rate) << rate << std::numeric_limits<double>::infinity() << 32767;
            QTest::addRow("not a number at %g", rate)
                << rate << std::numeric_limits<double>::quiet_NaN() << 0;
        }
    }

    void tooLoudSoundSaturates()
    {
        QFETCH(const double, rate);
        QFETCH(const double, value);
        QFETCH(const int, expected);
        const AudioStreamDescription description {rate, 1, SampleType::float32, true};
        Conversion conversion(description);
        TestSound sound(description, std::vector<double>(24000, value));
        conversion.put(sound.buffer());
        QVERIFY(std::abs(static_cast<int>(conversion.samples().at(4000)) - expected) <= 1);
    }

    void aBrokenSampleIsForgottenAgain()
    {
        const AudioStreamDescription description {48000, 1, SampleType::float32, true};
        Conversion conversion(description);
        TestSound broken(description, std::vector<double>(100, std::numeric_limits<double>::quiet_NaN()));
        conversion.put(broken.buffer());
        TestSound sound(description, std::vector<double>(24000, 0.5));
        conversion.put(sound.buffer());
        QVERIFY(std::abs(conversion.samples().at(4000) - 16384) < 8);
    }

    void theCapacityHasHeadroom_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("frames");
        QTest::addColumn<int>("capacity");
        QTest::newRow("48 kHz") << 48000.0 << 1024 << 358;
        QTest::newRow("16 kHz") << 16000.0 << 1600 << 1616;
        QTest::newRow("8 kHz") << 8000.0 << 160 << 336;
        QTest::newRow("44.1 kHz rounds up") << 44100.0 << 441 << 176;
        QTest::newRow("nothing") << 48000.0 << 0 << 16;
    }

    void theCapacityHasHeadroom()
    {
        QFETCH(const double, rate);
        QFETCH(const int, frames);
        QFETCH(const int, capacity);
        const auto converter = AudioConverter::create({rate, 1, SampleType::int16, true});
        QCOMPARE(converter->outputCapacity(static_cast<std::size_t>(frames)), std::size_t(capacity));
    }

    void aSenselessDescriptionHasNoConverter_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("channels");
        QTest::newRow("no rate") << 0.0 << 1;
        QTest::newRow("negative rate") << -16000.0 << 1;
        QTest::newRow("rate that is not a number") << std::numeric_limits<double>::quiet_NaN() << 1;
        QTest::newRow("infinite rate") << std::numeric_limits<double>::infinity() << 1;
        QTest::newRow("no channels") << 16000.0 << 0;
        QTest::newRow("negative channels") << 16000.0 << -1;
    }

    void aSenselessDescriptionHasNoConverter()
    {
        QFETCH(const double, rate);
        QFETCH(const int, channels);
        QVERIFY(!AudioConverter::create({rate, channels, SampleType::int16, true}));
    }

    void aBufferThatIsShorterThanItSaysIsAnError_data()
    {
        QTest::addColumn<bool>("interleaved");
        QTest::newRow("interleaved") << true;
        QTest::newRow("planar") << false;
    }

    void aBufferThatIsShorterThanItSaysIsAnError()
    {
        QFETCH(const bool, interleaved);
        const AudioStreamDescription description {48000, 2, SampleType::int16, interleaved};
        Conversion conversion(description);
        TestSound sound(description, std::vector<double>(100, 0.5));
        sound.buffer().frames = 101;
        QVERIFY(conversion.put(sound.buffer()) == AudioConverter::Status::error);
        QVERIFY(conversion.samples().empty());
    }

    void aBufferOfAnotherDescriptionIsAnError()
    {
        Conversion conversion({48000, 2, SampleType::int16, true});
        TestSound sound({44100, 2, SampleType::int16, true}, std::vector<double>(100, 0.5));
        QVERIFY(conversion.put(sound.buffer()) == AudioConverter::Status::error);
    }

    void aMissingPlaneIsAnError()
    {
        const AudioStreamDescription description {48000, 2, SampleType::int16, false};
        Conversion conversion(description);
        TestSound sound(description, std::vector<double>(100, 0.5));
        sound.buffer().planes = sound.buffer().planes.first(1);
        QVERIFY(conversion.put(sound.buffer()) == AudioConverter::Status::error);
    }

    void aFewFramesComeOutLater()
    {
        const AudioStreamDescription description {48000, 1, SampleType::int16, true};
        Conversion conversion(description);
        TestSound sound(description, std::vector<double>(3, 0.5));
        QVERIFY(conversion.put(sound.buffer()) == AudioConverter::Status::inputRanDry);
        QVERIFY(conversion.finish() == AudioConverter::Status::haveData);
        QCOMPARE(conversion.samples().size(), std::size_t(1));
    }

    void anEmptyStreamEnds()
    {
        for (const double rate : {16000.0, 48000.0}) {
            Conversion conversion({rate, 1, SampleType::int16, true});
            QVERIFY(conversion.finish() == AudioConverter::Status::endOfStream);
        }
    }

    void aProviderOffersItsBufferOnce()
    {
        TestSound sound(analysisDescription, std::vector<double>(10, 0.5));
        SingleAudioBufferInputProvider provider(sound.buffer());
        auto status = AudioConverterInputStatus::endOfStream;
        QCOMPARE(provider.provideInput(status), &sound.buffer());
        QVERIFY(status == AudioConverterInputStatus::haveData);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!provider.provideInput(status));
            QVERIFY(status == AudioConverterInputStatus::noDataNow);
        }
    }
};

LUMAPHONE_TEST(AudioConverterTest)

} // namespace audioconvertertest

#include "AudioConverterTest.moc"
