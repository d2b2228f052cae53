#include "app/floating/LayerPanelSurface.h"

#include <QScreen>

#include <LayerShellQt/Window>

namespace lumaphone {

LayerPanelSurface::LayerPanelSurface(QQuickWindow &panel)
    : m_panel(panel)
    , m_layer(*LayerShellQt::Window::get(&panel))
{
    m_layer.setLayer(LayerShellQt::Window::LayerOverlay);
    m_layer.setScope(QStringLiteral("captions"));
    m_layer.setKeyboardInteractivity(LayerShellQt::Window::KeyboardInteractivityNone);
    m_layer.setAnchors({LayerShellQt::Window::AnchorTop, LayerShellQt::Window::AnchorLeft});
    // Of the whole output, whatever bars take of it.
    m_layer.setExclusiveZone(-1);
    // When its output goes, it comes back on another one.
    m_layer.setCloseOnDismissed(false);
}

void LayerPanelSurface::setFrame(const QRect &frame)
{
    m_position = frame.topLeft();
    m_panel.resize(frame.size());
    const QPoint onOutput = m_position - m_panel.screen()->geometry().topLeft();
    m_layer.setMargins({onOutput.x(), onOutput.y(), 0, 0});
    // Counts from the next frame on.
    m_panel.update();
    m_relativePointer.prepare();
}

bool LayerPanelSurface::canBeShown() const
{
    // The toolkit stands a screen without a name in for those that have gone.
    return !m_panel.screen()->name().isEmpty();
}

std::optional<QRect> LayerPanelSurface::bounds() const
{
    return m_panel.screen()->geometry();
}

std::optional<QPoint> LayerPanelSurface::beginDrag(const QMouseEvent &press, Qt::Edges)
{
    m_pressed = press.position();
    m_pressedOnDesktop = m_position + m_pressed;
    m_relativePointer.begin(m_pressedOnDesktop, static_cast<std::uint32_t>(press.timestamp()));
    return m_pressedOnDesktop.toPoint();
}

std::optional<QPoint> LayerPanelSurface::pointer(const QMouseEvent &)
{
    if (!m_relativePointer.hasMoved()) {
        return std::nullopt;
    }
    return m_relativePointer.position().toPoint();
}

QPoint LayerPanelSurface::endDrag(const QMouseEvent &release)
{
    // A window that has not been moved meanwhile makes the position in it a measure.
    const QPoint there
        = pointer(release).value_or((m_pressedOnDesktop + release.position() - m_pressed).toPoint());
    m_relativePointer.end();
    return there;
}

} // namespace lumaphone
