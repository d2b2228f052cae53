#include "platform/display/WindowSystem.h"

namespace lumaphone {

namespace {

using Windows = DisplayFacts::Windows;

bool isSet(const QProcessEnvironment &environment, const char *name)
{
    return !environment.value(QString::fromLatin1(name)).isEmpty();
}

/// The first of a list such as "wayland;xcb" that can be had in the session.
Windows firstOf(const QString &systems, Windows session)
{
    for (const QString &system : systems.split(QLatin1Char(';'))) {
        if (system.startsWith(QLatin1String("wayland")) && session == Windows::wayland) {
            return Windows::wayland;
        }
        if (system.startsWith(QLatin1String("xcb"))) {
            return Windows::x11;
        }
    }
    return session;
}

} // namespace

QString preferredWindowSystem(
    const QProcessEnvironment &environment, const std::function<bool()> &hasLayerShell)
{
    if (isSet(environment, "QT_QPA_PLATFORM") || !isSet(environment, "WAYLAND_DISPLAY")) {
        return {};
    }
    // Tried in this order.
    if (hasLayerShell()) {
        return QStringLiteral("wayland;xcb");
    }
    return isSet(environment, "DISPLAY") ? QStringLiteral("xcb;wayland") : QString();
}

DisplayFacts displayFacts(const QProcessEnvironment &environment, const std::function<bool()> &hasLayerShell)
{
    DisplayFacts facts;
    facts.desktop = environment.value(QStringLiteral("XDG_CURRENT_DESKTOP"));
    if (isSet(environment, "WAYLAND_DISPLAY")) {
        facts.session = Windows::wayland;
        facts.hasLayerShell = hasLayerShell();
    } else if (isSet(environment, "DISPLAY")) {
        facts.session = Windows::x11;
    }
    if (facts.session != Windows::none) {
        const QString chosen = environment.value(QStringLiteral("QT_QPA_PLATFORM"));
        const QString systems = chosen.isEmpty()
            ? preferredWindowSystem(environment, [&facts] { return facts.hasLayerShell; })
            : chosen;
        facts.program = firstOf(systems, facts.session);
    }
    return facts;
}

} // namespace lumaphone
