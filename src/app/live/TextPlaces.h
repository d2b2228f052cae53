#pragma once

#include <QFont>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// How a Text item lays its text out that wraps it wherever it must, in lines of one height.
struct TextSetting
{
    QString text;
    QFont font;
    double width = 0;
    double lineHeight = 0;
};

/// Where the text from one offset to another stands, a rectangle for each line.
QList<QRectF> placesOf(const TextSetting &setting, int from, int to);
/// Before which character a point lies.
int offsetAt(const TextSetting &setting, QPointF point);

/// The same for views.
class TextPlaces final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The rectangles of `marks`, which are maps with "from", "to" and "kind", as maps with "place" and
    /// "kind".
    Q_INVOKABLE static QVariantList places(
        const QString &text, const QFont &font, double width, double lineHeight, const QVariantList &marks);
    Q_INVOKABLE static int offset(
        const QString &text, const QFont &font, double width, double lineHeight, QPointF point);
};

} // namespace lumaphone
