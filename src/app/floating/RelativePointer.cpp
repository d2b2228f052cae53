#include "app/floating/RelativePointer.h"

#include "app/floating/FloatingCaptionPlacement.h"

#include <QGuiApplication>
#include <QScreen>

#include <relative-pointer-unstable-v1-client-protocol.h>
#include <wayland-client.h>

#include <cstring>

namespace lumaphone {

namespace {

QList<QRect> screens()
{
    QList<QRect> all;
    for (const QScreen *screen : QGuiApplication::screens()) {
        all.append(screen->geometry());
    }
    return all;
}

} // namespace

/// What the compositor calls.
struct RelativePointer::Protocol
{
    static void takeGlobal(
        void *self, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t)
    {
        if (std::strcmp(interface, zwp_relative_pointer_manager_v1_interface.name) == 0) {
            static_cast<RelativePointer *>(self)->m_manager = static_cast<zwp_relative_pointer_manager_v1 *>(
                wl_registry_bind(registry, name, &zwp_relative_pointer_manager_v1_interface, 1));
        }
    }

    static void takeRemoval(void *, wl_registry *, std::uint32_t) { }

    static void takeMotion(void *self, zwp_relative_pointer_v1 *, std::uint32_t, std::uint32_t, wl_fixed_t dx,
        wl_fixed_t dy, wl_fixed_t, wl_fixed_t)
    {
        auto &pointer = *static_cast<RelativePointer *>(self);
        pointer.m_hasMoved = true;
        pointer.m_position = floatingcaption::stepped(
            pointer.m_position, {wl_fixed_to_double(dx), wl_fixed_to_double(dy)}, screens());
    }

    static constexpr wl_registry_listener registryListener {&takeGlobal, &takeRemoval};
    static constexpr zwp_relative_pointer_v1_listener motionListener {&takeMotion};
};

RelativePointer::RelativePointer()
{
    const auto *wayland = qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    if (wayland && wayland->display()) {
        // The toolkit reads the answers along with its own.
        m_registry = wl_display_get_registry(wayland->display());
        wl_registry_add_listener(m_registry, &Protocol::registryListener, this);
    }
}

RelativePointer::~RelativePointer()
{
    end();
    if (m_manager) {
        zwp_relative_pointer_manager_v1_destroy(m_manager);
    }
    if (m_registry) {
        wl_registry_destroy(m_registry);
    }
}

void RelativePointer::begin(const QPointF &position)
{
    end();
    m_hasMoved = false;
    m_position = position;
    const auto *wayland = qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    wl_pointer *pointer = wayland ? wayland->pointer() : nullptr;
    if (m_manager && pointer) {
        m_pointer = zwp_relative_pointer_manager_v1_get_relative_pointer(m_manager, pointer);
        zwp_relative_pointer_v1_add_listener(m_pointer, &Protocol::motionListener, this);
    }
}

void RelativePointer::end()
{
    if (m_pointer) {
        zwp_relative_pointer_v1_destroy(m_pointer);
        m_pointer = nullptr;
    }
}

} // namespace lumaphone
