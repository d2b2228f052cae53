#pragma once

#include <QFont>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTextLayout>
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

/// A text in its lines.
class LaidOutText
{
public:
    explicit LaidOutText(const TextSetting &setting);

    /// Where the text from one offset to another stands, a rectangle for each line.
    QList<QRectF> places(int from, int to) const;
    /// Before which character a point lies.
    int offset(QPointF point) const;

private:
    double m_lineHeight;
    QTextLayout m_layout;
};

/// For views.
class TextPlaces final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Before which character of a text a point lies.
    Q_INVOKABLE static int offset(
        const QString &text, const QFont &font, double width, double lineHeight, QPointF point);
};

} // namespace lumaphone
