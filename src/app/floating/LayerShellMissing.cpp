// In builds without the library of the layer shell.
#include "app/floating/LayerShell.h"

namespace lumaphone::layershell {

bool isOffered()
{
    return false;
}

std::unique_ptr<PanelSurface> makeSurface(QQuickWindow &)
{
    return nullptr;
}

} // namespace lumaphone::layershell
