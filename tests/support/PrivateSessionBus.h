#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace lumaphone::test {

/// A session bus of the test's own, on which nothing runs but what the test starts. From its construction
/// to its end it is the session bus of this process; make it before anything asks for one.
class PrivateSessionBus
{
public:
    PrivateSessionBus();
    ~PrivateSessionBus();

    bool isRunning() const;
    /// Ends it abruptly, as a crash or the end of a login would.
    void kill();
    const QString &address() const { return m_address; }
    /// Whether someone owns the name.
    bool hasService(const QString &name) const;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_daemon;
    QString m_address;
    QByteArray m_formerAddress;
};

} // namespace lumaphone::test
