#pragma once

#include "app/floating/PanelSurface.h"

#include <QPoint>
#include <QQuickView>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

namespace lumaphone {

/// The window of the caption panel: borderless and translucent, above all others and on all desktops, never
/// with the keyboard focus; dragged by its background, resized at its edges. Hidden until it is shown.
class FloatingCaptionPanel : public QQuickView
{
    Q_OBJECT

public:
    using SurfaceMaker = std::function<std::unique_ptr<PanelSurface>(QQuickWindow &)>;

    /// `view` becomes the content. Its root has the writable texts "sourceText" and "translationText", and
    /// perhaps "isInteractive" with a signal growWanted(height); `properties` are set when it is made. What
    /// has a property "takesPresses" is pressed; the rest drags the panel.
    FloatingCaptionPanel(QQmlEngine &engine, const QUrl &view, const QVariantMap &properties,
        const SurfaceMaker &makeSurface = &makePanelSurface);

    /// `sourceLanguage` is the raw value of the language whose glyphs the source text gets; or it is empty.
    void setTexts(const QString &sourceText, const QString &sourceLanguage, const QString &translationText);
    /// Shows it above everything, without making it active.
    void orderFront();
    PanelPlacing placing() const { return m_surface->placing(); }
    /// Where it lies on the whole desktop: the toolkit's geometry of the window does not know it everywhere.
    QRect frame() const { return m_surface->frame(); }
    void setFrame(const QRect &frame);
    bool isDragged() const { return m_drag.has_value(); }

signals:
    void moved();
    void resized();
    /// It cannot leave its screen, and has been dropped on another one, where it would cover `geometry`.
    void droppedElsewhere(QScreen *screen, const QRect &geometry);
    /// The panel is about to be closed, by the program or by the user.
    void willClose();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool event(QEvent *event) override;

private slots:
    void growTo(double height);

private:
    struct Drag
    {
        Qt::Edges edges;
        QPoint from; ///< of the pointer, on the whole desktop
        QRect frame; ///< of the panel then
    };

    QPoint draggedBy(const QPoint &pointer) const { return pointer - m_drag->from; }
    void dragTo(const QPoint &pointer);
    void drop(const QPoint &pointer);

    std::unique_ptr<PanelSurface> m_surface;
    std::optional<Drag> m_drag;
};

} // namespace lumaphone
