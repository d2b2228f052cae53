#include "app/floating/X11OverlayWindow.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace lumaphone {

namespace {

/// The properties of one window, by name.
class X11Properties
{
public:
    X11Properties(xcb_connection_t &connection, xcb_window_t window)
        : m_connection(connection)
        , m_window(window)
    {
    }

    xcb_atom_t atom(const QByteArray &name) const
    {
        const auto cookie
            = xcb_intern_atom(&m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(&m_connection, cookie, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    template<std::size_t count>
    void set(const QByteArray &name, xcb_atom_t type, const std::array<uint32_t, count> &values) const
    {
        xcb_change_property(&m_connection, XCB_PROP_MODE_REPLACE, m_window, atom(name), type, 32,
            static_cast<uint32_t>(count), values.data());
    }

private:
    xcb_connection_t &m_connection;
    xcb_window_t m_window;
};

} // namespace

void announceOverlayWindow(QWindow &window)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return;
    }
    const X11Properties properties(*x11->connection(), static_cast<xcb_window_t>(window.winId()));
    // The first type that a desktop knows counts.
    properties.set<3>("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
        {properties.atom("_KDE_NET_WM_WINDOW_TYPE_ON_SCREEN_DISPLAY"),
            properties.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION"),
            properties.atom("_NET_WM_WINDOW_TYPE_UTILITY")});
    properties.set<4>("_NET_WM_STATE", XCB_ATOM_ATOM,
        {properties.atom("_NET_WM_STATE_ABOVE"), properties.atom("_NET_WM_STATE_STICKY"),
            properties.atom("_NET_WM_STATE_SKIP_TASKBAR"), properties.atom("_NET_WM_STATE_SKIP_PAGER")});
    constexpr uint32_t allDesktops = 0xFFFFFFFF;
    properties.set<1>("_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {allDesktops});
    // A compositor must not step aside for a full-screen window below.
    constexpr uint32_t keepCompositing = 2;
    properties.set<1>("_NET_WM_BYPASS_COMPOSITOR", XCB_ATOM_CARDINAL, {keepCompositing});
    // The hint about input is given, and it is: none.
    constexpr uint32_t inputHint = 1;
    properties.set<9>("WM_HINTS", XCB_ATOM_WM_HINTS, {inputHint, 0, 0, 0, 0, 0, 0, 0, 0});
    xcb_flush(x11->connection());
}

} // namespace lumaphone
