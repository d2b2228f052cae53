#include "speech/host/SourcePace.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace sourcepacetest {

using namespace lumaphone;
using namespace std::chrono_literals;

namespace {

constexpr std::int64_t second = 16000;

} // namespace

class SourcePaceTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsNotAhead() { QVERIFY(!SourcePace().isAheadOfTime(SourcePace::Time())); }

    void liveSoundIsNeverAhead()
    {
        SourcePace pace;
        SourcePace::Time now;
        // A device whose clock is 0.1 % too fast, for ten hours.
        for (int i = 0; i < 36000; ++i) {
            pace.arrived(second + 16, now);
            now += 1s;
            QVERIFY(!pace.isAheadOfTime(now));
        }
    }

    void aFileIsAheadAtOnceAndUntilTheClockCatchesUp()
    {
        SourcePace pace;
        SourcePace::Time now;
        pace.arrived(10 * second, now);
        QVERIFY(pace.isAheadOfTime(now));
        now += 8s;
        QVERIFY(pace.isAheadOfTime(now));
        now += 2s;
        QVERIFY(!pace.isAheadOfTime(now));
    }

    void aFileThatIsReadInBurstsStaysAhead()
    {
        SourcePace pace;
        SourcePace::Time now;
        for (int i = 0; i < 500; ++i) {
            pace.arrived(5 * second, now);
            now += 1s;
            QVERIFY(i < 1 || pace.isAheadOfTime(now));
        }
    }

    void aPauseIsNotCredit()
    {
        SourcePace pace;
        SourcePace::Time now;
        pace.arrived(second, now);
        now += 60s;
        pace.arrived(10 * second, now);
        QVERIFY(pace.isAheadOfTime(now));
    }
};

LUMAPHONE_TEST(SourcePaceTest)

} // namespace sourcepacetest

#include "SourcePaceTest.moc"
