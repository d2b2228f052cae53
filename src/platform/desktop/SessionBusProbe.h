#pragma once

#include "platform/MachineFacts.h"

#include <QDBusConnection>

namespace lumaphone {

/// Looks at services of the session's bus without starting one or making it ask the user. A service that
/// does not answer is waited for half a second.
class SessionBusProbe
{
public:
    explicit SessionBusProbe(QDBusConnection bus);

    KeyringFacts keyring() const;
    ServiceState portals() const;

private:
    ServiceState state(const QString &service) const;

    QDBusConnection m_bus;
};

} // namespace lumaphone
