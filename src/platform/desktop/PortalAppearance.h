#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>

namespace lumaphone {

enum class ColorScheme { light, dark };

/// The colour scheme that the desktop's settings portal publishes on the session bus. Where there is no
/// portal, or it has no wish, the fallback stands. Main thread.
class PortalAppearance final : public QObject
{
    Q_OBJECT

public:
    /// Waits a moment for the portal's answer, so that the first window has the right colours; a later answer
    /// counts as a change.
    explicit PortalAppearance(
        ColorScheme fallback, QDBusConnection bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);

    ColorScheme colorScheme() const { return m_scheme; }
    /// `onChange` is called after every change, as long as the object lives; a second call replaces the
    /// first.
    void observe(std::function<void()> onChange) { m_onChange = std::move(onChange); }

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
