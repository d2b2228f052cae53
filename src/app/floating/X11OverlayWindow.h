#pragma once

#include <QWindow>

namespace lumaphone {

/// Tells an X11 desktop what a window is that no window manager manages: above all others, on all desktops,
/// in no task bar or pager, without input focus. The window is created if need be and must not be shown yet.
/// Does nothing on other window systems.
void announceOverlayWindow(QWindow &window);

} // namespace lumaphone
