#pragma once

#include "app/floating/PanelSurface.h"
#include "app/floating/RelativePointer.h"

namespace LayerShellQt {
class Window;
}

namespace lumaphone {

/// A surface of the layer shell: above everything on its output and on all desktops, never with the keyboard.
/// The toolkit knows no position of such a window.
class LayerPanelSurface final : public PanelSurface
{
public:
    explicit LayerPanelSurface(QQuickWindow &panel);

    PanelPlacing placing() const override { return PanelPlacing::withinOutput; }
    bool canBeShown() const override;
    QRect frame() const override { return {m_position, m_panel.size()}; }
    void setFrame(const QRect &frame) override;
    std::optional<QRect> bounds() const override;
    std::optional<QPoint> beginDrag(const QMouseEvent &press, Qt::Edges edges) override;
    std::optional<QPoint> pointer(const QMouseEvent &move) override;
    QPoint endDrag(const QMouseEvent &release) override;

private:
    QQuickWindow &m_panel;
    LayerShellQt::Window &m_layer;
    RelativePointer m_relativePointer;
    QPoint m_position; ///< on the whole desktop
    QPointF m_pressed; ///< in the window
    QPointF m_pressedOnDesktop;
};

} // namespace lumaphone
