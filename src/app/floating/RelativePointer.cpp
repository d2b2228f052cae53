#include "app/floating/RelativePointer.h"

#include "app/floating/FloatingCaptionPlacement.h"

#include <QGuiApplication>
#include <QScreen>

#include <relative-pointer-unstable-v1-client-protocol.h>
#include <wayland-client.h>

#include <cstring>

namespace lumaphone {

namespace {

/// A program that takes longer to notice that it is dragged loses the steps before.
constexpr std::uint32_t memoryMs = 2000;

/// Times start anew when their bits are used up.
std::int32_t between(std::uint32_t earlier, std::uint32_t later)
{
    return static_cast<std::int32_t>(later - earlier);
}

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
            auto &pointer = *static_cast<RelativePointer *>(self);
            pointer.m_manager = static_cast<zwp_relative_pointer_manager_v1 *>(
                wl_registry_bind(registry, name, &zwp_relative_pointer_manager_v1_interface, 1));
            pointer.prepare();
        }
    }

    static void takeRemoval(void *, wl_registry *, std::uint32_t) { }

    static void takeMotion(void *self, zwp_relative_pointer_v1 *, std::uint32_t highMicroseconds,
        std::uint32_t lowMicroseconds, wl_fixed_t dx, wl_fixed_t dy, wl_fixed_t, wl_fixed_t)
    {
        const std::uint64_t microseconds = (std::uint64_t {highMicroseconds} << 32) | lowMicroseconds;
        static_cast<RelativePointer *>(self)->take({static_cast<std::uint32_t>(microseconds / 1000),
            {wl_fixed_to_double(dx), wl_fixed_to_double(dy)}});
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
    release();
    if (m_manager) {
        zwp_relative_pointer_manager_v1_destroy(m_manager);
    }
    if (m_registry) {
        wl_registry_destroy(m_registry);
    }
}

void RelativePointer::prepare()
{
    const auto *wayland = qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    wl_pointer *pointer = wayland ? wayland->pointer() : nullptr;
    if (pointer == m_watched || !m_manager) {
        return;
    }
    release();
    m_watched = pointer;
    if (pointer) {
        m_pointer = zwp_relative_pointer_manager_v1_get_relative_pointer(m_manager, pointer);
        zwp_relative_pointer_v1_add_listener(m_pointer, &Protocol::motionListener, this);
    }
}

void RelativePointer::release()
{
    if (m_pointer) {
        zwp_relative_pointer_v1_destroy(m_pointer);
        m_pointer = nullptr;
    }
}

void RelativePointer::begin(const QPointF &position, std::uint32_t time)
{
    prepare();
    m_isFollowed = true;
    m_hasMoved = false;
    m_position = position;
    for (const Step &step : m_latest) {
        if (between(time, step.time) > 0) {
            follow(step.by);
        }
    }
    m_latest.clear();
}

void RelativePointer::end()
{
    m_isFollowed = false;
}

void RelativePointer::take(const Step &step)
{
    if (m_isFollowed) {
        follow(step.by);
        return;
    }
    m_latest.push_back(step);
    while (between(m_latest.front().time, step.time) > static_cast<std::int32_t>(memoryMs)) {
        m_latest.pop_front();
    }
}

void RelativePointer::follow(const QPointF &step)
{
    m_hasMoved = true;
    m_position = floatingcaption::stepped(m_position, step, screens());
}

} // namespace lumaphone
