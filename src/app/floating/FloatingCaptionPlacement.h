#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <Qt>

#include <optional>

// Where the caption panel lies. The program counts as its stored frames do: the origin is the lower left
// corner of the main screen, y points upwards, and a rectangle's origin is its lower left corner.
namespace lumaphone::floatingcaption {

inline constexpr QSize initialSize(820, 180);
inline constexpr QSize minimumSize(360, 96);
inline constexpr QSize maximumSize(1280, 520);
/// How near to an edge a press resizes the panel rather than moving it.
inline constexpr int edgeWidth = 8;

/// Where a panel of `panelSize` is put for the first time on a screen whose part without docks and bars is
/// `visibleFrame`: centred, a little above the lower edge.
QPointF initialOrigin(const QRectF &visibleFrame, const QSizeF &panelSize);

/// A rectangle of the toolkit, whose y points downwards from the top of the main screen, in our coordinates,
/// and the other way round.
QRectF upwards(const QRect &geometry, const QRect &mainScreen);
QRect downwards(const QRectF &frame, const QRect &mainScreen);

/// The edges that a press at `position` takes hold of; none in the middle.
Qt::Edges edgesAt(const QPointF &position, const QSizeF &panelSize);
Qt::CursorShape cursorFor(Qt::Edges edges);

/// `geometry` (y downwards) after its `edges` have been dragged by `delta`, within the sizes allowed; moved
/// as a whole when there are no edges.
QRect dragged(const QRect &geometry, Qt::Edges edges, const QPoint &delta);

/// So much of `delta` that a rectangle within `bounds` does not leave them when its `edges` are dragged.
QPoint boundedDrag(const QRect &geometry, Qt::Edges edges, const QPoint &delta, const QRect &bounds);

/// Where a pointer comes that moves on by `step`: it stays on the screens.
QPointF stepped(const QPointF &pointer, const QPointF &step, const QList<QRect> &screens);

/// `geometry` with the sizes allowed and, as far as it has room there, moved into `bounds`.
QRect fitted(const QRect &geometry, const QRect &bounds);

/// `geometry` made so high, upwards from its lower edge and within `bounds`; as wide as can be, too, where
/// the height allowed is not enough.
QRect grown(const QRect &geometry, int height, const QRect &bounds);

/// The place nearest to `geometry`, of its size and within `bounds`, that covers none of `obstacles`; none if
/// there is no such place.
std::optional<QRect> clearOf(const QRect &geometry, const QList<QRect> &obstacles, const QRect &bounds);

} // namespace lumaphone::floatingcaption
