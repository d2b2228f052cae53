#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace lumaphone {

/// The value of QT_QPA_PLATFORM with which the program's windows work best; empty to leave the choice to the
/// toolkit. On Wayland that is X11 where there is an X server, because only there a client can put a panel
/// above all windows. What the user has set counts.
QString preferredWindowSystem(const QProcessEnvironment &environment);

} // namespace lumaphone
