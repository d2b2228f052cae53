#pragma once

#include "support/PrivateSessionBus.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace lumaphone::test {

/// A real keyring daemon on a private session bus, with a login collection of its own.
class PrivateKeyring
{
public:
    explicit PrivateKeyring(const PrivateSessionBus &bus);
    ~PrivateKeyring();

    /// Starts it with its collection unlocked, and waits for its answer.
    void start();
    /// Ends it abruptly. Its items stay in its files.
    void kill();
    /// Locks the login collection. True if it is locked afterwards.
    bool lock();
    /// Number of items in the login collection, or -1.
    int itemCount() const;
    /// Labels and attributes of all items, as one text.
    QString describeItems() const;
    /// What the daemon has printed.
    QByteArray output();

private:
    const PrivateSessionBus &m_bus;
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_daemon;
    QByteArray m_output;
};

} // namespace lumaphone::test
