#include "app/floating/LayerShell.h"

#include "app/floating/LayerPanelSurface.h"

namespace lumaphone::layershell {

std::unique_ptr<PanelSurface> makeSurface(QQuickWindow &panel)
{
    return std::make_unique<LayerPanelSurface>(panel);
}

} // namespace lumaphone::layershell
