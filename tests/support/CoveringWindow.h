#pragma once

#include "support/PrivateDisplay.h"

#include <QString>

#include <cstdint>

struct xcb_connection_t;

namespace lumaphone::test {

/// A window of another program, as large as the display, that opens above all there are. Its test needs no
/// windows of its own.
class CoveringWindow
{
public:
    explicit CoveringWindow(const PrivateDisplay &display);
    ~CoveringWindow();
    CoveringWindow(const CoveringWindow &) = delete;
    CoveringWindow &operator=(const CoveringWindow &) = delete;

    /// The title of the window that lies above all others, as the window manager says.
    QString titleOnTop() const;

    static constexpr const char *title = "Another program";

private:
    QByteArray property(std::uint32_t window, const char *name) const;

    xcb_connection_t *m_connection;
    std::uint32_t m_root;
    std::uint32_t m_window;
};

} // namespace lumaphone::test
