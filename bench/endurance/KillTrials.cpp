// Kills a process that changes one of the program's stores, at a random moment, again and again, and looks
// whether everything is there that the store had said to be saved. README.md in this folder says more.

#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "support/ChildProcess.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

using namespace lumaphone::bench;

namespace {

constexpr int mostChangesOfAChild = 1'000'000;

void print(const QString &text)
{
    std::fputs(qUtf8Printable(text + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

QString lineOf(const StoreChange &change)
{
    QJsonObject object;
    for (auto entry = change.cbegin(); entry != change.cend(); ++entry) {
        object.insert(entry.key(), entry->has_value() ? QJsonValue(**entry) : QJsonValue());
    }
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

StoreChange changeOf(const QString &line)
{
    StoreChange change;
    const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
    for (auto entry = object.constBegin(); entry != object.constEnd(); ++entry) {
        change.insert(entry.key(), entry->isNull() ? std::nullopt : std::optional(entry->toString()));
    }
    return change;
}

void carryOut(StoreContents &contents, const StoreChange &change)
{
    for (auto entry = change.cbegin(); entry != change.cend(); ++entry) {
        if (entry->has_value()) {
            contents.insert(entry.key(), **entry);
        } else {
            contents.remove(entry.key());
        }
    }
}

const KillableStore &storeOf(const QString &name)
{
    const auto found = std::find_if(killableStores().begin(), killableStores().end(),
        [&name](const KillableStore &store) { return store.name == name; });
    if (found == killableStores().end()) {
        throw BenchError(QStringLiteral("There is no store \"%1\".").arg(name));
    }
    return *found;
}

/// What this program does as a child: says each change, makes it, and says "saved" when the store does.
int changeUntilKilled(const QStringList &arguments)
{
    const auto store = storeOf(arguments.at(0)).open(arguments.at(1));
    const int number = arguments.at(2).toInt();
    std::mt19937 chance(arguments.at(3).toUInt());
    StoreContents held = store->contents();
    const auto make = [&](const StoreChange &change) {
        print(lineOf(change));
        store->make(change);
        print(QStringLiteral("saved"));
        carryOut(held, change);
    };
    print(QStringLiteral("ready"));
    if (arguments.contains(QStringLiteral("once"))) {
        for (const StoreChange &change : store->touchAll(held, number)) {
            make(change);
        }
        return 0;
    }
    for (int i = 0; i < mostChangesOfAChild; ++i) {
        make(store->plan(held, number + i, chance));
    }
    return 0;
}

/// The trials of one store, all in one folder, as a user's program lives with what it has left.
class Trials
{
public:
    Trials(const KillableStore &store, unsigned seed, std::chrono::microseconds longest)
        : m_store(store)
        , m_chance(seed)
        , m_longest(longest)
    {
    }

    /// Whether nothing was lost.
    bool run(int count)
    {
        for (int trial = 0; trial < count; ++trial) {
            killOnce(trial);
            m_mostStrays = std::max(m_mostStrays, open()->strays().size());
        }
        changeToTheEnd();
        const QStringList left = open()->strays();
        print(QStringLiteral(
            "%1: %2 kills, %3 of them in the middle of a change; %4 changes reported as saved, "
            "%5 lost or unreadable; files that nobody needs: at most %6 at a time, %7 after "
            "the next change %8")
                  .arg(m_store.name)
                  .arg(count)
                  .arg(m_interrupted)
                  .arg(m_saved)
                  .arg(m_failures)
                  .arg(m_mostStrays)
                  .arg(left.size())
                  .arg(left.mid(0, 5).join(QLatin1String(", "))));
        return m_failures == 0 && left.isEmpty();
    }

private:
    std::unique_ptr<KilledStore> open() const { return m_store.open(m_folder.path()); }

    lumaphone::test::ChildProcess started(int trial, const QString &mode)
    {
        return {QCoreApplication::applicationFilePath(),
            {QStringLiteral("--child"), m_store.name, m_folder.path(), QString::number(trial * 10'000),
                QString::number(m_chance()), mode}};
    }

    void killOnce(int trial)
    {
        auto child = started(trial, QStringLiteral("on"));
        if (child.nextLine() != QLatin1String("ready")) {
            fail(trial, QStringLiteral("The next program cannot read it."));
            return;
        }
        std::this_thread::sleep_for(
            std::chrono::microseconds(oneOf(0, static_cast<int>(m_longest.count()), m_chance)));
        child.kill();
        follow(trial, QString::fromUtf8(child.process().readAllStandardOutput()));
    }

    /// Compares what a child has said with what it has left.
    void follow(int trial, const QString &said)
    {
        StoreChange begun;
        for (const QString &line : said.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (line == QLatin1String("saved")) {
                carryOut(m_held, begun);
                begun.clear();
                ++m_saved;
            } else {
                begun = changeOf(line);
            }
        }
        m_interrupted += begun.isEmpty() ? 0 : 1;
        try {
            const StoreContents found = open()->contents();
            StoreContents after = m_held;
            carryOut(after, begun);
            QStringList names = m_held.keys() + after.keys() + found.keys();
            names.removeDuplicates();
            for (const QString &name : names) {
                const QString value = found.value(name);
                if (value != m_held.value(name) && value != after.value(name)) {
                    fail(trial,
                        QStringLiteral("\"%1\" is \"%2\", not \"%3\"").arg(name, value, m_held.value(name)));
                }
            }
            m_held = found;
        } catch (const std::exception &error) {
            fail(trial, QString::fromUtf8(error.what()));
        }
    }

    void changeToTheEnd()
    {
        auto child = started(-1, QStringLiteral("once"));
        if (child.wait() != 0) {
            fail(-1, QStringLiteral("The last program failed."));
        }
        // Nothing of it may be lost either.
        const QString said = QString::fromUtf8(child.process().readAllStandardOutput());
        follow(-1, said.section(QLatin1Char('\n'), 1));
    }

    void fail(int trial, const QString &what)
    {
        ++m_failures;
        print(QStringLiteral("%1, trial %2: %3").arg(m_store.name).arg(trial).arg(what));
    }

    const KillableStore &m_store;
    std::mt19937 m_chance;
    std::chrono::microseconds m_longest;
    QTemporaryDir m_folder;
    StoreContents m_held = m_store.open(m_folder.path())->contents();
    int m_saved = 0;
    int m_interrupted = 0;
    int m_failures = 0;
    qsizetype m_mostStrays = 0;
};

bool run(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Kills processes that change the program's stores and looks for what is lost."));
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("trials"), QStringLiteral("How often, for each store (1000)."),
                           QStringLiteral("number"), QStringLiteral("1000")},
        {QStringLiteral("seed"), QStringLiteral("The same seed kills at the same moments."),
            QStringLiteral("number"), QString::number(std::random_device {}())},
        {QStringLiteral("longest"), QStringLiteral("How long a process lives at most, in ms (50)."),
            QStringLiteral("ms"), QStringLiteral("50")}});
    parser.addPositionalArgument(QStringLiteral("stores"),
        QStringLiteral("draft, library, glossary, settings, models; without one, all."),
        QStringLiteral("[STORE...]"));
    parser.process(application);

    QStringList names = parser.positionalArguments();
    if (names.isEmpty()) {
        for (const KillableStore &store : killableStores()) {
            names.append(store.name);
        }
    }
    const unsigned seed = parser.value(QStringLiteral("seed")).toUInt();
    print(QStringLiteral("Seed %1").arg(seed));
    bool isWell = true;
    for (const QString &name : std::as_const(names)) {
        Trials trials(
            storeOf(name), seed, std::chrono::milliseconds(parser.value(QStringLiteral("longest")).toInt()));
        isWell = trials.run(parser.value(QStringLiteral("trials")).toInt()) && isWell;
    }
    return isWell;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        if (arguments.value(1) == QLatin1String("--child")) {
            return changeUntilKilled(arguments.mid(2));
        }
        return run(application) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
