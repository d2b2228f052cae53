#include "app/floating/FloatingCaptionPanel.h"

#include "app/floating/FloatingCaptionPlacement.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace lumaphone {

namespace {

bool takesPressAt(const QQuickItem &item, const QPointF &point)
{
    const QList<QQuickItem *> children = item.childItems();
    return std::any_of(children.begin(), children.end(), [&](const QQuickItem *child) {
        const QPointF inChild = child->mapFromItem(&item, point);
        return child->isVisible() && child->isEnabled()
            && ((child->contains(inChild) && child->property("takesPresses").toBool())
                || takesPressAt(*child, inChild));
    });
}

} // namespace

FloatingCaptionPanel::FloatingCaptionPanel(
    QQmlEngine &engine, const QUrl &view, const QVariantMap &properties, const SurfaceMaker &makeSurface)
    : QQuickView(&engine, nullptr)
{
    // No window manager has a say: they all keep a managed window below a full-screen one that is in use.
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
        | Qt::NoDropShadowWindowHint | Qt::BypassWindowManagerHint);
    setTitle(QStringLiteral("Lumaphone Floating Captions"));
    setColor(Qt::transparent);
    setMinimumSize(floatingcaption::minimumSize);
    setMaximumSize(floatingcaption::maximumSize);
    resize(floatingcaption::initialSize);
    setResizeMode(SizeRootObjectToView);
    setInitialProperties(properties);
    setSource(view);
    if (QQuickItem *root = rootObject(); root && root->setProperty("isInteractive", true)) {
        connect(root, SIGNAL(growWanted(double)), this, SLOT(growTo(double)));
    }
    m_surface = makeSurface(*this);
    for (const auto changed : {&QWindow::xChanged, &QWindow::yChanged}) {
        connect(this, changed, this, &FloatingCaptionPanel::moved);
    }
    for (const auto changed : {&QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(this, changed, this, &FloatingCaptionPanel::resized);
    }
}

void FloatingCaptionPanel::setTexts(
    const QString &sourceText, const QString &sourceLanguage, const QString &translationText)
{
    if (QQuickItem *view = rootObject()) {
        view->setProperty("sourceLanguage", sourceLanguage);
        view->setProperty("sourceText", sourceText);
        view->setProperty("translationText", translationText);
    }
}

void FloatingCaptionPanel::orderFront()
{
    // It comes up on top of everything and stays there: raising it again for every caption would only cover
    // the menus that are opened above it.
    if (m_surface->canBeShown()) {
        show();
    }
}

void FloatingCaptionPanel::setFrame(const QRect &frame)
{
    const QPoint former = this->frame().topLeft();
    m_surface->setFrame(frame);
    if (frame.topLeft() != former) {
        emit moved();
    }
}

void FloatingCaptionPanel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (takesPressAt(*contentItem(), event->position())) {
        event->ignore();
        return;
    }
    const Qt::Edges edges = floatingcaption::edgesAt(event->position(), size());
    if (const std::optional<QPoint> pointer = m_surface->beginDrag(*event, edges)) {
        m_drag = Drag {edges, *pointer, frame()};
    }
}

void FloatingCaptionPanel::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_drag) {
        const bool isOnButton = takesPressAt(*contentItem(), event->position());
        setCursor(isOnButton
                ? Qt::PointingHandCursor
                : floatingcaption::cursorFor(floatingcaption::edgesAt(event->position(), size())));
        // For what is hovered or held.
        event->ignore();
    } else if (const std::optional<QPoint> pointer = m_surface->pointer(*event)) {
        dragTo(*pointer);
    }
}

void FloatingCaptionPanel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_drag) {
        drop(m_surface->endDrag(*event));
        m_drag.reset();
    } else {
        event->ignore();
    }
}

void FloatingCaptionPanel::dragTo(const QPoint &pointer)
{
    QPoint delta = draggedBy(pointer);
    if (const std::optional<QRect> bounds = m_surface->bounds()) {
        delta = floatingcaption::boundedDrag(m_drag->frame, m_drag->edges, delta, *bounds);
    }
    setFrame(floatingcaption::dragged(m_drag->frame, m_drag->edges, delta));
}

void FloatingCaptionPanel::drop(const QPoint &pointer)
{
    dragTo(pointer);
    QScreen *below = QGuiApplication::screenAt(pointer);
    if (placing() == PanelPlacing::withinOutput && !m_drag->edges && below && below != screen()) {
        emit droppedElsewhere(below, m_drag->frame.translated(draggedBy(pointer)));
    }
}

void FloatingCaptionPanel::growTo(double height)
{
    setFrame(floatingcaption::grown(frame(), static_cast<int>(std::ceil(height)), screen()->geometry()));
}

bool FloatingCaptionPanel::event(QEvent *event)
{
    if (event->type() == QEvent::Close) {
        emit willClose();
    }
    return QQuickView::event(event);
}

} // namespace lumaphone
