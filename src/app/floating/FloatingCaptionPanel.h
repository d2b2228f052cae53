#pragma once

#include <QPoint>
#include <QQuickView>
#include <QRect>

#include <optional>

namespace lumaphone {

/// The window of the caption panel: borderless and translucent, above all others and on all desktops, never
/// with the keyboard focus; dragged by its background, resized at its edges. Hidden until it is shown.
class FloatingCaptionPanel : public QQuickView
{
    Q_OBJECT

public:
    /// `view` becomes the content. Its root has the writable texts "sourceText" and "translationText";
    /// `properties` are set when it is made.
    FloatingCaptionPanel(QQmlEngine &engine, const QUrl &view, const QVariantMap &properties);

    /// `sourceLanguage` is the raw value of the language whose glyphs the source text gets; or it is empty.
    void setTexts(const QString &sourceText, const QString &sourceLanguage, const QString &translationText);
    /// Shows it above everything, without making it active.
    void orderFront();

signals:
    void moved();
    void resized();
    /// The panel is about to be closed, by the program or by the user.
    void willClose();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool event(QEvent *event) override;

private:
    struct Drag
    {
        Qt::Edges edges;
        QPoint from; ///< of the pointer, on the whole desktop
        QRect geometry; ///< of the panel then
    };

    bool placesItself() const;

    std::optional<Drag> m_drag;
};

} // namespace lumaphone
