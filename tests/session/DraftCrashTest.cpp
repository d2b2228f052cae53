#include "session/CaptionLineMerger.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "session/revision/RevisionRule.h"
#include "support/CountedUuids.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <new>
#include <random>
#include <thread>

namespace draftcrashtest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

/// How far the child came, in memory that outlives it.
struct Progress
{
    std::atomic<int> finalLines = 0;
    std::atomic<int> saves = 0;
};

QString sentence(int number)
{
    return QStringLiteral("%1番目の文はここで終わります").arg(number);
}

/// Speaks sentences without end: two partial results and a final one each, then a translation.
[[noreturn]] void captionUntilKilled(const QString &folder, Progress &progress)
{
    LumaphoneSessionDraftStore store(folder);
    VirtualClock clock;
    CaptionLineMerger merger(fallbackIsRevisionOfCurrentPartial, clock, countedUuids());
    const auto save = [&] {
        store.save({
            .lines = merger.captionLines(),
            .sourceLanguage = AppleSystemSpeechLanguage::japanese,
            .detectedLanguage = AppleSystemSpeechLanguage::japanese,
            .startedAt = clock.now(),
            .endedAt = std::nullopt,
            .updatedAt = clock.now(),
        });
        ++progress.saves;
    };
    for (int number = 1;; ++number) {
        clock.stepWallClock(20s);
        const QString text = sentence(number);
        for (const qsizetype length : {qsizetype(4), qsizetype(8), text.size()}) {
            merger.upsertCaptionLine(
                text.left(length), AppleSystemSpeechLanguage::japanese, length == text.size());
            save();
        }
        merger.clearCurrentLine();
        progress.finalLines = number;
        merger.setTranslation(merger.captionLines().size() - 1, QStringLiteral("第 %1 句").arg(number));
        save();
    }
}

} // namespace

class DraftCrashTest : public QObject
{
    Q_OBJECT

private slots:
    void everyLineThatWasFinalSurvivesTheEndOfTheProcessAtAnyMoment()
    {
        QTemporaryDir folder;
        void *shared
            = ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        QVERIFY(shared != MAP_FAILED);
        std::mt19937 random(20260301);
        int savesSeen = 0;
        for (int round = 0; round < 2000; ++round) {
            auto *progress = new (shared) Progress;
            const QString root = folder.filePath(QStringLiteral("Drafts"));
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                captionUntilKilled(root, *progress);
            }
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
            ::kill(child, SIGKILL);
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

            LumaphoneSessionDraftStore store(root);
            const auto draft = store.load();
            savesSeen += progress->saves;
            if (progress->saves > 0) {
                QVERIFY(draft);
                QVERIFY(draft->lines.size() >= progress->finalLines);
            }
            for (int line = 0; line < progress->finalLines; ++line) {
                QVERIFY(draft->lines[line].isFinal);
                QCOMPARE(draft->lines[line].sourceText, sentence(line + 1));
            }
            store.clear();
            QVERIFY(QDir(root).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
        }
        ::munmap(shared, sizeof(Progress));
        QVERIFY2(savesSeen > 2000, qPrintable(QString::number(savesSeen)));
    }
};

LUMAPHONE_TEST(DraftCrashTest)

} // namespace draftcrashtest

#include "DraftCrashTest.moc"
