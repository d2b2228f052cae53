#pragma once

#include <QProcess>
#include <QStringList>

namespace lumaphone::test {

/// Another process of a test, killed with it. By convention a test's own program, started for the role of
/// LUMAPHONE_TEST_CHILD.
class ChildProcess
{
public:
    ChildProcess(const QString &program, const QStringList &arguments);
    ~ChildProcess();

    /// The next line it prints, without the line break; null when it has ended or stays silent for too long.
    QString nextLine();
    /// Ends it with SIGKILL, in the middle of whatever it does, and waits for its end.
    void kill();
    /// Waits for its end. Its exit code, or -1 if it does not end or was killed.
    int wait();
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

} // namespace lumaphone::test
