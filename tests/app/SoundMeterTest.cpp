#include "app/live/SoundMeter.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace soundmetertest {

using namespace lumaphone;
using namespace lumaphone::test;

class SoundMeterTest : public QObject
{
    Q_OBJECT

private slots:
    void theStepsFollowWhatIsHeard_data()
    {
        QTest::addColumn<double>("peak");
        QTest::addColumn<int>("step");
        QTest::newRow("silence") << 0.0 << 0;
        QTest::newRow("noise of a converter") << 0.0005 << 0; // -66 dB
        QTest::newRow("hardly to be heard") << 0.0021 << 1; // -53.6 dB
        QTest::newRow("a whisper") << 0.01 << 2; // -40 dB
        QTest::newRow("speech") << 0.1 << 4; // -20 dB
        QTest::newRow("loud speech") << 0.5 << 6; // -6 dB
        QTest::newRow("full scale") << 1.0 << 6;
    }
    void theStepsFollowWhatIsHeard()
    {
        QFETCH(double, peak);
        QTEST(SoundMeter::stepOf(peak), "step");
    }

    void itRisesAtOnceAndFallsStepByStep()
    {
        SoundMeter meter;
        QList<int> levels;
        connect(&meter, &SoundMeter::levelChanged, this, [&] { levels.append(meter.level()); });
        meter.note(0);
        QVERIFY(levels.isEmpty());
        meter.note(0.5);
        QCOMPARE(levels, QList<int> {6});
        meter.note(0.4);
        meter.note(0.01);
        QCOMPARE(levels, QList<int> {6}); // not more often than it can be seen
        QVERIFY(waitUntil([&] { return meter.level() == 0; }));
        QCOMPARE(levels.constLast(), 0);
        for (qsizetype i = 1; i < levels.size(); ++i) {
            QCOMPARE(levels[i], levels[i - 1] - 1);
        }
    }

    void restIsSilence()
    {
        SoundMeter meter;
        meter.note(0.5);
        meter.rest();
        QCOMPARE(meter.level(), 0);
    }
};

LUMAPHONE_TEST(SoundMeterTest)

} // namespace soundmetertest

#include "SoundMeterTest.moc"
