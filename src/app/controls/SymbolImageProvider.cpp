#include "app/controls/SymbolImageProvider.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace lumaphone {

namespace {

constexpr int naturalSize = 24;

} // namespace

SymbolImageProvider::SymbolImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QByteArray SymbolImageProvider::drawing(const QString &name)
{
    QFile file(QStringLiteral(":/qt/qml/Lumaphone/Controls/symbols/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage SymbolImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype separator = id.lastIndexOf(QLatin1Char('/'));
    const QColor color(QLatin1Char('#') + id.mid(separator + 1));
    QByteArray svg = drawing(id.left(separator));
    if (svg.isEmpty() || !color.isValid()) {
        return {};
    }
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());

    const QSize imageSize = requestedSize.isValid() ? requestedSize : QSize(naturalSize, naturalSize);
    QImage image(imageSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(color.alphaF());
    QSvgRenderer(svg).render(&painter);
    *size = imageSize;
    return image;
}

} // namespace lumaphone
