#include "platform/desktop/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMap>

#include <algorithm>
#include <array>
#include <chrono>

namespace lumaphone {

namespace {

constexpr std::chrono::milliseconds longestWait(150);

QString group()
{
    return QStringLiteral("org.freedesktop.appearance");
}

/// Portals wrap a value once or twice.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// None for anything but three parts within their range: so a portal says that there is no wish.
std::optional<RgbColor> color(const QVariant &value)
{
    if (!value.canConvert<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)")) {
        return std::nullopt;
    }
    std::array<double, 3> parts {};
    argument.beginStructure();
    for (double &part : parts) {
        argument >> part;
    }
    argument.endStructure();
    const bool isColor = std::all_of(parts.begin(), parts.end(), [](double part) {
        return part >= 0 && part <= 1; // not true of what is no number
    });
    return isColor ? std::optional(RgbColor {parts[0], parts[1], parts[2]}) : std::nullopt;
}

} // namespace

PortalAppearance::PortalAppearance(ColorScheme fallback, QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_fallback(fallback)
    , m_bus(std::move(bus))
    , m_appearance {.scheme = fallback}
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
        QStringLiteral("ReadAll"));
    call << QStringList {group()};
    // Not in an event loop: nothing else may happen while the program is being put together.
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, static_cast<int>(longestWait.count()));
    if (reply.type() == QDBusMessage::ReplyMessage) {
        takeAll(reply);
    } else if (QDBusError(reply).type() == QDBusError::NoReply) {
        askOnceMore(call);
    }
}

void PortalAppearance::askOnceMore(const QDBusMessage &call)
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (!watcher->isError()) {
            takeAll(watcher->reply());
        }
        watcher->deleteLater();
    });
}

void PortalAppearance::settingChanged(
    const QString &changedGroup, const QString &changedKey, const QDBusVariant &value)
{
    if (changedGroup == group()) {
        take({{changedKey, value.variant()}});
    }
}

void PortalAppearance::takeAll(const QDBusMessage &reply)
{
    if (reply.signature() == QStringLiteral("a{sa{sv}}")) {
        take(qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst()).value(group()));
    }
}

void PortalAppearance::take(const QVariantMap &changed)
{
    DesktopAppearance appearance = m_appearance;
    for (auto setting = changed.cbegin(); setting != changed.cend(); ++setting) {
        const QVariant value = unwrapped(setting.value());
        if (setting.key() == QStringLiteral("color-scheme")) {
            const uint preference = value.toUInt();
            appearance.scheme = preference == 1 ? ColorScheme::dark
                : preference == 2               ? ColorScheme::light
                                                : m_fallback;
        } else if (setting.key() == QStringLiteral("accent-color")) {
            appearance.accent = color(value);
        } else if (setting.key() == QStringLiteral("contrast")) {
            appearance.wantsHighContrast = value.toUInt() == 1;
        } else if (setting.key() == QStringLiteral("reduced-motion")) {
            appearance.wantsReducedMotion = value.toUInt() == 1;
        }
    }
    if (appearance == m_appearance) {
        return;
    }
    m_appearance = appearance;
    if (m_onChange) {
        m_onChange();
    }
}

} // namespace lumaphone
