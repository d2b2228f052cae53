// What the window costs: a partial result with few and with many lines, the frames of scrolling, finding,
// selecting and new lines in a long session and of searching the library, and the first frame after the
// start. A screen of 60 Hz leaves 16.7 ms for a frame.
#include "base/AtomicFile.h"
#include "photographs/Studio.h"
#include "storage/TranscriptIndex.h"
#include "support/Coroutines.h"
#include "support/PrivateDisplay.h"
#include "support/PrivateSessionBus.h"
#include "support/RunningProgram.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimeZone>

#include <benchmark/benchmark.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// A running session of that many lines, each with its translation.
void fill(Studio &studio, int lines)
{
    studio.live->startOrStop();
    studio.settle();
    for (int line = 0; line < lines; ++line) {
        const QString text = QStringLiteral("これは%1番目の文で、字幕の一行になります。").arg(line);
        studio.session.translator->translations[text]
            = QStringLiteral("這是第%1個句子，會成為一行字幕。").arg(line);
        studio.session.speech(text, true);
        studio.session.clock->advance(std::chrono::seconds(15));
    }
    studio.settle();
}

/// The open window with such a session.
struct SpokenStudio : Studio
{
    explicit SpokenStudio(int lines)
        : Studio(QStringLiteral("/dev/null"))
    {
        open();
        fill(*this, lines);
    }
};

/// Until the frame that shows what has changed is ready. The processor time is that of the main thread, which
/// renders as well; the toolkit waits some milliseconds for further changes before it does.
void nextFrame(QQuickWindow &window)
{
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
}

