#include "app/floating/FloatingCaptionPlacement.h"

#include <algorithm>

namespace lumaphone::floatingcaption {

namespace {

/// Between the panel and what it makes room for.
constexpr int clearance = 8;

} // namespace

QPointF initialOrigin(const QRectF &visibleFrame, const QSizeF &panelSize)
{
    const double lift = std::min(visibleFrame.height() * 0.18, 180.0);
    return {visibleFrame.center().x() - panelSize.width() / 2, visibleFrame.y() + lift};
}

QRectF upwards(const QRect &geometry, const QRect &mainScreen)
{
    const int bottom = mainScreen.y() + mainScreen.height();
    return {double(geometry.x()), double(bottom - geometry.y() - geometry.height()), double(geometry.width()),
        double(geometry.height())};
}

QRect downwards(const QRectF &frame, const QRect &mainScreen)
{
    const double top = mainScreen.y() + mainScreen.height() - frame.y() - frame.height();
    return {qRound(frame.x()), qRound(top), qRound(frame.width()), qRound(frame.height())};
}

Qt::Edges edgesAt(const QPointF &position, const QSizeF &panelSize)
{
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < edgeWidth);
    edges.setFlag(Qt::RightEdge, position.x() >= panelSize.width() - edgeWidth);
    edges.setFlag(Qt::TopEdge, position.y() < edgeWidth);
    edges.setFlag(Qt::BottomEdge, position.y() >= panelSize.height() - edgeWidth);
    return edges;
}

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    const bool horizontally = edges.testAnyFlags(Qt::LeftEdge | Qt::RightEdge);
    const bool vertically = edges.testAnyFlags(Qt::TopEdge | Qt::BottomEdge);
    if (horizontally && vertically) {
        const bool falling = edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge);
        return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    if (horizontally) {
        return Qt::SizeHorCursor;
    }
    return vertically ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

QRect dragged(const QRect &geometry, Qt::Edges edges, const QPoint &delta)
{
    if (!edges) {
        return geometry.translated(delta);
    }
    QRect result = geometry;
    // The edge opposite to the dragged one stays where it is, also when a limit is reached.
    const auto width = [](int wanted) {
        return std::clamp(wanted, minimumSize.width(), maximumSize.width());
    };
    const auto height = [](int wanted) {
        return std::clamp(wanted, minimumSize.height(), maximumSize.height());
    };
    if (edges.testFlag(Qt::LeftEdge)) {
        result.setLeft(geometry.right() + 1 - width(geometry.width() - delta.x()));
    } else if (edges.testFlag(Qt::RightEdge)) {
        result.setWidth(width(geometry.width() + delta.x()));
    }
    if (edges.testFlag(Qt::TopEdge)) {
        result.setTop(geometry.bottom() + 1 - height(geometry.height() - delta.y()));
    } else if (edges.testFlag(Qt::BottomEdge)) {
        result.setHeight(height(geometry.height() + delta.y()));
    }
    return result;
}

QPoint boundedDrag(const QRect &geometry, Qt::Edges edges, const QPoint &delta, const QRect &bounds)
{
    const auto bounded = [edges](int wanted, Qt::Edge low, int toLow, Qt::Edge high, int toHigh) {
        const int least = !edges || edges.testFlag(low) ? std::min(toLow, 0) : std::min(wanted, 0);
        const int most = !edges || edges.testFlag(high) ? std::max(toHigh, 0) : std::max(wanted, 0);
        return std::clamp(wanted, least, most);
    };
    return {bounded(delta.x(), Qt::LeftEdge, bounds.left() - geometry.left(), Qt::RightEdge,
                bounds.right() - geometry.right()),
        bounded(delta.y(), Qt::TopEdge, bounds.top() - geometry.top(), Qt::BottomEdge,
            bounds.bottom() - geometry.bottom())};
}

QPointF stepped(const QPointF &pointer, const QPointF &step, const QList<QRect> &screens)
{
    const auto screenAt = [&screens](const QPointF &point) {
        return std::find_if(screens.begin(), screens.end(),
            [&point](const QRect &screen) { return QRectF(screen).contains(point); });
    };
    const QPointF next = pointer + step;
    const auto screen = screenAt(pointer);
    if (screen == screens.end() || screenAt(next) != screens.end()) {
        return next;
    }
    return {std::clamp(next.x(), double(screen->left()), double(screen->right())),
        std::clamp(next.y(), double(screen->top()), double(screen->bottom()))};
}

QRect fitted(const QRect &geometry, const QRect &bounds)
{
    QRect result = geometry;
    result.setSize(geometry.size().boundedTo(maximumSize).boundedTo(bounds.size()).expandedTo(minimumSize));
    const int mostX = std::max(bounds.left(), bounds.right() + 1 - result.width());
    const int mostY = std::max(bounds.top(), bounds.bottom() + 1 - result.height());
    result.moveTo(std::clamp(result.x(), bounds.left(), mostX), std::clamp(result.y(), bounds.top(), mostY));
    return result;
}

QRect grown(const QRect &geometry, int height, const QRect &bounds)
{
    const QSize most = maximumSize.boundedTo(bounds.size());
    QRect result = geometry;
    result.setTop(geometry.bottom() + 1 - std::max(geometry.height(), std::min(height, most.height())));
    if (height > most.height() && geometry.width() < most.width()) {
        result.setWidth(most.width());
        result.moveLeft(geometry.center().x() - most.width() / 2);
    }
    return fitted(result, bounds);
}

std::optional<QRect> clearOf(const QRect &geometry, const QList<QRect> &obstacles, const QRect &bounds)
{
    const auto isClear = [&](const QRect &place) {
        return std::none_of(obstacles.begin(), obstacles.end(),
            [&place](const QRect &obstacle) { return obstacle.intersects(place); });
    };
    if (isClear(geometry)) {
        return geometry;
    }
    const QRect inside = fitted(geometry, bounds);
    QList<int> columns {inside.left()};
    QList<int> rows {inside.top()};
    for (const QRect &obstacle : obstacles) {
        columns.append({obstacle.left() - clearance - geometry.width(), obstacle.right() + 1 + clearance});
        rows.append({obstacle.top() - clearance - geometry.height(), obstacle.bottom() + 1 + clearance});
    }
    std::optional<QRect> nearest;
    const auto distance = [&geometry](const QRect &place) {
        return (place.topLeft() - geometry.topLeft()).manhattanLength();
    };
    for (const int x : columns) {
        for (const int y : rows) {
            const QRect place(QPoint(x, y), geometry.size());
            if (bounds.contains(place) && isClear(place)
                && (!nearest || distance(place) < distance(*nearest))) {
                nearest = place;
            }
        }
    }
    return nearest;
}

} // namespace lumaphone::floatingcaption
