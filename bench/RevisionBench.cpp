// The revision decision: the built-in rule on short and long texts of several scripts, and one exchange with
// the helper.

#include "session/LumaphoneTranscriptProcessor.h"
#include "session/revision/RevisionRule.h"

#include <benchmark/benchmark.h>

using namespace lumaphone;

namespace {

/// Two texts of `length` characters that share all but the last tenth, which is the rule's longest way.
std::pair<QString, QString> revisedTail(const QString &alphabet, qsizetype length)
{
    QString current;
    while (current.size() < length) {
        current += alphabet;
    }
    current.truncate(length);
    QString incoming = current;
    for (qsizetype i = length - length / 10; i < length; ++i) {
        incoming[i] = alphabet[(i + 1) % alphabet.size()];
    }
    return {current, incoming};
}

void rule(benchmark::State &state, const char *alphabet)
{
    const auto [current, incoming] = revisedTail(QString::fromUtf8(alphabet), state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(fallbackIsRevisionOfCurrentPartial(current, incoming));
    }
}

void helper(benchmark::State &state)
{
    const LumaphoneTranscriptProcessor processor(QStringLiteral(LUMAPHONE_CORE_CLI));
    const auto [current, incoming] = revisedTail(QStringLiteral("今日は雨が降ります"), state.range(0));
    for (auto _ : state) {
        if (processor.coreRevisionDecision(current, incoming) == CoreRevisionDecision::noAnswer) {
            state.SkipWithError("no answer");
        }
    }
}

} // namespace

BENCHMARK_CAPTURE(rule, Latin, "The quick brown fox jumps ")->Arg(24)->Arg(200);
BENCHMARK_CAPTURE(rule, Japanese, "今日はトテモ雨が降ります")->Arg(24)->Arg(200);
BENCHMARK_CAPTURE(rule, Korean, "오늘은 비가 많이 옵니다 ")->Arg(24)->Arg(200);
BENCHMARK_CAPTURE(rule, DecomposedJapanese, "か\u3099き\u3099く\u3099")->Arg(24)->Arg(200);
BENCHMARK(helper)->Arg(24)->Arg(200)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
