#pragma once

#include "platform/MachineFacts.h"

#include <QProcessEnvironment>
#include <QString>

#include <functional>

namespace lumaphone {

/// The value of QT_QPA_PLATFORM with which the program's windows work best; empty to leave the choice to the
/// toolkit. On Wayland that is the compositor itself if it has a layer shell (isLayerShellOffered()), else
/// X11 where there is an X server: only so a client can put a panel above all windows. What the user has set
/// counts.
QString preferredWindowSystem(
    const QProcessEnvironment &environment, const std::function<bool()> &hasLayerShell);

/// What the session draws with, and what the program's windows would use in it.
DisplayFacts displayFacts(const QProcessEnvironment &environment, const std::function<bool()> &hasLayerShell);

} // namespace lumaphone
