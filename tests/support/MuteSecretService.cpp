#include "support/MuteSecretService.h"

#include <QDBusMessage>

namespace lumaphone::test {

namespace {

const auto connectionName = QStringLiteral("mute secret service");

} // namespace

MuteSecretService::MuteSecretService(const PrivateSessionBus &bus)
    : m_connection(QDBusConnection::connectToBus(bus.address(), connectionName))
    , m_isThere(m_connection.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath)
          && m_connection.registerService(QStringLiteral("org.freedesktop.secrets")))
{
}

MuteSecretService::~MuteSecretService()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QString MuteSecretService::introspect(const QString & /*path*/) const
{
    return {};
}

bool MuteSecretService::handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/)
{
    message.setDelayedReply(true); // for ever
    ++m_calls;
    return true;
}

} // namespace lumaphone::test
