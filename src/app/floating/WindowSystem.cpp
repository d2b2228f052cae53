#include "app/floating/WindowSystem.h"

namespace lumaphone {

QString preferredWindowSystem(const QProcessEnvironment &environment)
{
    const auto isSet = [&environment](const char *name) {
        return !environment.value(QString::fromLatin1(name)).isEmpty();
    };
    const bool hasBoth = isSet("WAYLAND_DISPLAY") && isSet("DISPLAY");
    // Tried in this order.
    return hasBoth && !isSet("QT_QPA_PLATFORM") ? QStringLiteral("xcb;wayland") : QString();
}

} // namespace lumaphone
