#include "support/CoveringWindow.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace lumaphone::test {

namespace {

template<typename Reply> using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto asked = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Answer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, asked, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace

CoveringWindow::CoveringWindow(const PrivateDisplay &display)
    : m_connection(xcb_connect(qPrintable(display.name()), nullptr))
{
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        throw std::runtime_error("There is no display to cover");
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_root = screen->root;
    m_window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0,
        static_cast<std::uint16_t>(display.size().width()),
        static_cast<std::uint16_t>(display.size().height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
        static_cast<std::uint32_t>(std::strlen(title)), title);
    xcb_map_window(m_connection, m_window);
    xcb_flush(m_connection);
}

CoveringWindow::~CoveringWindow()
{
    xcb_disconnect(m_connection);
}

QString CoveringWindow::titleOnTop() const
{
    const QByteArray stacking = property(m_root, "_NET_CLIENT_LIST_STACKING");
    if (stacking.size() < qsizetype(sizeof m_window)) {
        return {};
    }
    std::uint32_t topmost = 0;
    std::memcpy(&topmost, stacking.constEnd() - sizeof topmost, sizeof topmost);
    return topmost == m_window ? QString::fromLatin1(title)
                               : QString::fromUtf8(property(topmost, "_NET_WM_NAME"));
}

QByteArray CoveringWindow::property(std::uint32_t window, const char *name) const
{
    const auto asked
        = xcb_get_property(m_connection, 0, window, atom(m_connection, name), XCB_ATOM_ANY, 0, 1000);
    const Answer<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, asked, nullptr), &std::free);
    return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
               xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

} // namespace lumaphone::test
