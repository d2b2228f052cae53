#include "bench/speech/MachineState.h"

#include <QFile>

#include <cstdlib>
#include <thread>

namespace lumaphone::bench {

namespace {

/// The load of one minute at which measurements of time are still those of a quiet machine.
constexpr double quietLoad = 0.5;

QString processorName()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("model name")) {
                return QString::fromUtf8(line.mid(line.indexOf(':') + 1)).simplified();
            }
        }
    }
    return QStringLiteral("unknown processor");
}

} // namespace

QString machineState()
{
    double load = 0;
    ::getloadavg(&load, 1);
    QString state = QStringLiteral("%1, %2 cores, load %3")
                        .arg(processorName())
                        .arg(std::thread::hardware_concurrency())
                        .arg(load, 0, 'f', 1);
    if (load > quietLoad) {
        state += QStringLiteral(" (busy: delays and shares are not those of a quiet machine)");
    }
    return state;
}

} // namespace lumaphone::bench
