#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace lumaphone {

enum class ColorScheme { light, dark };

/// A colour's parts in sRGB, each 0...1.
struct RgbColor
{
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const RgbColor &) const = default;
};

/// What the user has chosen for all programs of the desktop.
struct DesktopAppearance
{
    ColorScheme scheme = ColorScheme::light;
    std::optional<RgbColor> accent = std::nullopt; ///< none where the desktop has no wish
    bool wantsHighContrast = false;
    bool wantsReducedMotion = false;

    bool operator==(const DesktopAppearance &) const = default;
};

/// The appearance that the desktop's settings portal publishes on the session bus. Where there is no portal,
/// or it has no wish, the fallback stands and nothing special is wanted. Main thread.
class PortalAppearance final : public QObject
{
    Q_OBJECT

public:
    /// Waits a moment for the portal's answer, so that the first window has the right colours; a later answer
    /// counts as a change.
    explicit PortalAppearance(
        ColorScheme fallback, QDBusConnection bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);

    const DesktopAppearance &current() const { return m_appearance; }
    /// `onChange` is called after every change, as long as the object lives; a second call replaces the
    /// first.
    void observe(std::function<void()> onChange) { m_onChange = std::move(onChange); }

private slots:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void askOnceMore(const QDBusMessage &call);
    void takeAll(const QDBusMessage &reply);
    void take(const QVariantMap &changed);

    const ColorScheme m_fallback;
    QDBusConnection m_bus;
    DesktopAppearance m_appearance;
    std::function<void()> m_onChange;
};

} // namespace lumaphone
