#include "support/OwnedProcess.h"

#include <QElapsedTimer>

#include <sys/prctl.h>

#include <csignal>
#include <stdexcept>

namespace lumaphone::test {

std::unique_ptr<QProcess> makeOwnedProcess()
{
    auto process = std::make_unique<QProcess>();
    process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    return process;
}

void endProcess(QProcess &process)
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(processLimitMs);
    }
}

void failProcess(const QString &what, const QByteArray &said)
{
    throw std::runtime_error((what + QStringLiteral(": ") + QString::fromUtf8(said)).toStdString());
}

void awaitProcess(QProcess &process, const QString &failure, const std::function<bool()> &isReady,
    const std::function<QByteArray()> &said)
{
    constexpr int pollMs = 20;
    QElapsedTimer timer;
    timer.start();
    while (!isReady()) {
        // Its end is noticed, or a moment passes.
        const bool hasEnded = process.state() == QProcess::NotRunning || process.waitForFinished(pollMs);
        if (hasEnded || timer.hasExpired(processLimitMs)) {
            const QByteArray words = said();
            const bool neverRan = process.error() == QProcess::FailedToStart;
            endProcess(process);
            failProcess(failure, neverRan ? process.errorString().toUtf8() : words);
        }
    }
}

QByteArray outputOf(
    const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    const auto process = makeOwnedProcess();
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    if (!process->waitForFinished(processLimitMs) || process->exitStatus() != QProcess::NormalExit
        || process->exitCode() != 0) {
        failProcess(
            program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')), process->readAllStandardError());
    }
    return process->readAllStandardOutput();
}

} // namespace lumaphone::test
