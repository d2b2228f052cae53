#include "platform/desktop/PortalAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>

#include <chrono>

namespace lumaphone {

namespace {

constexpr std::chrono::milliseconds longestWait(150);

QString group()
{
    return QStringLiteral("org.freedesktop.appearance");
}

QString key()
{
    return QStringLiteral("color-scheme");
}

/// The portal wraps the value of Read() twice, that of its signal once.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalAppearance::PortalAppearance(ColorScheme fallback, QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_fallback(fallback)
    , m_bus(std::move(bus))
    , m_scheme(fallback)
{
    if (!m_bus.isConnected()) {
        return;
    }
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"), this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void PortalAppearance::ask()
{
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), QStringLiteral("org.freedesktop.portal.Settings"),
        QStringLiteral("Read"));
    call << group() << key();
    // Not in an event loop: nothing else may happen while the program is being put together.
    const QDBusReply<QDBusVariant> reply
        = m_bus.call(call, QDBus::Block, static_cast<int>(longestWait.count()));
    if (reply.isValid()) {
        take(reply.value().variant());
    } else if (reply.error().type() == QDBusError::NoReply) {
        askOnceMore(call);
    }
}

void PortalAppearance::askOnceMore(const QDBusMessage &call)
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            take(reply.value().variant());
        }
        watcher->deleteLater();
    });
}

void PortalAppearance::settingChanged(
    const QString &changedGroup, const QString &changedKey, const QDBusVariant &value)
{
    if (changedGroup == group() && changedKey == key()) {
        take(value.variant());
    }
}

void PortalAppearance::take(const QVariant &value)
{
    const uint preference = unwrapped(value).toUInt();
    const ColorScheme scheme = preference == 1 ? ColorScheme::dark
        : preference == 2                      ? ColorScheme::light
                                               : m_fallback;
    if (scheme == m_scheme) {
        return;
    }
    m_scheme = scheme;
    if (m_onChange) {
        m_onChange();
    }
}

} // namespace lumaphone
