#include "app/floating/PanelSurface.h"

#include "app/floating/LayerShell.h"
#include "app/floating/OrdinaryPanelSurface.h"
#include "app/floating/OverlayPanelSurface.h"
#include "platform/display/LayerShellOffer.h"

#include <QGuiApplication>

namespace lumaphone {

std::unique_ptr<PanelSurface> makePanelSurface(QQuickWindow &panel)
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return std::make_unique<OverlayPanelSurface>(panel);
    }
    if (isLayerShellOffered()) {
        return layershell::makeSurface(panel);
    }
    return std::make_unique<OrdinaryPanelSurface>(panel);
}

} // namespace lumaphone
