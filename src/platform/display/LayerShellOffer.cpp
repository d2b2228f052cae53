#include "platform/display/LayerShellOffer.h"

#include <wayland-client.h>

#include <cstring>
#include <memory>

namespace lumaphone {

namespace {

void takeGlobal(void *isFound, wl_registry *, std::uint32_t, const char *interface, std::uint32_t)
{
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0) {
        *static_cast<bool *>(isFound) = true;
    }
}

void takeRemoval(void *, wl_registry *, std::uint32_t)
{
}

} // namespace

bool isLayerShellOffered()
{
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display) {
        return false;
    }
    bool isFound = false;
    const wl_registry_listener listener {&takeGlobal, &takeRemoval};
    const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(
        wl_display_get_registry(display.get()), &wl_registry_destroy);
    wl_registry_add_listener(registry.get(), &listener, &isFound);
    return wl_display_roundtrip(display.get()) >= 0 && isFound;
}

} // namespace lumaphone
