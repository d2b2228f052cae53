#include "support/RunningProgram.h"

#include "support/Coroutines.h"

#include <QProcessEnvironment>

#include <csignal>

namespace lumaphone::test {

RunningProgram::RunningProgram(
    const QString &path, const QStringList &arguments, const QList<std::pair<QString, QString>> &environment)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : environment) {
        variables.insert(name, value);
    }
    m_process.setProcessEnvironment(variables);
    m_process.start(path, arguments);
    m_process.waitForStarted();
}

RunningProgram::~RunningProgram()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool RunningProgram::waitForOutput(const QByteArray &text)
{
    waitUntil([&] { return output().contains(text) || !isRunning(); }, 60000);
    return output().contains(text);
}

bool RunningProgram::waitForEnd(int timeoutMs)
{
    if (isRunning() && !m_process.waitForFinished(timeoutMs)) {
        m_process.kill();
        m_process.waitForFinished();
        return false;
    }
    return true;
}

void RunningProgram::write(const QByteArray &input)
{
    m_process.write(input);
    m_process.waitForBytesWritten();
}

void RunningProgram::signal(int number) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

const QByteArray &RunningProgram::output()
{
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

const QByteArray &RunningProgram::messages()
{
    m_messages += m_process.readAllStandardError();
    return m_messages;
}

QList<QByteArray> RunningProgram::outputLines()
{
    QList<QByteArray> lines = output().split('\n');
    lines.removeLast();
    return lines;
}

} // namespace lumaphone::test
