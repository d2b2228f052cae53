#pragma once

#include <QPointF>

#include <cstdint>
#include <deque>

struct wl_pointer;
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

    /// At this time, in the milliseconds of the compositor's events, it was at this place of the whole
    /// desktop; follows it from there on, also where it has gone meanwhile.
    void begin(const QPointF &position, std::uint32_t time);
    void end();
    /// Watches the pointer that there is now, so that the first steps after begin() are known as well.
    void prepare();
    /// Whether it has been seen to move. It never is where the compositor does not tell, or a finger moves.
    bool hasMoved() const { return m_hasMoved; }
    QPointF position() const { return m_position; }

private:
    struct Protocol;
    struct Step
    {
        std::uint32_t time;
        QPointF by;
    };

    void take(const Step &step);
    void follow(const QPointF &step);
    void release();

    zwp_relative_pointer_manager_v1 *m_manager = nullptr;
    zwp_relative_pointer_v1 *m_pointer = nullptr;
    wl_pointer *m_watched = nullptr;
    wl_registry *m_registry = nullptr;
    std::deque<Step> m_latest; ///< while nobody follows it
    bool m_isFollowed = false;
    bool m_hasMoved = false;
    QPointF m_position;
};

} // namespace lumaphone
