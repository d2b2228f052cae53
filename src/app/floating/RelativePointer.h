#pragma once

#include <QPointF>

#include <memory>

struct wl_registry;
struct zwp_relative_pointer_manager_v1;
struct zwp_relative_pointer_v1;

namespace lumaphone {

/// Where the pointer goes on a Wayland desktop, which otherwise says only where it is in a window: that means
/// little while the window itself is moved. Main thread.
class RelativePointer
{
public:
    RelativePointer();
    ~RelativePointer();
    RelativePointer(const RelativePointer &) = delete;
    RelativePointer &operator=(const RelativePointer &) = delete;

    /// It is at this place of the whole desktop; follows it from here on.
    void begin(const QPointF &position);
    void end();
    /// Whether it has been seen to move. It never is where the compositor does not tell, or a finger moves.
    bool hasMoved() const { return m_hasMoved; }
    QPointF position() const { return m_position; }

private:
    struct Protocol;

    zwp_relative_pointer_manager_v1 *m_manager = nullptr;
    zwp_relative_pointer_v1 *m_pointer = nullptr;
    wl_registry *m_registry = nullptr;
    bool m_hasMoved = false;
    QPointF m_position;
};

} // namespace lumaphone
