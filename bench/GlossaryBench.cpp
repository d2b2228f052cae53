#include "glossary/GlossaryYaml.h"
#include "translation/GlossarySelection.h"

#include <benchmark/benchmark.h>

using namespace lumaphone;

namespace {

LumaphoneGlossaryTerm term(const QString &source)
{
    return {.id = QUuid::createUuid(),
        .source = source,
        .target = QStringLiteral("譯法"),
        .mode = LumaphoneGlossaryTermMode::translate,
        .note = QString(),
        .isEnabled = true,
        .caseSensitive = false};
}

/// English, French, Japanese and Korean sources in turn.
QList<LumaphoneGlossaryTerm> manyTerms(qsizetype count)
{
    const QStringList forms {QStringLiteral("Product %1"), QStringLiteral("Théâtre %1"),
        QStringLiteral("株式会社ガス%1"), QStringLiteral("서울 %1")};
    QList<LumaphoneGlossaryTerm> terms;
    for (qsizetype i = 0; i < count; ++i) {
        terms.append(term(forms[i % forms.size()].arg(i)));
    }
    return terms;
}

/// The terms of one caption, looked for in a glossary of so many.
void selectTerms(benchmark::State &state, const QString &caption)
{
    const auto terms = manyTerms(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(glossaryTermsOccurring(terms, caption));
    }
}

void selectForEnglish(benchmark::State &state)
{
    selectTerms(state,
        QStringLiteral("The product 40 of this company is, as every visitor of the theatre 41 in "
                       "Paris knows, the best thing that has happened to captions since they began."));
}
BENCHMARK(selectForEnglish)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

void selectForJapanese(benchmark::State &state)
{
    selectTerms(state,
        QStringLiteral(
            "今日は株式会社ガス42の新しい製品についてご紹介します。字幕と翻訳がとても便利になりました。"));
}
BENCHMARK(selectForJapanese)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

void readYaml(benchmark::State &state)
{
    const QString yaml = encodeYAML(manyTerms(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeYAML(yaml, &QUuid::createUuid));
    }
    state.SetBytesProcessed(state.iterations() * yaml.size());
}
BENCHMARK(readYaml)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
