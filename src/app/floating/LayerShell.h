#pragma once

#include "app/floating/PanelSurface.h"

/// The protocol with which Wayland compositors carry panels. Builds without its library know it not.
namespace lumaphone::layershell {

/// Only where it is offered (isLayerShellOffered()) and the application's windows are the compositor's.
std::unique_ptr<PanelSurface> makeSurface(QQuickWindow &panel);

} // namespace lumaphone::layershell