double mainThreadMs()
{
    timespec now {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The main thread's work for each of many frames, from what causes it until it can be seen; and what is left
/// of it without the rendering, which a graphics card takes over where there is one.
class FrameTimes
{
public:
    template<typename Action> void measure(QQuickWindow &window, Action cause)
    {
        double rendering = 0;
        double since = 0;
        const QObject context;
        QObject::connect(
            &window, &QQuickWindow::beforeRendering, &context, [&] { since = mainThreadMs(); },
            Qt::DirectConnection);
        QObject::connect(
            &window, &QQuickWindow::afterRendering, &context, [&] { rendering += mainThreadMs() - since; },
            Qt::DirectConnection);
        const double before = mainThreadMs();
        cause();
        window.update(); // a frame comes even where nothing changes
        nextFrame(window);
        const double all = mainThreadMs() - before;
        m_times.push_back(all);
        m_withoutRendering.push_back(all - rendering);
    }
    void report(benchmark::State &state)
    {
        report(state, m_times, "");
        report(state, m_withoutRendering, "unrendered_");
        state.counters["late"] = static_cast<double>(
            std::count_if(m_times.begin(), m_times.end(), [](double time) { return time > 1000.0 / 60; }));
    }

private:
    static void report(benchmark::State &state, std::vector<double> &times, const std::string &name)
    {
        std::sort(times.begin(), times.end());
        const auto at = [&times](double share) {
            return times.at(static_cast<std::size_t>(share * static_cast<double>(times.size() - 1)));
        };
        state.counters[name + "median_ms"] = at(0.5);
        state.counters[name + "p95_ms"] = at(0.95);
        state.counters[name + "worst_ms"] = at(1);
    }

    std::vector<double> m_times;
    std::vector<double> m_withoutRendering;
};

/// Through a session of 5,000 lines, by so many pixels for each frame, from its end to its beginning and
/// back.
void scrollASession(benchmark::State &state)
{
    SpokenStudio studio(5000);
    QObject *list = &studio.object(QStringLiteral("card.lines"));
    double step = -static_cast<double>(state.range(0));
    FrameTimes frames;
    for (auto _ : state) {
        const double former = list->property("contentY").toDouble();
        frames.measure(
            *studio.window, [&] { QMetaObject::invokeMethod(list, "scrollBy", Q_ARG(double, step)); });
        if (list->property("contentY").toDouble() == former) {
            step = -step;
        }
    }
    frames.report(state);
}
BENCHMARK(scrollASession)
    ->ArgName("pixels")
    ->Arg(20)
    ->Arg(200)
    ->Arg(2000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(600);

void reveal(Studio &studio, int row)
{
    if (row >= 0) {
        QMetaObject::invokeMethod(&studio.object(QStringLiteral("card.lines")), "reveal", Q_ARG(int, row));
    }
}

/// Letter by letter in the find bar over a session of 5,000 lines: texts that all, some and no lines contain.
void findInASession(benchmark::State &state)
{
    SpokenStudio studio(5000);
    TranscriptModel &transcript = *studio.live->transcript();
    const QStringList typed {QStringLiteral("字"), QStringLiteral("字幕"), QStringLiteral("第1"),
        QStringLiteral("第12"), QStringLiteral("第123"), QStringLiteral("第1234"), QStringLiteral("水"),
        QString()};
    FrameTimes frames;
    qsizetype next = 0;
    for (auto _ : state) {
        frames.measure(*studio.window, [&] {
            transcript.search(typed[next], static_cast<int>(next) * 600);
            reveal(studio, transcript.foundRow());
        });
        next = (next + 1) % typed.size();
    }
    frames.report(state);
}
BENCHMARK(findInASession)->Unit(benchmark::kMillisecond)->Iterations(240);

/// From one occurrence to the next, of 20,000 in 5,000 lines.
void lookAtTheNext(benchmark::State &state)
{
    SpokenStudio studio(5000);
    TranscriptModel &transcript = *studio.live->transcript();
    transcript.search(QStringLiteral("字"), 0);
    FrameTimes frames;
    for (auto _ : state) {
        frames.measure(*studio.window, [&] {
            transcript.lookAtNext(7);
            reveal(studio, transcript.foundRow());
        });
    }
    frames.report(state);
}
BENCHMARK(lookAtTheNext)->Unit(benchmark::kMillisecond)->Iterations(300);

/// All of 5,000 lines, and none again.
void selectASession(benchmark::State &state)
{
    SpokenStudio studio(5000);
    TranscriptModel &transcript = *studio.live->transcript();
    FrameTimes frames;
    for (auto _ : state) {
        frames.measure(*studio.window,
            [&] { transcript.hasSelection() ? transcript.clearSelection() : transcript.selectAll(); });
    }
    frames.report(state);
}
BENCHMARK(selectASession)->Unit(benchmark::kMillisecond)->Iterations(200);

/// A finished line with its translation behind 5,000 others, while nothing or something is looked for.
void addToASession(benchmark::State &state)
{
    SpokenStudio studio(5000);
    if (state.range(0) == 1) {
        studio.live->transcript()->search(QStringLiteral("字"), 4999);
    }
    FrameTimes frames;
    int line = 5000;
    for (auto _ : state) {
        const QString text = QStringLiteral("これは%1番目の文で、字幕の一行になります。").arg(++line);
        frames.measure(*studio.window, [&] { studio.session.speech(text, true); });
        state.PauseTiming();
        studio.session.clock->advance(std::chrono::seconds(15));
        studio.settle();
        state.ResumeTiming();
    }
    frames.report(state);
}
BENCHMARK(addToASession)->ArgName("finding")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(200);

/// A library whose index alone is there, with sessions of twenty lines.
void writeIndex(const QString &folder, int count)
{
    const auto layout = TranscriptLibraryLayout::at(folder + QStringLiteral("/Transcripts"));
    createFolder(layout.sessions);
    const QDateTime begin(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());
    QList<TranscriptRecordMetadata> records;
    TranscriptDocument document;
    for (int number = 0; number < count; ++number) {
        document.lines.clear();
        for (int line = 0; line < 20; ++line) {
            document.lines.append({QUuid::createUuid(),
                QStringLiteral("今日の会議の議題は%1番目の項目から始めたいと思います").arg(number + line),
                QStringLiteral("今天的會議議題，我想從第 %1 個項目開始。").arg(number + line),
                AppleSystemSpeechLanguage::japanese, begin, true});
        }
        TranscriptRecordMetadata &metadata = document.metadata;
        metadata.id = QUuid::createUuid();
        metadata.title = QStringLiteral("Lumaphone Transcript %1").arg(number);
        metadata.createdAt = begin.addSecs(-number);
        metadata.folderName = QStringLiteral("folder-%1").arg(number);
        metadata.searchText = document.searchText();
        records.append(metadata);
    }
    TranscriptIndex(layout).write(records);
}

/// Letter by letter in the search field over 10,000 records: terms that many, few and no records contain, and
/// back to the whole list.
void searchTheLibrary(benchmark::State &state)
{
    const QTemporaryDir folder;
    writeIndex(folder.path(), 10'000);
    const bool isFirst = state.range(0) == 1;
    const QStringList typed {QStringLiteral("議"), QStringLiteral("議題"), QStringLiteral("議題は1"),
        QStringLiteral("議題は12"), QStringLiteral("議題は123"), QStringLiteral("議題は1234"),
        QStringLiteral("水"), QStringLiteral("水星"), QString()};
    std::unique_ptr<Studio> studio;
    const auto open = [&] {
        studio.reset();
        studio = std::make_unique<Studio>(folder.path());
        studio->open();
        studio->content().setProperty("workspaceMode", QStringLiteral("library"));
        // The first letter comes when the library has been looked at for a moment.
        waitUntil([&] { return !studio->workspace->isPreparingSearch(); });
    };
    open();
    FrameTimes frames;
    qsizetype next = 0;
    for (auto _ : state) {
        if (isFirst) {
            state.PauseTiming();
            open();
            state.ResumeTiming();
        }
        frames.measure(*studio->window, [&] { studio->workspace->setSearchText(typed[next]); });
        if (!isFirst) {
            next = (next + 1) % typed.size();
        }
    }
    frames.report(state);
}
BENCHMARK(searchTheLibrary)->ArgName("first")->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(searchTheLibrary)->ArgName("first")->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(270);

/// A library of two sessions with so many lines each.
void saveSessions(Studio &studio, int lines)
{
    for (int session = 0; session < 2; ++session) {
        LiveTranscript live;
        live.startedAt = studio.session.clock->now();
        live.sourceLanguage = AppleSystemSpeechLanguage::japanese;
        for (int line = 0; line < lines; ++line) {
            live.lines.append(
                {QUuid::createUuid(), QStringLiteral("これは%1番目の文で、字幕の一行になります。").arg(line),
                    QStringLiteral("這是第%1個句子，會成為一行字幕。").arg(line),
                    AppleSystemSpeechLanguage::japanese, live.startedAt->addSecs(15 * line), true});
        }
        studio.library->save(live, studio.session.settings);
        studio.advance(std::chrono::minutes(1));
    }
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const double pages = file.readAll().split(' ').at(1).toDouble();
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// With two sessions of 5,000 lines each.
void openLibrary(Studio &studio)
{
    saveSessions(studio, 5000);
    studio.open();
    studio.content().setProperty("workspaceMode", QStringLiteral("library"));
    waitUntil([&] { return !studio.workspace->isPreparingSearch(); });
}

/// From one session of 5,000 lines to the other, until its first lines are seen.
void openARecord(benchmark::State &state)
{
    const QTemporaryDir folder;
    Studio studio(folder.path());
    openLibrary(studio);
    const double before = residentMegabytes();
    FrameTimes frames;
    for (auto _ : state) {
        frames.measure(
            *studio.window, [&] { studio.workspace->selectRow(1 - studio.workspace->selectedRow()); });
    }
    frames.report(state);
    state.counters["grown_mb"] = residentMegabytes() - before;
}
BENCHMARK(openARecord)->Unit(benchmark::kMillisecond)->Iterations(20);

/// Through an opened session of 5,000 lines while it is read or edited, back and forth.
void scrollARecord(benchmark::State &state)
{
    const QTemporaryDir folder;
    Studio studio(folder.path());
    openLibrary(studio);
    studio.workspace->setEditingTranscript(state.range(1) == 1);
    studio.settle();
    auto *reader = qobject_cast<QQuickItem *>(&studio.object(QStringLiteral("library.reader")));
    double step = static_cast<double>(state.range(0));
    const double before = residentMegabytes();
    FrameTimes frames;
    for (auto _ : state) {
        frames.measure(*studio.window, [&] {
            const double y = reader->property("contentY").toDouble();
            reader->setProperty("contentY", std::max(0.0, y + step));
        });
        if (reader->property("contentY").toDouble() <= 0.0 || reader->property("atYEnd").toBool()) {
            step = -step;
        }
    }
    frames.report(state);
    state.counters["grown_mb"] = residentMegabytes() - before;
}
BENCHMARK(scrollARecord)
    ->ArgNames({"pixels", "editing"})
    ->ArgsProduct({{20, 200, 2000, 50000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(300);

void aPartialResult(benchmark::State &state)
{
    QTemporaryDir folder;
    SpokenStudio studio(static_cast<int>(state.range(0)));
    const QString sentence = QStringLiteral(
        "ちょっと待って、今のアイデアはとても良いと思いますから、もう一度詳しく説明してください。");
    qsizetype length = 1;
    for (auto _ : state) {
        studio.session.speech(sentence.left(length), false);
        nextFrame(*studio.window);
        length = length < sentence.size() ? length + 1 : 1;
        if (length == 1) {
            state.PauseTiming();
            studio.session.clock->advance(std::chrono::seconds(15));
            studio.settle();
            state.ResumeTiming();
        }
    }
}
BENCHMARK(aPartialResult)
    ->Arg(10)
    ->Arg(5000)
    ->Arg(10)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200);

void theFirstFrame(benchmark::State &state)
{
    const PrivateDisplay display;
    const PrivateSessionBus bus;
    for (auto _ : state) {
        state.PauseTiming();
        const QTemporaryDir home;
        state.ResumeTiming();
        RunningProgram program(QStringLiteral(LUMAPHONE_DRIVEN), {},
            {{"HOME", home.path()}, {"XDG_CONFIG_HOME", home.path()}, {"XDG_DATA_HOME", home.path()},
                {"XDG_RUNTIME_DIR", home.path()}, {"QT_QPA_PLATFORM", "xcb"},
                {"QT_QUICK_BACKEND", "software"}});
        program.write("frame\n");
        if (!program.waitForOutput("ok")) {
            state.SkipWithError("the program showed no frame");
            return;
        }
        state.PauseTiming();
        program.write("close\n");
        program.waitForEnd();
        state.ResumeTiming();
    }
}
BENCHMARK(theFirstFrame)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
