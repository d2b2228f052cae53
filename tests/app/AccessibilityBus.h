#pragma once

#include "support/PrivateSessionBus.h"

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QStringList>

#include <memory>

namespace lumaphone::test {

/// How long what goes over the accessibility bus may take on a busy machine.
inline constexpr int accessibilityPatienceMs = 60000;

/// Something of a window, as a screen reader finds it.
struct AccessibleItem
{
    int depth = 0; ///< below the application
    QString role; ///< such as "push button"
    QStringList states; ///< those of interest, such as "FOCUSABLE"
    QString name; ///< of a secret field, that of what it is in

    /// Both, as a person would be told: "push button|開始".
    QString told() const { return role + QLatin1Char('|') + name; }
};

/// The accessibility bus of a desktop, on a session bus of the test's own, with a screen reader that listens.
/// Make it before the application object, on a display.
class AccessibilityBus
{
public:
    AccessibilityBus();
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus &) = delete;
    AccessibilityBus &operator=(const AccessibilityBus &) = delete;

    /// What is needed and not installed.
    static QStringList missing();

    /// Lets the screen reader listen to the application of that name, which must be there. False if it does
    /// not find it.
    bool listen(const QString &application);
    /// What has been told to the user so far: texts of notifications, in their order.
    const QStringList &said();
    /// What the keyboard has come to so far, each as "ROLE|NAME".
    const QStringList &focused();
    /// Everything that is shown, in its order. Empty if the screen reader never comes to an end.
    QList<AccessibleItem> walk();

private:
    void read();

    PrivateSessionBus m_session;
    std::unique_ptr<QProcess> m_launcher;
    std::unique_ptr<QProcess> m_reader;
    QStringList m_said;
    QStringList m_focused;
    QList<AccessibleItem> m_items;
    bool m_isReady = false;
    bool m_hasWalked = false;
};

} // namespace lumaphone::test
