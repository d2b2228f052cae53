// The transcript library: opening and searching 10,000 records, saving and loading long sessions. The
// revision question is answered by the built-in rule, or by the helper as in the program.

#include "session/LumaphoneTranscriptProcessor.h"
#include "session/revision/RevisionRule.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/CountedUuids.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/NotingFileViewer.h"
#include "support/VirtualClock.h"

#include <QTemporaryDir>
#include <QTimeZone>

#include <benchmark/benchmark.h>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

QList<SavedTranscriptLine> spokenLines(std::int64_t count)
{
    QList<SavedTranscriptLine> lines;
    const QDateTime begin(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());
    for (std::int64_t i = 0; i < count; ++i) {
        lines.append({countedUuid(static_cast<uint>(i)),
            QStringLiteral("今日の会議の議題は%1番目の項目から始めたいと思います").arg(i * 7919),
            QStringLiteral("今天的會議議題，我想從第 %1 個項目開始。").arg(i * 7919),
            AppleSystemSpeechLanguage::japanese, begin.addSecs(4 * i), true});
    }
    return lines;
}

struct Library
{
    QTemporaryDir folder;
    VirtualClock clock;
    NotingFileViewer viewer;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    RevisionQuestion areRevisions;
    std::unique_ptr<TranscriptLibraryStore> store;

    explicit Library(RevisionQuestion question = fallbackIsRevisionOfCurrentPartial)
        : areRevisions(std::move(question))
    {
        open();
    }
    TranscriptLibraryLayout layout() const { return TranscriptLibraryLayout::at(folder.path()); }
    void open()
    {
        store = std::make_unique<TranscriptLibraryStore>(TranscriptLibraryStore::Environment {
            .layout = layout(),
            .areRevisions = areRevisions,
            .clock = clock,
            .fileViewer = viewer,
            .makeUuid = &QUuid::createUuid,
            .locale = QLocale(QLocale::Chinese, QLocale::TraditionalHanScript, QLocale::Taiwan),
        });
    }
    /// Fills the index alone, with sessions of twenty lines.
    void fill(std::int64_t count)
    {
        TranscriptDocument document;
        document.lines = spokenLines(20);
        QList<TranscriptRecordMetadata> records;
        for (std::int64_t i = 0; i < count; ++i) {
            TranscriptRecordMetadata &metadata = document.metadata;
            metadata.id = countedUuid(static_cast<uint>(i));
            metadata.title = QStringLiteral("Lumaphone Transcript %1").arg(i);
            metadata.createdAt = clock.now().addSecs(-i);
            metadata.folderName = QStringLiteral("folder-%1").arg(i);
            metadata.searchText = document.searchText();
            records.append(metadata);
        }
        TranscriptIndex(layout()).write(records);
        open();
    }
    LiveTranscript live(std::int64_t lines) const
    {
        LiveTranscript live;
        live.lines = spokenLines(lines);
        live.savedTranscriptID = countedUuid(1);
        return live;
    }
};

void openTheLibrary(benchmark::State &state)
{
    Library library;
    library.fill(state.range(0));
    for (auto _ : state) {
        library.open();
    }
}

/// What one more letter in the search field costs; the term is in none of the texts.
void filterByOneMoreLetter(benchmark::State &state)
{
    Library library;
    library.fill(state.range(0));
    library.store->filteredRecords(QStringLiteral("A"));
    for (auto _ : state) {
        benchmark::DoNotOptimize(library.store->filteredRecords(QStringLiteral("會議室")));
    }
}

/// The first letter after the start.
void filterForTheFirstTime(benchmark::State &state)
{
    Library library;
    library.fill(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        library.open();
        state.ResumeTiming();
        benchmark::DoNotOptimize(library.store->filteredRecords(QStringLiteral("會議室")));
    }
}

void saveASession(benchmark::State &state)
{
    Library library;
    const LiveTranscript live = library.live(state.range(0));
    for (auto _ : state) {
        library.store->save(live, library.settings);
    }
}

void loadASession(benchmark::State &state)
{
    Library library;
    library.store->save(library.live(state.range(0)), library.settings);
    for (auto _ : state) {
        benchmark::DoNotOptimize(library.store->loadRecord(countedUuid(1)));
    }
}

RevisionQuestion questionToTheHelper()
{
    return RevisionQuestion::aboutAll(
        [processor = LumaphoneTranscriptProcessor(QStringLiteral(LUMAPHONE_CORE_CLI))](
            const QStringList &texts) { return processor.areRevisions(texts); });
}

void saveASessionWithTheHelper(benchmark::State &state)
{
    Library library(questionToTheHelper());
    const LiveTranscript live = library.live(state.range(0));
    for (auto _ : state) {
        library.store->save(live, library.settings);
    }
}

void loadASessionWithTheHelper(benchmark::State &state)
{
    Library library(questionToTheHelper());
    library.store->save(library.live(state.range(0)), library.settings);
    for (auto _ : state) {
        benchmark::DoNotOptimize(library.store->loadRecord(countedUuid(1)));
    }
}

void compactLines(benchmark::State &state)
{
    const TranscriptCompactor compactor(fallbackIsRevisionOfCurrentPartial);
    const QList<SavedTranscriptLine> lines = spokenLines(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(compactor.compactSavedLines(lines));
    }
    state.SetComplexityN(state.range(0));
}

void saveIntoAFullLibrary(benchmark::State &state)
{
    Library library;
    library.fill(state.range(0));
    const LiveTranscript live = library.live(100);
    for (auto _ : state) {
        library.store->save(live, library.settings);
    }
}

} // namespace

BENCHMARK(openTheLibrary)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(filterByOneMoreLetter)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(filterForTheFirstTime)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveASession)->Arg(5'000)->Unit(benchmark::kMillisecond);
BENCHMARK(loadASession)->Arg(5'000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveASessionWithTheHelper)->Arg(5'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(loadASessionWithTheHelper)->Arg(5'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(saveIntoAFullLibrary)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(compactLines)
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
