#include "base/CoreDumps.h"

#include "support/Coroutines.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

#include <optional>

namespace coredumpstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The smaller of the two limits, as the system words it.
QByteArray coreFileLimit(qint64 process)
{
    QFile limits(QStringLiteral("/proc/%1/limits").arg(process));
    if (!limits.open(QIODevice::ReadOnly)) {
        return {};
    }
    for (const QByteArray &line : limits.readAll().split('\n')) {
        if (line.startsWith("Max core file size")) {
            return line.simplified().split(' ').at(4);
        }
    }
    return {};
}

} // namespace

class CoreDumpsTest : public QObject
{
    Q_OBJECT

private slots:
    void aCrashLeavesNoMemoryOnTheDisk()
    {
        const QTemporaryDir home;
        // It waits for a key on its standard input.
        const RunningProgram program(LUMAPHONE_CLI, {"key", "set"}, {{"HOME", home.path()}});
        QVERIFY(waitUntil([&] { return coreFileLimit(program.processId()) == "1"; }));
    }

    void whoDebugsMayHaveThem()
    {
        const auto hardLimit = [] {
            rlimit limit {};
            return ::getrlimit(RLIMIT_CORE, &limit) == 0 ? std::optional(limit.rlim_max) : std::nullopt;
        };
        const auto before = hardLimit();
        QVERIFY(before && *before != 1);
        qputenv("LUMAPHONE_CORE_DUMPS", "1");
        forgoCoreDumps();
        QCOMPARE(hardLimit(), before);
        qunsetenv("LUMAPHONE_CORE_DUMPS");
        forgoCoreDumps();
        QCOMPARE(hardLimit(), std::optional<rlim_t>(1));
    }
};

LUMAPHONE_TEST(CoreDumpsTest)

} // namespace coredumpstest

#include "CoreDumpsTest.moc"
