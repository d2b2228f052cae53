// How well, how promptly, how calmly and at what cost the program captions human speech, for each engine that
// is installed. README.md in this folder says how to run it.

#include "bench/speech/MachineState.h"
#include "bench/speech/QuietCaptions.h"
#include "bench/speech/ScorecardColumn.h"
#include "bench/speech/Soak.h"
#include "bench/speech/Waiting.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace lumaphone;
using namespace lumaphone::bench;

namespace {

struct Choices
{
    std::vector<Engine> engines;
    TableFormat format = TableFormat::text;
    bool printsTexts = false;
    QString list;
    unsigned seed = 1;
    ScorecardOptions scorecard;
    std::optional<double> soakMinutes;
    std::optional<double> quietMinutes;
    QString keepFolder;
    QStringList files;
};

QCommandLineOption valueOption(const char *name, const char *description, const char *value)
{
    return {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)};
}

/// A number above zero, or none if the option was not given.
std::optional<double> number(const QCommandLineParser &parser, const QString &name)
{
    if (!parser.isSet(name)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double value = parser.value(name).toDouble(&isNumber);
    if (!isNumber || value <= 0) {
        throw BenchError(QStringLiteral("--%1 needs a number above zero.").arg(name));
    }
    return value;
}

/// Those that were asked for; otherwise those that are there.
std::vector<Engine> chosenEngines(const QStringList &names)
{
    std::vector<Engine> engines;
    for (const QString &name : names) {
        const auto found = std::find_if(allEngines().begin(), allEngines().end(),
            [&name](Engine engine) { return nameOf(engine) == name; });
        if (found == allEngines().end()) {
            throw BenchError(QStringLiteral("There is no engine \"%1\".").arg(name));
        }
        engines.push_back(*found);
    }
    if (names.isEmpty()) {
        for (const Engine engine : allEngines()) {
            if (const auto missing = ProgramUnderTest::whatIsMissing(engine)) {
                std::printf("Without %s: %s\n", qUtf8Printable(titleOf(engine)), qUtf8Printable(*missing));
            } else {
                engines.push_back(engine);
            }
        }
    }
    return engines;
}

Choices choicesFrom(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Measures captions of human speech. Without options: the scorecard, in about five minutes."));
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("markdown"), QStringLiteral("Print tables as Markdown.")},
        {QStringLiteral("texts"), QStringLiteral("Print what was heard as well.")},
        valueOption(
            "engine", "bundled, four-languages or pocketsphinx; without it, all that are there.", "name"),
        valueOption(
            "recordings", "A list of recordings with transcripts that takes the place of Debian's.", "list"),
        valueOption("rounds", "How often the recordings are played (1).", "number"),
        valueOption("steady", "How long somebody speaks without a pause, in minutes (0.5).", "minutes"),
        valueOption("soak", "Instead: the recordings in an order by chance for so many minutes.", "minutes"),
        valueOption("quiet", "Instead: sounds in which nobody speaks, so many minutes of each.", "minutes"),
        valueOption("keep", "With --quiet: where its sounds stay, to be listened to.", "folder"),
        valueOption("seed", "Another order, other sounds (1).", "number")});
    parser.addPositionalArgument(QStringLiteral("files"),
        QStringLiteral("With --quiet: further sound files."), QStringLiteral("[FILE...]"));
    parser.process(application);

    Choices choices;
    choices.soakMinutes = number(parser, QStringLiteral("soak"));
    choices.quietMinutes = number(parser, QStringLiteral("quiet"));
    choices.seed = static_cast<unsigned>(number(parser, QStringLiteral("seed")).value_or(choices.seed));
    choices.scorecard.rounds
        = static_cast<int>(std::ceil(number(parser, QStringLiteral("rounds")).value_or(1)));
    choices.scorecard.steadyMinutes
        = number(parser, QStringLiteral("steady")).value_or(choices.scorecard.steadyMinutes);
    choices.printsTexts = parser.isSet(QStringLiteral("texts"));
    choices.list = parser.value(QStringLiteral("recordings"));
    choices.keepFolder = parser.value(QStringLiteral("keep"));
    choices.files = parser.positionalArguments();
    choices.format = parser.isSet(QStringLiteral("markdown")) ? TableFormat::markdown : TableFormat::text;
    choices.engines = chosenEngines(parser.values(QStringLiteral("engine")));
    return choices;
}

