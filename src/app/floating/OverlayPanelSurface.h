#pragma once

#include "app/floating/PanelSurface.h"

namespace lumaphone {

/// A window that no window manager manages, as X11 knows them: it lies where it is put.
class OverlayPanelSurface final : public PanelSurface
{
public:
    explicit OverlayPanelSurface(QQuickWindow &panel);

    PanelPlacing placing() const override { return PanelPlacing::anywhere; }
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
