#pragma once

#include <QMouseEvent>
#include <QPoint>
#include <QQuickWindow>
#include <QRect>

#include <memory>
#include <optional>

namespace lumaphone {

/// Who says where the panel lies.
enum class PanelPlacing {
    anywhere, ///< the program
    withinOutput, ///< the program, on the screen of the window
    byDesktop, ///< the desktop; of a frame only the size counts
};

/// How a desktop carries the window of the caption panel. Belongs to one window and goes before it. The
/// panel calls it on the main thread; throws nothing.
class PanelSurface
{
public:
    virtual ~PanelSurface() = default;

    /// Stays the same.
    virtual PanelPlacing placing() const = 0;
    /// Where the panel lies on the whole desktop, as far as its placing() lets that be known.
    virtual QRect frame() const = 0;
    /// Takes it there, as far as the placing() is the program's.
    virtual void setFrame(const QRect &frame) = 0;
    /// Whether there is a screen to show it on.
    virtual bool canBeShown() const { return true; }
    /// The part of the desktop that the panel may be dragged to; none where that has no limits.
    virtual std::optional<QRect> bounds() const = 0;

    /// The pointer has been pressed onto the panel and holds these edges, or in the middle all of it. Where
    /// it is on the whole desktop; none if the desktop follows it from here on.
    virtual std::optional<QPoint> beginDrag(const QMouseEvent &press, Qt::Edges edges) = 0;
    /// Where it is now; none if that is not known before it is released.
    virtual std::optional<QPoint> pointer(const QMouseEvent &move) = 0;
    /// Where it has been released.
    virtual QPoint endDrag(const QMouseEvent &release) = 0;
};

/// The best one that this desktop has. `panel` must not be shown yet; its flags and its screen are set.
std::unique_ptr<PanelSurface> makePanelSurface(QQuickWindow &panel);

} // namespace lumaphone
