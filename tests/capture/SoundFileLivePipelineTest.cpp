#include "capture/SoundFileLivePipeline.h"

#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/FakeSpeechFramework.h"
#include "capture/RecordedPipelineEvents.h"
#include "capture/SoundFileError.h"
#include "support/Coroutines.h"
#include "support/SoundFile.h"
#include "support/TestSound.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace soundfilelivepipelinetest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

using FileCase = SoundFileError::Case;

class SoundFileLivePipelineTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<FakeSpeechFramework> m_framework;
    std::shared_ptr<VirtualClock> m_clock;
    std::shared_ptr<DetachedTasks> m_detachedTasks;
    std::unique_ptr<RecordedPipelineEvents> m_events;
    std::atomic<int> m_completions = 0;
    std::atomic<int> m_eventsAtCompletion = 0;
    std::shared_ptr<SoundFileLivePipeline> m_pipeline;

    QString path(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }

    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    void makePipeline(const QString &file, SoundFilePace pace = SoundFilePace::asFastAsRecognised)
    {
        const LivePipelineServices services {m_framework, MainQueue::create(), m_detachedTasks, QLocale::c()};
        m_pipeline = SoundFileLivePipeline::create(file, AppleSystemSpeechLanguage::english, pace, m_clock,
            services, m_events->handler(), [this, events = *m_events] {
                m_eventsAtCompletion = events.count();
                ++m_completions;
            });
    }

    void start() { test::waitFor(m_pipeline->start()); }
    void stop() { test::waitFor(m_pipeline->stop()); }
    bool completes()
    {
        return waitUntil([this] { return m_completions == 1; });
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_framework = std::make_shared<FakeSpeechFramework>();
        m_clock = std::make_shared<VirtualClock>();
        m_detachedTasks = std::make_shared<DetachedTasks>();
        m_events = std::make_unique<RecordedPipelineEvents>();
        m_completions = 0;
    }

    void cleanup()
    {
        m_pipeline = nullptr;
        m_detachedTasks = nullptr;
        // Lets a reader that still sleeps notice that its pipeline is gone.
        m_clock->advance(1s);
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    void everyKindOfFileIsHeardToItsEnd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("tolerance");
        QTest::newRow("wav, 16 kHz mono") << QStringLiteral("a.wav") << 16000 << 1 << 0;
        QTest::newRow("wav, 44.1 kHz stereo") << QStringLiteral("a.wav") << 44100 << 2 << 2;
        QTest::newRow("wav, 8 kHz, eight channels") << QStringLiteral("a.wav") << 8000 << 8 << 2;
        QTest::newRow("flac, 48 kHz stereo") << QStringLiteral("a.flac") << 48000 << 2 << 2;
        QTest::newRow("ogg, 48 kHz mono") << QStringLiteral("a.ogg") << 48000 << 1 << 2;
        QTest::newRow("aiff, 96 kHz mono") << QStringLiteral("a.aiff") << 96000 << 1 << 2;
        // Its frames have a fixed length: the last one is filled up.
        QTest::newRow("mp3, 44.1 kHz stereo") << QStringLiteral("a.mp3") << 44100 << 2 << 1200;
        QTest::newRow("a name in Chinese") << QStringLiteral("第一課 聲音.wav") << 16000 << 1 << 0;
    }

    void everyKindOfFileIsHeardToItsEnd()
    {
        QFETCH(const QString, name);
        QFETCH(const int, rate);
        QFETCH(const int, channels);
        QFETCH(const int, tolerance);
        const QString file = m_folder->filePath(name);
        const auto frames = static_cast<std::size_t>(rate * 1.23);
        writeSoundFile(file, tone(440, 0.5, rate, 0, frames), rate, channels);
        makePipeline(file);
        start();
        QVERIFY(completes());
        const auto heard = m_framework->analyzer().samples();
        const double due = static_cast<double>(frames) / rate * 16000;
        QVERIFY2(std::abs(static_cast<double>(heard.size()) - due) <= tolerance,
            qPrintable(QString::number(heard.size())));
        // The tone is loud from early on to late.
        for (const std::size_t at : {std::size_t(2000), heard.size() / 2, heard.size() - 3000}) {
            const auto loudest = *std::max_element(heard.begin() + static_cast<std::ptrdiff_t>(at),
                heard.begin() + static_cast<std::ptrdiff_t>(at + 400));
            QVERIFY(std::abs(loudest - 16384) < 1000);
        }
        QVERIFY(m_events->lines().constFirst().startsWith(
            QStringLiteral("audio %1 frames, %2 Hz, %3 channel, duration 0.0")
                .arg(rate / 50)
                .arg(rate)
                .arg(channels)));
    }

    void allTextsComeBeforeTheCompletion()
    {
        writeSoundFile(path("a.wav"), std::vector<double>(800, 0.5), 16000);
        m_framework->holdsAnalyzers = true;
        makePipeline(path("a.wav"));
        start();
        m_framework->module(QStringLiteral("en_US"))->setLastText(QStringLiteral("good bye"));
        QCOMPARE(m_completions.load(), 0);
        m_framework->analyzer().release();
        QVERIFY(completes());
        // Three buffers and one text.
        QCOMPARE(m_eventsAtCompletion.load(), 4);
        QCOMPARE(m_events->lines().constLast(), QStringLiteral("english final good bye"));
    }

    void aSlowRecognizerLosesNothing()
    {
        m_framework->holdsAnalyzers = true;
        writeSoundFile(path("a.wav"), tone(440, 0.5, 16000, 0, 48000), 16000);
        makePipeline(path("a.wav"));
        start();
        QVERIFY(waitUntil([this] { return m_events->count() == 32; }));
        m_framework->analyzer().release();
        QVERIFY(completes());
        QCOMPARE(m_framework->analyzer().samples().size(), std::size_t(48000));
        QCOMPARE(m_events->count(), 150);
    }

    void theSpeedOfSoundIsKept()
    {
        writeSoundFile(path("a.wav"), tone(440, 0.5, 16000, 0, 16000), 16000);
        makePipeline(path("a.wav"), SoundFilePace::speedOfSound);
        start();
        settle();
        QCOMPARE(m_events->count(), 0);
        for (int block = 1; block <= 50; ++block) {
            m_clock->advance(19ms);
            QCOMPARE(m_events->count(), block - 1);
            m_clock->advance(1ms);
            QVERIFY(waitUntil([&] { return m_events->count() == block && m_clock->sleepers() == 1; }));
        }
        QCOMPARE(m_completions.load(), 0);
        m_clock->advance(20ms);
        QVERIFY(completes());
        QCOMPARE(m_framework->analyzer().samples().size(), std::size_t(16000));
    }

    void aLateReaderCatchesUp()
    {
        writeSoundFile(path("a.wav"), std::vector<double>(16000, 0.5), 16000);
        makePipeline(path("a.wav"), SoundFilePace::speedOfSound);
        start();
        m_clock->advance(20ms);
        QVERIFY(waitUntil([&] { return m_clock->sleepers() == 1; }));
        // The machine slept for half a second: what is due by then follows, and no more.
        m_clock->advance(500ms);
        QVERIFY(waitUntil([&] { return m_events->count() == 26 && m_clock->sleepers() == 1; }));
    }

    void aFileThatIsNoSoundIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("errorCase");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, FileCase errorCase, const char *text) {
            QTest::newRow(name) << QString::fromUtf8(name) << static_cast<int>(errorCase)
                                << QString::fromUtf8(text);
        };
        row("missing.wav", FileCase::notFound, "找不到聲音檔「%1」。");
        row("plain.txt/below.wav", FileCase::notFound, "找不到聲音檔「%1」。");
        row("nothing.wav", FileCase::empty, "聲音檔「%1」裡沒有聲音。");
        row("header-only.wav", FileCase::empty, "聲音檔「%1」裡沒有聲音。");
        row("plain.txt", FileCase::notSound, "「%1」不是可以辨識的聲音檔：");
        row("half-a-header.wav", FileCase::notSound, "「%1」不是可以辨識的聲音檔：");
        row("folder", FileCase::unreadable, "無法讀取聲音檔「%1」：");
        row("pipe", FileCase::unreadable, "無法讀取聲音檔「%1」：不是一般檔案。");
        row("slow.wav", FileCase::unsupportedFormat, "不支援聲音檔「%1」的格式：200 Hz、1 聲道。");
    }

    void aFileThatIsNoSoundIsRefused()
    {
        QFETCH(const QString, name);
        QFETCH(const int, errorCase);
        QFETCH(const QString, text);
        write("nothing.wav", {});
        write("header-only.wav", wavHeader(0, 16000));
        write("half-a-header.wav", wavHeader(1000, 16000).left(20));
        write("plain.txt", "These are words, not sounds.");
        write("slow.wav", wavHeader(1000, 200) + QByteArray(1000, '\1'));
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder")));
        QCOMPARE(::mkfifo(path("pipe").toUtf8().constData(), 0600), 0);
        const QString file = m_folder->filePath(name);
        makePipeline(file);
        const auto error = thrownBy<SoundFileError>([this] { start(); });
        QVERIFY(error);
        QCOMPARE(static_cast<int>(error->errorCase()), errorCase);
        QVERIFY2(error->errorDescription().startsWith(text.arg(file)), error->what());
        QVERIFY(m_framework->reservationLog().isEmpty());
        QCOMPARE(m_completions.load(), 0);
    }

    void aFileThatWasCutOffIsHeardAsFarAsItGoes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("wav") << QStringLiteral("a.wav");
        QTest::newRow("flac") << QStringLiteral("a.flac");
    }

    void aFileThatWasCutOffIsHeardAsFarAsItGoes()
    {
        QFETCH(const QString, name);
        const QString file = m_folder->filePath(name);
        writeSoundFile(file, tone(440, 0.5, 16000, 0, 64000), 16000);
        QVERIFY(QFile::resize(file, QFileInfo(file).size() / 2));
        makePipeline(file);
        start();
        QVERIFY(completes());
        const auto heard = m_framework->analyzer().samples().size();
        QVERIFY2(heard > 24000 && heard < 40000, qPrintable(QString::number(heard)));
        QVERIFY(m_events->lines().filter(QStringLiteral("failed")).isEmpty());
    }

    void soundThatIsNotThereIsAFailure()
    {
        const QString file = path("a.flac");
        writeSoundFile(file, tone(440, 0.5, 16000, 0, 64000), 16000);
        // Only the header and the first bytes of sound are left.
        QVERIFY(QFile::resize(file, QFileInfo(file).size() / 40));
        makePipeline(file);
        start();
        QVERIFY(waitUntil([this] { return m_completions == 1 || m_events->count() > 0; }));
        QCOMPARE(
            m_events->lines(), QStringList {QStringLiteral("failed 聲音檔「%1」裡沒有聲音。").arg(file)});
        QCOMPARE(m_completions.load(), 0);
    }

    void anErrorOfTheTranscriberEndsTheStart()
    {
        writeSoundFile(path("a.wav"), std::vector<double>(800, 0.5), 16000);
        m_framework->supportOnly({});
        makePipeline(path("a.wav"));
        QVERIFY(thrownBy<AppleSystemSpeechTranscriberError>([this] { start(); }));
        QCOMPARE(m_events->count(), 0);
    }

    void aFailingRecognizerEndsTheReading()
    {
        m_framework->holdsAnalyzers = true;
        writeSoundFile(path("a.wav"), std::vector<double>(160000, 0.5), 16000);
        makePipeline(path("a.wav"));
        start();
        QVERIFY(waitUntil([this] { return m_events->count() == 32; }));
        m_framework->analyzer().fail(QStringLiteral("broken"));
        QVERIFY(waitUntil([this] { return m_events->count() == 33; }));
        QCOMPARE(m_events->lines().constLast(), QStringLiteral("failed Apple Speech 錯誤：broken"));
        stop();
        QCOMPARE(m_completions.load(), 0);
    }

    void stoppingInTheMiddleEndsTheReading_data()
    {
        QTest::addColumn<bool>("atSpeedOfSound");
        QTest::newRow("as fast as recognised") << false;
        QTest::newRow("at the speed of sound") << true;
    }

    void stoppingInTheMiddleEndsTheReading()
    {
        QFETCH(const bool, atSpeedOfSound);
        m_framework->holdsAnalyzers = true;
        writeSilentWav(path("a.wav"), 16000 * 3600, 16000);
        makePipeline(
            path("a.wav"), atSpeedOfSound ? SoundFilePace::speedOfSound : SoundFilePace::asFastAsRecognised);
        start();
        if (atSpeedOfSound) {
            m_clock->advance(100ms);
        }
        QVERIFY(waitUntil([&] { return m_events->count() == (atSpeedOfSound ? 5 : 32); }));
        stop();
        const int events = m_events->count();
        m_clock->advance(1s);
        settle();
        QCOMPARE(m_events->count(), events);
        QCOMPARE(m_completions.load(), 0);
        QVERIFY(m_framework->reserved().isEmpty());
    }

    void stoppingBeforeStartingOrTwiceIsFine()
    {
        writeSoundFile(path("a.wav"), std::vector<double>(800, 0.5), 16000);
        makePipeline(path("a.wav"));
        stop();
        start();
        QVERIFY(completes());
        stop();
        stop();
    }

    void aStopDuringTheStartLeavesNothingRunning()
    {
        m_framework->holdsAnalyzers = true;
        writeSilentWav(path("a.wav"), 16000 * 3600, 16000);
        makePipeline(path("a.wav"));
        auto starting = m_pipeline->start();
        stop();
        // The file may have been opened before start() came to waiting for it: then reading had begun.
        const int events = m_events->count();
        test::waitFor(std::move(starting));
        settle();
        QVERIFY(m_framework->reserved().isEmpty());
        QCOMPARE(m_events->count(), events);
        QCOMPARE(m_completions.load(), 0);
    }

    void aPipelineCanBeDroppedWhileReading_data() { stoppingInTheMiddleEndsTheReading_data(); }

    void aPipelineCanBeDroppedWhileReading()
    {
        QFETCH(const bool, atSpeedOfSound);
        writeSilentWav(path("a.wav"), 16000 * 3600, 16000);
        makePipeline(
            path("a.wav"), atSpeedOfSound ? SoundFilePace::speedOfSound : SoundFilePace::asFastAsRecognised);
        start();
        m_clock->advance(20ms);
        QVERIFY(waitUntil([this] { return m_events->count() > 0; }));
        const std::weak_ptr<SoundFileLivePipeline> weak = m_pipeline;
        m_pipeline = nullptr;
        QVERIFY(weak.expired());
        m_clock->advance(1s);
        QCOMPARE(m_clock->sleepers(), std::size_t(0));
        QCOMPARE(m_completions.load(), 0);
    }
};

LUMAPHONE_TEST(SoundFileLivePipelineTest)

} // namespace soundfilelivepipelinetest

#include "SoundFileLivePipelineTest.moc"
