// One more recognised text through the whole session, draft included, in sessions of several lengths: a
// partial result (renamed) and a final one (flushed to the disk).

#include "support/CaptionLines.h"
#include "support/LiveSession.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

/// A running session of so many lines, restored from a draft.
struct LongSession
{
    QTemporaryDir folder;
    LiveSession session {folder.path()};

    explicit LongSession(std::int64_t count)
    {
        LumaphoneSessionDraft draft;
        for (std::int64_t i = 0; i < count; ++i) {
            const QString text = QStringLiteral("第%1行の字幕はこのくらいの長さになります").arg(i);
            draft.lines.append(captionLine(uint(1'000'000 + i), text));
        }
        draft.updatedAt = session.clock->now();
        LumaphoneSessionDraftStore(folder.path()).save(draft);
        session.make();
        session.clock->stepWallClock(1h);
        session.partial("今日");
    }
};

void partialResult(benchmark::State &state)
{
    LongSession longSession(state.range(0));
    bool isLonger = false;
    for (auto _ : state) {
        isLonger = !isLonger;
        longSession.session.partial(isLonger ? "今日は雨が降り" : "今日は雨が");
    }
}

void finalResult(benchmark::State &state)
{
    LongSession longSession(state.range(0));
    int count = 0;
    for (auto _ : state) {
        longSession.session.clock->stepWallClock(20s);
        longSession.session.speech(QStringLiteral("%1番目の文の終わり").arg(++count), true);
    }
}

} // namespace

BENCHMARK(partialResult)->Arg(10)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(finalResult)->Arg(10)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
