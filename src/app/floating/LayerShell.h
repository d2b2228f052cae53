#pragma once

#include "app/floating/PanelSurface.h"

/// The protocol with which Wayland compositors carry panels. Builds without its library know it not.
namespace lumaphone::layershell {

/// Whether this build speaks it and the compositor does, too: the one that the environment names, asked on a
/// connection of its own, so that it can be known before there is an application object.
bool isOffered();

/// Only where it is offered and the application's windows are the compositor's.
std::unique_ptr<PanelSurface> makeSurface(QQuickWindow &panel);

} // namespace lumaphone::layershell
