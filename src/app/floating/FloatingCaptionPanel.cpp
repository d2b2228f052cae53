#include "app/floating/FloatingCaptionPanel.h"

#include "app/floating/FloatingCaptionPlacement.h"
#include "app/floating/X11OverlayWindow.h"

#include <QGuiApplication>
#include <QQuickItem>

namespace lumaphone {

FloatingCaptionPanel::FloatingCaptionPanel(
    QQmlEngine &engine, const QUrl &view, const QVariantMap &properties)
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
    announceOverlayWindow(*this);
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
    show();
}

/// Where a client may place its windows, the panel moves itself; elsewhere the compositor moves it.
bool FloatingCaptionPanel::placesItself() const
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void FloatingCaptionPanel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const Qt::Edges edges = floatingcaption::edgesAt(event->position(), size());
    if (placesItself()) {
        m_drag = Drag {edges, event->globalPosition().toPoint(), geometry()};
    } else if (edges) {
        startSystemResize(edges);
    } else {
        startSystemMove();
    }
}

void FloatingCaptionPanel::mouseMoveEvent(QMouseEvent *event)
{
    if (m_drag) {
        const QPoint delta = event->globalPosition().toPoint() - m_drag->from;
        setGeometry(floatingcaption::dragged(m_drag->geometry, m_drag->edges, delta));
    } else {
        setCursor(floatingcaption::cursorFor(floatingcaption::edgesAt(event->position(), size())));
    }
}

void FloatingCaptionPanel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_drag.reset();
    }
}

bool FloatingCaptionPanel::event(QEvent *event)
{
    if (event->type() == QEvent::Close) {
        emit willClose();
    }
    return QQuickView::event(event);
}

} // namespace lumaphone
