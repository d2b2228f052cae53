#include "app/floating/WindowSystem.h"

namespace lumaphone {

QString preferredWindowSystem(
    const QProcessEnvironment &environment, const std::function<bool()> &hasLayerShell)
{
    const auto isSet = [&environment](const char *name) {
        return !environment.value(QString::fromLatin1(name)).isEmpty();
    };
    if (isSet("QT_QPA_PLATFORM") || !isSet("WAYLAND_DISPLAY")) {
        return {};
    }
    // Tried in this order.
    if (hasLayerShell()) {
        return QStringLiteral("wayland;xcb");
    }
    return isSet("DISPLAY") ? QStringLiteral("xcb;wayland") : QString();
}

} // namespace lumaphone
