// How long the program takes from being asked to end until it has ended, in each state it can be in.
// README.md in this folder says more.

#include "bench/endurance/EndingTrials.h"
#include "bench/speech/Statistics.h"
#include "bench/speech/TextTable.h"
#include "bench/speech/Waiting.h"
#include "support/PrivateDisplay.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <random>

using namespace lumaphone::bench;

namespace {

constexpr double longestSeconds = 3;

QString seconds(double value)
{
    return QStringLiteral("%1 s").arg(value, 0, 'f', 2);
}

/// Whether every end came soon, and of all that had been started.
bool run(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures what ending the program costs."));
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("rounds"), QStringLiteral("How often, in each state (100)."),
                           QStringLiteral("number"), QStringLiteral("100")},
        {QStringLiteral("window"), QStringLiteral("The window instead of the terminal.")},
        {QStringLiteral("seed"), QStringLiteral("The same seed chooses the same moments."),
            QStringLiteral("number"), QString::number(std::random_device {}())}});
    parser.addPositionalArgument(QStringLiteral("states"),
        QStringLiteral("starting, listening, translating, endpoint, host; without one, all."),
        QStringLiteral("[STATE...]"));
    parser.process(application);
    const unsigned seed = parser.value(QStringLiteral("seed")).toUInt();
    const int rounds = parser.value(QStringLiteral("rounds")).toInt();
    std::printf("Seed %u\n", seed);

    std::unique_ptr<lumaphone::test::PrivateDisplay> display;
    if (parser.isSet(QStringLiteral("window"))) {
        display = std::make_unique<lumaphone::test::PrivateDisplay>();
    }
    EndingTrials trials(display ? EndedProgram::window : EndedProgram::terminal, seed);
    TextTable table(
        {QString(), QStringLiteral("rounds"), QStringLiteral("median"), QStringLiteral("greatest")});
    bool isWell = rounds > 0;
    for (const EndingState &state : endingStates()) {
        if (!parser.positionalArguments().isEmpty() && !parser.positionalArguments().contains(state.name)) {
            continue;
        }
        tellProgress(state.title);
        std::vector<double> times;
        double greatest = 0;
        for (int round = 0; round < rounds; ++round) {
            times.push_back(trials.secondsToEnd(state));
            greatest = std::max(greatest, times.back());
        }
        table.add(
            {state.title, QString::number(times.size()), seconds(percentile(times, 0.5)), seconds(greatest)});
        isWell = isWell && greatest < longestSeconds;
    }
    std::fputs(qUtf8Printable(table.text(TableFormat::text)), stdout);
    std::printf("Processes left: %s\n", qUtf8Printable(trials.left().join(QStringLiteral(", "))));
    return isWell && trials.left().isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // A shell's background job ignores it, and what it starts would, too.
    std::signal(SIGINT, SIG_DFL);
    handleInterruption();
    try {
        return run(application) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
