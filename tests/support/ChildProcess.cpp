#include "support/ChildProcess.h"

namespace lumaphone::test {

namespace {
constexpr int mostMilliseconds = 20000;
}

ChildProcess::ChildProcess(const QString &program, const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, arguments);
    m_process.waitForStarted(mostMilliseconds);
}

ChildProcess::~ChildProcess()
{
    kill();
}

QString ChildProcess::nextLine()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(mostMilliseconds)) {
            return {};
        }
    }
    return QString::fromUtf8(m_process.readLine()).chopped(1);
}

void ChildProcess::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(mostMilliseconds);
    }
}

int ChildProcess::wait()
{
    const bool hasEnded
        = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(mostMilliseconds);
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

} // namespace lumaphone::test
