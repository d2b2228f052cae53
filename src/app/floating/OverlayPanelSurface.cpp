#include "app/floating/OverlayPanelSurface.h"

#include "app/floating/X11OverlayWindow.h"

namespace lumaphone {

OverlayPanelSurface::OverlayPanelSurface(QQuickWindow &panel)
    : m_panel(panel)
{
    announceOverlayWindow(panel);
}

std::optional<QPoint> OverlayPanelSurface::beginDrag(const QMouseEvent &press, Qt::Edges)
{
    return press.globalPosition().toPoint();
}

std::optional<QPoint> OverlayPanelSurface::pointer(const QMouseEvent &move)
{
    return move.globalPosition().toPoint();
}

QPoint OverlayPanelSurface::endDrag(const QMouseEvent &release)
{
    return release.globalPosition().toPoint();
}

} // namespace lumaphone
