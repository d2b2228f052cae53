// What the window costs: a partial result with few and with many lines, and the first frame after the start.
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/PrivateDisplay.h"
#include "support/PrivateSessionBus.h"
#include "support/RunningProgram.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>

#include <benchmark/benchmark.h>

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

/// Until the frame that shows what has changed is ready. The processor time is that of the main thread, which
/// renders as well; the toolkit waits some milliseconds for further changes before it does.
void nextFrame(QQuickWindow &window)
{
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
}

void aPartialResult(benchmark::State &state)
{
    QTemporaryDir folder;
    Studio studio(QStringLiteral("/dev/null"));
    studio.open();
    fill(studio, static_cast<int>(state.range(0)));
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
