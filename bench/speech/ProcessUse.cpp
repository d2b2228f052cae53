#include "bench/speech/ProcessUse.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QList>

#include <unistd.h>

#include <vector>

namespace lumaphone::bench {

namespace {

QByteArray procFile(pid_t process, const QString &name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The fields of /proc/N/stat behind the name, which may contain anything.
struct ProcessStat
{
    QByteArray name;
    pid_t parent = 0;
    double ownTicks = 0;
    double endedChildrenTicks = 0;
    QByteArray startTime;
    bool hasEnded = false; ///< and waits for its parent to notice
};

std::optional<ProcessStat> statOf(pid_t process)
{
    const QByteArray content = procFile(process, QStringLiteral("stat"));
    const qsizetype nameBegin = content.indexOf('(') + 1;
    const qsizetype nameEnd = content.lastIndexOf(')');
    const QList<QByteArray> fields = content.mid(nameEnd + 2).split(' ');
    if (nameEnd < 0 || fields.size() < 20) {
        return std::nullopt;
    }
    return ProcessStat {content.mid(nameBegin, nameEnd - nameBegin), fields[1].toInt(),
        fields[11].toDouble() + fields[12].toDouble(), fields[13].toDouble() + fields[14].toDouble(),
        fields[19], fields[0] == "Z"};
}

std::vector<pid_t> childrenOf(pid_t process)
{
    std::vector<pid_t> children;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const pid_t candidate = entry.toInt();
        const auto stat = candidate > 0 ? statOf(candidate) : std::nullopt;
        if (stat && stat->parent == process) {
            children.push_back(candidate);
        }
    }
    return children;
}

double ticksWithChildren(pid_t process)
{
    const auto stat = statOf(process);
    double ticks = stat ? stat->ownTicks + stat->endedChildrenTicks : 0;
    for (const pid_t child : childrenOf(process)) {
        ticks += ticksWithChildren(child);
    }
    return ticks;
}

double secondsOf(double ticks)
{
    return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

} // namespace

ProcessMemory memoryOf(pid_t process)
{
    ProcessMemory memory;
    for (const QByteArray &line : procFile(process, QStringLiteral("status")).split('\n')) {
        const double megabytes
            = line.mid(line.indexOf(':') + 1).simplified().split(' ').constFirst().toDouble() / 1024;
        if (line.startsWith("VmRSS:")) {
            memory.residentMB = megabytes;
        } else if (line.startsWith("VmHWM:")) {
            memory.peakMB = megabytes;
        }
    }
    return memory;
}

double cpuSecondsOf(pid_t process)
{
    const auto stat = statOf(process);
    return stat ? secondsOf(stat->ownTicks) : 0;
}

double cpuSecondsWithChildren(pid_t process)
{
    return secondsOf(ticksWithChildren(process));
}

std::vector<KnownProcess> descendantsOf(pid_t process)
{
    std::vector<KnownProcess> descendants;
    for (const pid_t child : childrenOf(process)) {
        if (const auto stat = statOf(child)) {
            descendants.push_back({child, stat->name, stat->startTime});
        }
        const auto further = descendantsOf(child);
        descendants.insert(descendants.end(), further.begin(), further.end());
    }
    return descendants;
}

bool isRunning(const KnownProcess &process)
{
    const auto stat = statOf(process.id);
    return stat && stat->startTime == process.startTime && !stat->hasEnded;
}

std::optional<pid_t> speechHostOf(pid_t program)
{
    for (const pid_t child : childrenOf(program)) {
        // The kernel keeps 15 characters of a name.
        const auto stat = statOf(child);
        if (stat && stat->name == QByteArrayLiteral("lumaphone-speech-host").left(15)) {
            return child;
        }
    }
    return std::nullopt;
}

} // namespace lumaphone::bench
