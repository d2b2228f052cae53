#include "platform/desktop/SessionBusProbe.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QStringList>

#include <chrono>

namespace lumaphone {

namespace {

constexpr std::chrono::milliseconds answerLimit(500);

const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString keyringService = QStringLiteral("org.freedesktop.secrets");
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");

template<typename T> std::optional<T> answerOf(const QDBusConnection &bus, const QDBusMessage &call)
{
    const QDBusReply<T> reply = bus.call(call, QDBus::Block, static_cast<int>(answerLimit.count()));
    return reply.isValid() ? std::optional<T>(reply.value()) : std::nullopt;
}

QDBusMessage busCall(const QString &method)
{
    return QDBusMessage::createMethodCall(
        busService, QStringLiteral("/org/freedesktop/DBus"), busService, method);
}

/// Whether the collection for new secrets is locked. The service is running.
std::optional<bool> isDefaultCollectionLocked(const QDBusConnection &bus)
{
    QDBusMessage alias
        = QDBusMessage::createMethodCall(keyringService, QStringLiteral("/org/freedesktop/secrets"),
            QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("ReadAlias"));
    alias << QStringLiteral("default");
    const auto collection = answerOf<QDBusObjectPath>(bus, alias);
    // The root stands for "none".
    if (!collection || collection->path() == QLatin1String("/")) {
        return std::nullopt;
    }
    QDBusMessage get = QDBusMessage::createMethodCall(keyringService, collection->path(),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QStringLiteral("org.freedesktop.Secret.Collection") << QStringLiteral("Locked");
    const auto locked = answerOf<QDBusVariant>(bus, get);
    return locked ? std::optional(locked->variant().toBool()) : std::nullopt;
}

} // namespace

SessionBusProbe::SessionBusProbe(QDBusConnection bus)
    : m_bus(std::move(bus))
{
}

ServiceState SessionBusProbe::state(const QString &service) const
{
    if (!m_bus.isConnected()) {
        return ServiceState::noBus;
    }
    QDBusMessage hasOwner = busCall(QStringLiteral("NameHasOwner"));
    hasOwner << service;
    if (answerOf<bool>(m_bus, hasOwner).value_or(false)) {
        return ServiceState::running;
    }
    const auto startable = answerOf<QStringList>(m_bus, busCall(QStringLiteral("ListActivatableNames")));
    return startable && startable->contains(service) ? ServiceState::startable : ServiceState::missing;
}

KeyringFacts SessionBusProbe::keyring() const
{
    KeyringFacts facts;
    facts.service = state(keyringService);
    if (facts.service == ServiceState::running) {
        facts.isLocked = isDefaultCollectionLocked(m_bus);
    }
    return facts;
}

ServiceState SessionBusProbe::portals() const
{
    return state(portalService);
}

} // namespace lumaphone
