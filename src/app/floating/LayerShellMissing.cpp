// In builds without the library of the layer shell.
#include "app/floating/LayerShell.h"

namespace lumaphone::layershell {

std::unique_ptr<PanelSurface> makeSurface(QQuickWindow &)
{
    return nullptr;
}

} // namespace lumaphone::layershell
