#include "capture/SystemAudioSampleSummary.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <array>
#include <limits>
#include <span>

namespace systemaudiosamplesummarytest {

using namespace lumaphone;

class SystemAudioSampleSummaryTest : public QObject
{
    Q_OBJECT

private slots:
    void aBufferIsSummarisedInOneLine_data()
    {
        QTest::addColumn<qint64>("frames");
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text");
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        const QLocale german(QLocale::German, QLocale::Germany);
        const QLocale taiwan(QLocale::Chinese, QLocale::TraditionalChineseScript, QLocale::Taiwan);
        QTest::newRow("English groups the rate")
            << qint64(1600) << 16000.0 << 1 << 0.1 << english
            << QStringLiteral("1600 frames, 16,000 Hz, 1 channel, duration 0.100s");
        QTest::newRow("German separators")
            << qint64(1024) << 48000.0 << 2 << 1024 / 48000.0 << german
            << QStringLiteral("1024 frames, 48.000 Hz, 2 channel, duration 0,021s");
        QTest::newRow("Taiwan") << qint64(480) << 44100.0 << 1 << 1234.5 << taiwan
                                << QStringLiteral("480 frames, 44,100 Hz, 1 channel, duration 1,234.500s");
        QTest::newRow("no grouping in the C locale")
            << qint64(320) << 16000.0 << 1 << 0.02 << QLocale::c()
            << QStringLiteral("320 frames, 16000 Hz, 1 channel, duration 0.020s");
        QTest::newRow("a rate has no fraction")
            << qint64(1) << 44099.6 << 8 << 0.0004 << QLocale::c()
            << QStringLiteral("1 frames, 44100 Hz, 8 channel, duration 0.000s");
        QTest::newRow("a duration that is not a number")
            << qint64(1) << 16000.0 << 1 << std::numeric_limits<double>::quiet_NaN() << QLocale::c()
            << QStringLiteral("1 frames, 16000 Hz, 1 channel, duration 0.000s");
    }

    void aBufferIsSummarisedInOneLine()
    {
        QFETCH(const qint64, frames);
        QFETCH(const double, rate);
        QFETCH(const int, channels);
        QFETCH(const double, seconds);
        QFETCH(const QLocale, locale);
        QFETCH(const QString, text);
        AudioSampleBuffer buffer;
        buffer.frames = frames;
        buffer.durationSeconds = seconds;
        buffer.description = AudioStreamDescription {rate, channels, SampleType::float32, true};
        QCOMPARE(makeSummary(buffer, locale).detail, text);
    }

    void anInvalidDurationCountsAsNothing()
    {
        AudioSampleBuffer buffer;
        buffer.frames = 7;
        buffer.description = AudioStreamDescription {16000, 1, SampleType::int16, true};
        QCOMPARE(makeSummary(buffer, QLocale::c()).detail,
            QStringLiteral("7 frames, 16000 Hz, 1 channel, duration 0.000s"));
    }

    void aBufferWithoutDescriptionHasTheShortForm()
    {
        AudioSampleBuffer buffer;
        buffer.frames = 12000;
        buffer.durationSeconds = 0.25;
        QCOMPARE(makeSummary(buffer, QLocale(QLocale::English, QLocale::UnitedStates)).detail,
            QStringLiteral("12000 frames, duration 0.250s"));
    }

    void soundThatIsAllZeroIsSilent()
    {
        std::array<std::byte, 8> left {};
        std::array<std::byte, 8> right {};
        const std::array<std::span<const std::byte>, 2> planes {left, right};
        AudioSampleBuffer buffer;
        buffer.frames = 4;
        QVERIFY2(!makeSummary(buffer, QLocale::c()).isSilent, "no samples at all");
        buffer.planes = planes;
        QVERIFY(makeSummary(buffer, QLocale::c()).isSilent);
        right.back() = std::byte {1};
        QVERIFY(!makeSummary(buffer, QLocale::c()).isSilent);
    }
};

LUMAPHONE_TEST(SystemAudioSampleSummaryTest)

} // namespace systemaudiosamplesummarytest

#include "SystemAudioSampleSummaryTest.moc"
