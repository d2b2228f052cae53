#pragma once

#include "platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace lumaphone {

/// The colour scheme that the desktop's settings portal publishes on the session bus. Where there is no
/// portal the fallback stands.
class PortalAppearance final : public QObject, public DesktopAppearance
{
    Q_OBJECT

public:
    /// Waits a moment for the portal's answer, so that the first window has the right colours; a later answer
    /// counts as a change.
    explicit PortalAppearance(
        ColorScheme fallback, QDBusConnection bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);

    ColorScheme colorScheme() const override { return m_scheme; }
    void observe(std::function<void()> onChange) override { m_onChange = std::move(onChange); }

private slots:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void askOnceMore(const QDBusMessage &call);
    void take(const QVariant &value);

    const ColorScheme m_fallback;
    QDBusConnection m_bus;
    ColorScheme m_scheme;
    std::function<void()> m_onChange;
};

} // namespace lumaphone
