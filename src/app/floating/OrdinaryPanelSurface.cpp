#include "app/floating/OrdinaryPanelSurface.h"

namespace lumaphone {

OrdinaryPanelSurface::OrdinaryPanelSurface(QQuickWindow &panel)
    : m_panel(panel)
{
}

std::optional<QPoint> OrdinaryPanelSurface::beginDrag(const QMouseEvent &, Qt::Edges edges)
{
    if (edges) {
        m_panel.startSystemResize(edges);
    } else {
        m_panel.startSystemMove();
    }
    return std::nullopt;
}

std::optional<QPoint> OrdinaryPanelSurface::pointer(const QMouseEvent &)
{
    return std::nullopt;
}

QPoint OrdinaryPanelSurface::endDrag(const QMouseEvent &)
{
    return {};
}

} // namespace lumaphone
