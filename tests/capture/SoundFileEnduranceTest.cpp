#include "capture/FakeSpeechFramework.h"
#include "capture/SoundFileLivePipeline.h"
#include "support/Coroutines.h"
#include "support/SoundFile.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

namespace soundfileendurancetest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The most memory that the process has held so far.
qint64 peakMemoryKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').constFirst().toLongLong();
        }
    }
    return -1;
}

} // namespace

class SoundFileEnduranceTest : public QObject
{
    Q_OBJECT

private slots:
    void tenHoursOfSilenceNeedNoMoreMemoryThanAMinute()
    {
        constexpr int rate = 8000;
        const QTemporaryDir folder;
        const auto framework = std::make_shared<FakeSpeechFramework>();
        framework->keepsSamples = false;
        const LivePipelineServices services {
            framework, MainQueue::create(), std::make_shared<DetachedTasks>(), QLocale::c()};
        std::atomic<std::int64_t> events = 0;
        const auto hear = [&](const QString &name, std::int64_t seconds) {
            const QString path = folder.filePath(name);
            writeSilentWav(path, seconds * rate, rate);
            std::atomic<bool> completed = false;
            const auto pipeline = SoundFileLivePipeline::create(
                path, AppleSystemSpeechLanguage::english, SoundFilePace::asFastAsRecognised,
                std::make_shared<VirtualClock>(), services,
                [&events](const SystemAudioPipelineEvent &) { ++events; },
                [&completed] { completed = true; });
            test::waitFor(pipeline->start());
            QVERIFY(waitUntil([&completed] { return completed.load(); }, 380'000));
            test::waitFor(pipeline->stop());
        };
        hear(QStringLiteral("minute.wav"), 60);
        const qint64 afterAMinute = peakMemoryKiB();
        QVERIFY(afterAMinute > 0);
        events = 0;
        hear(QStringLiteral("ten-hours.wav"), 36000);
        QCOMPARE(events.load(), std::int64_t(36000 * 50));
        const qint64 growth = peakMemoryKiB() - afterAMinute;
        QVERIFY2(growth < 4096, qPrintable(QStringLiteral("%1 KiB more").arg(growth)));
    }
};

LUMAPHONE_TEST(SoundFileEnduranceTest)

} // namespace soundfileendurancetest

#include "SoundFileEnduranceTest.moc"
