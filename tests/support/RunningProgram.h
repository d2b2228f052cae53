#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace lumaphone::test {

/// A program of the project run by a test, with what it prints.
class RunningProgram
{
public:
    /// Starts it with `environment` added to the test's own.
    RunningProgram(const QString &path, const QStringList &arguments,
        const QList<std::pair<QString, QString>> &environment = {});
    ~RunningProgram();

    /// Waits until the standard output contains `text`; false when the program ends or a minute passes first.
    bool waitForOutput(const QByteArray &text);
    /// Waits for the end; false after the time limit, which also kills the program.
    bool waitForEnd(int timeoutMs = 60000);
    void write(const QByteArray &input);
    void closeInput() { m_process.closeWriteChannel(); }
    void signal(int number) const;

    const QByteArray &output();
    const QByteArray &messages();
    QList<QByteArray> outputLines();
    int exitCode() const { return m_process.exitCode(); }
    bool crashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    qint64 processId() const { return m_process.processId(); }

private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_messages;
};

} // namespace lumaphone::test