void print(const QString &text)
{
    std::fputs(qUtf8Printable(text), stdout);
    std::fflush(stdout);
}

void printTexts(const std::vector<ScorecardColumn> &columns, const test::SpokenRecordings &speech)
{
    for (std::size_t i = 0; i < speech.recordings.size(); ++i) {
        print(QStringLiteral("\n%1\n").arg(speech.recordings[i].transcript));
        for (const ScorecardColumn &column : columns) {
            print(QStringLiteral("    %1: %2\n").arg(column.title, column.files.texts.at(qsizetype(i))));
        }
    }
    print(QStringLiteral("\nPlayed\n"));
    for (const ScorecardColumn &column : columns) {
        print(QStringLiteral("    %1: %2\n").arg(column.title, column.playedText));
        for (const QString &delays : column.live ? column.live->delayTexts : QStringList()) {
            print(QStringLiteral("        %1\n").arg(delays));
        }
    }
}

void printScorecard(const Choices &choices, const test::SpokenRecordings &speech)
{
    const SoundServer server;
    std::vector<ScorecardColumn> columns;
    for (const Engine engine : choices.engines) {
        const ProgramUnderTest program(engine);
        columns.push_back(measure(server, program, speech, choices.scorecard));
    }
    tellProgress(QStringLiteral("pocketsphinx_continuous"));
    if (const auto peer = peerScores(speech)) {
        ScorecardColumn column;
        column.title = QStringLiteral("pocketsphinx_continuous");
        column.files = *peer;
        columns.push_back(column);
    }
    print(scorecardTable(columns).text(choices.format));
    if (choices.printsTexts) {
        printTexts(columns, speech);
    }
}

void printSoak(const Choices &choices, const test::SpokenRecordings &speech)
{
    const SoundServer server;
    for (const Engine engine : choices.engines) {
        const ProgramUnderTest program(engine);
        print(QStringLiteral("\n%1\n").arg(titleOf(engine)));
        print(soak(server, program, speech, *choices.soakMinutes, choices.seed).text(choices.format));
    }
}

void printQuiet(const Choices &choices, AppleSystemSpeechLanguage language)
{
    const QuietOptions options {*choices.quietMinutes, choices.seed, choices.keepFolder, choices.files};
    for (const Engine engine : choices.engines) {
        const ProgramUnderTest program(engine);
        TextTable table({titleOf(engine), QStringLiteral("minutes"), QStringLiteral("lines")});
        QString texts;
        for (const QuietCaptions &captions : quietCaptions(program, language, options)) {
            table.add({captions.sound, QString::number(captions.minutes, 'f', 1),
                captions.lines.isEmpty() ? QStringLiteral("none") : QString::number(captions.lines.size())});
            for (const QString &line : captions.lines) {
                texts += QStringLiteral("%1: %2\n").arg(captions.sound, line);
            }
        }
        print(QLatin1Char('\n') + table.text(choices.format) + texts);
    }
}

void run(const Choices &choices)
{
    print(machineState() + QLatin1Char('\n'));
    const QTemporaryDir folder;
    const test::SpokenRecordings speech = choices.list.isEmpty() ? test::debianRecordings(folder.path())
                                                                 : test::listedRecordings(choices.list);
    if (choices.quietMinutes) {
        printQuiet(choices, speech.language);
        return;
    }
    print(QStringLiteral("%1 recordings, %2 s\n\n")
              .arg(speech.recordings.size())
              .arg(speech.seconds(), 0, 'f', 0));
    if (choices.soakMinutes) {
        printSoak(choices, speech);
    } else {
        printScorecard(choices, speech);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    handleInterruption();
    try {
        run(choicesFrom(application));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
