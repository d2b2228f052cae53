#include "app/floating/FloatingCaptionPlacement.h"

#include <algorithm>

namespace lumaphone::floatingcaption {

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

} // namespace lumaphone::floatingcaption
