#include "platform/desktop/LockedSingleInstance.h"

#include "base/AtomicFile.h"
#include "support/ChildProcess.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

namespace lockedsingleinstancetest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

void say(const char *line)
{
    std::printf("%s\n", line);
    std::fflush(stdout);
}

/// What this program does as a started instance: says its role, and "raise" with the permission whenever it
/// is asked to.
int runAsInstance(const QStringList &arguments)
{
    LockedSingleInstance instance(arguments.at(0));
    const auto raise = [](const QString &given) {
        say(qPrintable(QStringLiteral("raise ") + given));
    };
    if (instance.claim(arguments.at(1), raise) == InstanceRole::second) {
        say("second");
        return 0;
    }
    say("first");
    return QCoreApplication::exec();
}

} // namespace

class LockedSingleInstanceTest : public QObject
{
    Q_OBJECT

private slots:
    void aSecondStartRaisesTheFirst();
    void aKilledInstanceIsNoObstacle();
    void anEndedInstanceMakesRoom();
    void ofManyStartsAtOnceOneIsFirst();
    void instancesOfDifferentFoldersDoNotMeet();
    void aFirstInstanceThatHangsDoesNotHangTheSecond();
    void aPlaceThatCannotBeUsedIsAnError();
    void theCallerItselfIsRaised();

private:
    static QStringList start(const QTemporaryDir &folder)
    {
        return {QStringLiteral("LockedSingleInstanceTest.child"), folder.filePath(QStringLiteral("run")),
            QStringLiteral("the-permission")};
    }
    const QString m_program = QCoreApplication::applicationFilePath();
};

void LockedSingleInstanceTest::aSecondStartRaisesTheFirst()
{
    const QTemporaryDir folder;
    ChildProcess first(m_program, start(folder));
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    for (int again = 0; again < 3; ++again) {
        ChildProcess second(m_program, start(folder));
        QCOMPARE(second.nextLine(), QStringLiteral("second"));
        QCOMPARE(second.wait(), 0);
        QCOMPARE(first.nextLine(), QStringLiteral("raise the-permission"));
    }
}

void LockedSingleInstanceTest::aKilledInstanceIsNoObstacle()
{
    const QTemporaryDir folder;
    for (int round = 0; round < 3; ++round) {
        ChildProcess first(m_program, start(folder));
        QCOMPARE(first.nextLine(), QStringLiteral("first"));
        ChildProcess second(m_program, start(folder));
        QCOMPARE(second.nextLine(), QStringLiteral("second"));
        QCOMPARE(first.nextLine(), QStringLiteral("raise the-permission"));
        first.kill();
    }
}

void LockedSingleInstanceTest::anEndedInstanceMakesRoom()
{
    const QTemporaryDir folder;
    const QString place = folder.filePath(QStringLiteral("run"));
    {
        LockedSingleInstance instance(place);
        QVERIFY(instance.claim({}, [](const QString &) {}) == InstanceRole::first);
    }
    LockedSingleInstance next(place);
    QVERIFY(next.claim({}, [](const QString &) {}) == InstanceRole::first);
}

void LockedSingleInstanceTest::ofManyStartsAtOnceOneIsFirst()
{
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<ChildProcess>> instances;
    for (int n = 0; n < 6; ++n) {
        instances.push_back(std::make_unique<ChildProcess>(m_program, start(folder)));
    }
    int firsts = 0;
    int seconds = 0;
    for (const auto &instance : instances) {
        const QString line = instance->nextLine();
        firsts += line == QLatin1String("first") ? 1 : 0;
        seconds += line == QLatin1String("second") ? 1 : 0;
    }
    QCOMPARE(firsts, 1);
    QCOMPARE(seconds, 5);
}

void LockedSingleInstanceTest::instancesOfDifferentFoldersDoNotMeet()
{
    const QTemporaryDir one;
    const QTemporaryDir two;
    ChildProcess first(m_program, start(one));
    ChildProcess other(m_program, start(two));
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QCOMPARE(other.nextLine(), QStringLiteral("first"));
}

void LockedSingleInstanceTest::aFirstInstanceThatHangsDoesNotHangTheSecond()
{
    const QTemporaryDir folder;
    LockedSingleInstance first(folder.filePath(QStringLiteral("run")));
    QVERIFY(first.claim({}, [](const QString &) {}) == InstanceRole::first);
    // No event loop runs here while we wait for the second one.
    ChildProcess second(m_program, start(folder));
    QCOMPARE(second.nextLine(), QStringLiteral("second"));
    QCOMPARE(second.wait(), 0);
}

void LockedSingleInstanceTest::aPlaceThatCannotBeUsedIsAnError()
{
    const QTemporaryDir folder;
    replaceFile(folder.filePath(QStringLiteral("run")), "a file", Durability::renamed);
    LockedSingleInstance instance(folder.filePath(QStringLiteral("run")));
    const auto error = thrownBy<FileError>([&] { instance.claim({}, [](const QString &) {}); });
    QVERIFY(error);
    QVERIFY(error->errorDescription().contains(folder.path()));
}

void LockedSingleInstanceTest::theCallerItselfIsRaised()
{
    const QTemporaryDir folder;
    LockedSingleInstance first(folder.filePath(QStringLiteral("run")));
    int raised = 0;
    QVERIFY(first.claim({}, [&raised](const QString &) { ++raised; }) == InstanceRole::first);
    ChildProcess second(m_program, start(folder));
    QVERIFY(waitUntil([&raised] { return raised == 1; }));
    QCOMPARE(second.wait(), 0);
}

LUMAPHONE_TEST(LockedSingleInstanceTest)
LUMAPHONE_TEST_CHILD(LockedSingleInstanceTest, runAsInstance)

} // namespace lockedsingleinstancetest

#include "LockedSingleInstanceTest.moc"
