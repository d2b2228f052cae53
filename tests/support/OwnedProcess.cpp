#include "support/OwnedProcess.h"

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

} // namespace lumaphone::test
