// Half an hour, or as long as one likes, in which everything goes wrong. README.md in this folder says more.

#include "bench/endurance/RoughSession.h"
#include "bench/speech/Waiting.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <random>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // A shell's background job ignores it, and what it starts would, too.
    std::signal(SIGINT, SIG_DFL);
    lumaphone::bench::handleInterruption();
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Captions for a long time in which sound, services, speech host and program fail."));
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("minutes"), QStringLiteral("How long (30)."), QStringLiteral("number"),
                           QStringLiteral("30")},
        {QStringLiteral("seed"), QStringLiteral("The same seed makes the same choices."),
            QStringLiteral("number"), QString::number(std::random_device {}())}});
    parser.process(application);
    const unsigned seed = parser.value(QStringLiteral("seed")).toUInt();
    std::printf("Seed %u\n", seed);
    try {
        const std::chrono::seconds length(
            static_cast<int>(60 * parser.value(QStringLiteral("minutes")).toDouble()));
        return lumaphone::bench::RoughSession(length, seed).run() ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
