#pragma once

#include "support/PrivateSessionBus.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>

namespace lumaphone::test {

/// Owns the name of the keyring on a private session bus, takes every call and answers none.
class MuteSecretService final : public QDBusVirtualObject
{
public:
    /// Nobody else owns the name.
    explicit MuteSecretService(const PrivateSessionBus &bus);
    ~MuteSecretService() override;

    bool isThere() const { return m_isThere; }
    /// Calls so far. The event loop must run.
    int calls() const { return m_calls; }

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QDBusConnection m_connection;
    bool m_isThere;
    int m_calls = 0;
};

} // namespace lumaphone::test
