#include "app/models/DownloadPace.h"

#include "app/models/ModelTexts.h"
#include "models/ModelInstaller.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace downloadpacetest {

using namespace lumaphone;
using namespace std::chrono_literals;

class DownloadPaceTest : public QObject
{
    Q_OBJECT

private slots:
    void thereIsNoneInTheFirstSecond()
    {
        DownloadPace pace;
        QVERIFY(!pace.bytesPerSecond());
        QVERIFY(!pace.timeFor(100));
        pace.note(5s, 0);
        pace.note(5s + 999ms, 1'000'000);
        QVERIFY(!pace.bytesPerSecond());
        pace.note(6s, 1'000'000);
        QCOMPARE(pace.bytesPerSecond(), std::optional(1e6));
        QCOMPARE(pace.timeFor(2'500'000), std::optional(3s));
    }

    void whatAnEarlierAttemptFetchedDoesNotCount()
    {
        DownloadPace pace;
        pace.note(0s, 100'000'000);
        pace.note(2s, 101'000'000);
        QCOMPARE(pace.bytesPerSecond(), std::optional(5e5));
    }

    void itFollowsTheLastSeconds()
    {
        DownloadPace pace;
        for (int second = 0; second <= 60; ++second) {
            pace.note(std::chrono::seconds(second), 1000 * second);
        }
        QCOMPARE(pace.bytesPerSecond(), std::optional(1000.0));
        for (int second = 1; second <= 10; ++second) {
            pace.note(std::chrono::seconds(60 + second), 60'000 + 5000 * second);
        }
        QCOMPARE(pace.bytesPerSecond(), std::optional(5000.0));
    }

    void whatStandsStillHasNone()
    {
        DownloadPace pace;
        pace.note(0s, 1000);
        pace.note(30s, 1000);
        pace.note(60s, 1000);
        QVERIFY(!pace.bytesPerSecond());
    }

    void anotherDownloadBeginsAnew()
    {
        DownloadPace pace;
        pace.note(0s, 1'000'000);
        pace.note(2s, 9'000'000);
        pace.note(3s, 500);
        QVERIFY(!pace.bytesPerSecond());
        pace.note(5s, 2500);
        QCOMPARE(pace.bytesPerSecond(), std::optional(1000.0));
        pace.forget();
        QVERIFY(!pace.bytesPerSecond());
    }

    void theTimeLeftIsSaidInWords_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << QStringLiteral("剩下不到 1 分鐘");
        QTest::newRow("59") << 59 << QStringLiteral("剩下不到 1 分鐘");
        QTest::newRow("60") << 60 << QStringLiteral("剩下約 1 分鐘");
        QTest::newRow("61: rather more than less") << 61 << QStringLiteral("剩下約 2 分鐘");
        QTest::newRow("just below an hour") << 3599 << QStringLiteral("剩下約 60 分鐘");
        QTest::newRow("an hour") << 3600 << QStringLiteral("剩下約 1 小時");
        QTest::newRow("more") << 3601 << QStringLiteral("剩下約 2 小時");
    }

    void theTimeLeftIsSaidInWords()
    {
        QFETCH(const int, seconds);
        QTEST(timeLeftText(std::chrono::seconds(seconds)), "text");
    }

    void aDownloadSaysWhatIsKnown()
    {
        DownloadPace pace;
        ModelProgress progress;
        progress.done = 12'300'000;
        QCOMPARE(downloadText(progress, pace, 0), QStringLiteral("下載中... 12.3 MB"));
        progress.total = 164'000'000;
        QCOMPARE(downloadText(progress, pace, 0), QStringLiteral("下載中... 12.3 MB / 164.0 MB"));
        pace.note(0s, 7'300'000);
        pace.note(2s, 12'300'000);
        QCOMPARE(downloadText(progress, pace, 0),
            QStringLiteral("下載中... 12.3 MB / 164.0 MB，每秒 2.5 MB，剩下約 2 分鐘"));
        QCOMPARE(downloadText(progress, pace, 300'000'000),
            QStringLiteral("下載中... 12.3 MB / 164.0 MB，每秒 2.5 MB，剩下約 4 分鐘"));
        progress.total.reset();
        QCOMPARE(downloadText(progress, pace, 0), QStringLiteral("下載中... 12.3 MB，每秒 2.5 MB"));
    }
};

LUMAPHONE_TEST(DownloadPaceTest)

} // namespace downloadpacetest

#include "DownloadPaceTest.moc"
