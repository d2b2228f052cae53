#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The colours that the interface makes of one accent colour.
struct AccentColors
{
    Q_GADGET
    QML_VALUE_TYPE(accentColors)
    Q_PROPERTY(QColor accent MEMBER accent)
    Q_PROPERTY(QColor hovered MEMBER hovered)
    Q_PROPERTY(QColor pressed MEMBER pressed)
    Q_PROPERTY(QColor well MEMBER well)
    Q_PROPERTY(QColor text MEMBER text)

public:
    bool operator==(const AccentColors &) const = default;

    QColor accent; ///< of what is filled with it
    QColor hovered; ///< the same under the pointer
    QColor pressed;
    QColor well; ///< softly behind what is chosen
    QColor text; ///< of what is written on the well or on a surface
};

/// Makes any accent colour fit for the interface: its hue stays, and it becomes darker or lighter until
/// everything written in it or on it is legible.
class AccentPalette final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// `surface`: the back of the interface from which it is hardest to tell. `onAccent`: the colour of texts
    /// on the accent. `ratio`: how far texts stand out at least, from 1 to 21.
    Q_INVOKABLE static lumaphone::AccentColors colors(
        const QColor &wanted, const QColor &surface, const QColor &onAccent, double ratio);
};

} // namespace lumaphone
