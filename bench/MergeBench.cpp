// One recognised text merged into a short and a long session, with the built-in rule.

#include "session/CaptionLineMerger.h"
#include "session/revision/RevisionRule.h"
#include "support/CountedUuids.h"
#include "support/VirtualClock.h"

#include <benchmark/benchmark.h>

using namespace lumaphone;
using namespace lumaphone::test;
using enum AppleSystemSpeechLanguage;

namespace {

struct Session
{
    VirtualClock clock;
    CaptionLineMerger merger {fallbackIsRevisionOfCurrentPartial, clock, countedUuids()};

    explicit Session(std::int64_t lines)
    {
        for (std::int64_t i = 0; i < lines; ++i) {
            merger.appendCaptionLine(QStringLiteral("第%1行の字幕です").arg(i), japanese, true);
        }
    }
};

/// A partial result that grows and shrinks by one character.
void revise(benchmark::State &state)
{
    Session session(state.range(0));
    const QString text = QStringLiteral("今日は雨がたくさん降りますから傘を持って");
    session.merger.appendCaptionLine(text, japanese, false);
    qsizetype length = 0;
    for (auto _ : state) {
        length = length == 10 ? 11 : 10;
        session.merger.upsertCaptionLine(text.left(length), japanese, false);
    }
}

void findTheNewestLineByText(benchmark::State &state)
{
    const Session session(state.range(0));
    const QString absent = QStringLiteral("第0行の字幕でした");
    for (auto _ : state) {
        benchmark::DoNotOptimize(session.merger.list().newestIndexOf(absent));
    }
}

} // namespace

BENCHMARK(revise)->Arg(10)->Arg(10'000);
BENCHMARK(findTheNewestLineByText)->Arg(10)->Arg(10'000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
