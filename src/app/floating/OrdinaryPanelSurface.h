#pragma once

#include "app/floating/PanelSurface.h"

namespace lumaphone {

/// A window like any other, as all Wayland desktops know them: it is the desktop's to place, move and resize.
class OrdinaryPanelSurface final : public PanelSurface
{
public:
    explicit OrdinaryPanelSurface(QQuickWindow &panel);

    PanelPlacing placing() const override { return PanelPlacing::byDesktop; }
    QRect frame() const override { return m_panel.geometry(); }
    void setFrame(const QRect &frame) override { m_panel.setGeometry(frame); }
    std::optional<QRect> bounds() const override { return std::nullopt; }
    std::optional<QPoint> beginDrag(const QMouseEvent &press, Qt::Edges edges) override;
    std::optional<QPoint> pointer(const QMouseEvent &move) override;
    QPoint endDrag(const QMouseEvent &release) override;

private:
    QQuickWindow &m_panel;
};

} // namespace lumaphone
