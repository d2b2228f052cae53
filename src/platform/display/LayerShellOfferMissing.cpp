// In builds without the library of the layer shell.
#include "platform/display/LayerShellOffer.h"

namespace lumaphone {

bool isLayerShellOffered()
{
    return false;
}

} // namespace lumaphone
