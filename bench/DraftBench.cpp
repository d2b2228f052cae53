// Saving the draft after one more recognised text, in sessions of several lengths: a partial result (renamed)
// and a final one (flushed to the disk).

#include "session/CaptionLineMerger.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "session/revision/RevisionRule.h"
#include "support/CountedUuids.h"
#include "support/VirtualClock.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;
using enum AppleSystemSpeechLanguage;

namespace {

struct Session
{
    QTemporaryDir folder;
    LumaphoneSessionDraftStore store {folder.path()};
    VirtualClock clock;
    CaptionLineMerger merger {fallbackIsRevisionOfCurrentPartial, clock, countedUuids()};

    explicit Session(std::int64_t lines)
    {
        for (std::int64_t i = 0; i < lines; ++i) {
            merger.appendCaptionLine(
                QStringLiteral("第%1行の字幕はこのくらいの長さになります").arg(i), japanese, true);
            merger.setTranslation(
                merger.captionLines().size() - 1, QStringLiteral("第 %1 行字幕的譯文大約有這麼長。").arg(i));
        }
        merger.clearCurrentLine();
        clock.stepWallClock(20s);
        save();
    }

    void save()
    {
        store.save({
            .lines = merger.captionLines(),
            .sourceLanguage = japanese,
            .detectedLanguage = japanese,
            .startedAt = clock.now(),
            .endedAt = std::nullopt,
            .updatedAt = clock.now(),
        });
    }
};

void partialResult(benchmark::State &state)
{
    Session session(state.range(0));
    const QString text = QStringLiteral("今日は雨がたくさん降りますから傘を持って");
    qsizetype length = 0;
    for (auto _ : state) {
        length = length == 10 ? 11 : 10;
        session.merger.upsertCaptionLine(text.left(length), japanese, false);
        session.save();
    }
}

void translationOfAnOldLine(benchmark::State &state)
{
    Session session(state.range(0));
    int count = 0;
    for (auto _ : state) {
        session.merger.setTranslation(state.range(0) / 2, QStringLiteral("譯文 %1").arg(++count));
        session.save();
    }
}

void finalResult(benchmark::State &state)
{
    Session session(state.range(0));
    int count = 0;
    for (auto _ : state) {
        session.merger.appendCaptionLine(QStringLiteral("終わり%1").arg(++count), japanese, true);
        session.save();
    }
}

} // namespace

BENCHMARK(partialResult)->Arg(10)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(translationOfAnOldLine)
    ->Arg(10)
    ->Arg(1000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(finalResult)->Arg(10)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
