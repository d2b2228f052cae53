#include "app/live/MarkedPlaces.h"

#include "app/live/TextPlaces.h"
#include "app/live/TranscriptModel.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <QSGTransformNode>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumaphone {

namespace {

/// Without a graphics card nothing is painted behind an opaque rectangle, not even behind a pixel of which it
/// covers a part.
QColor hardlyTransparent(QColor color)
{
    color.setAlpha(std::min(color.alpha(), 254));
    return color;
}

QRectF onWholePixels(const QRectF &place)
{
    const double left = std::round(place.left());
    return {left, place.top(), std::round(place.right()) - left, place.height()};
}

/// A rectangle whose corners lack a pixel, which looks rounded at the size of a word.
void appendRounded(const QRectF &place, const QColor &color, std::vector<MarkedPlaces::Place> &places)
{
    const double inner = std::max(0.0, place.width() - 2);
    places.push_back({place.adjusted(0, 1, 0, -1), color});
    places.push_back({QRectF(place.x() + 1, place.y(), inner, 1), color});
    places.push_back({QRectF(place.x() + 1, place.bottom() - 1, inner, 1), color});
}

} // namespace

MarkedPlaces::MarkedPlaces(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &MarkedPlaces::changed, this, &QQuickItem::polish);
}

void MarkedPlaces::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width()) {
        polish();
    }
}

void MarkedPlaces::updatePolish()
{
    std::vector<Place> places;
    if (!m_marks.isEmpty()) {
        const LaidOutText text({m_text, m_font, width(), m_lineHeight});
        for (const QVariant &each : std::as_const(m_marks)) {
            const QVariantMap mark = each.toMap();
            const auto kind = TranscriptModel::MarkKind(mark.value(QStringLiteral("kind")).toInt());
            const QList<QRectF> rectangles = text.places(
                mark.value(QStringLiteral("from")).toInt(), mark.value(QStringLiteral("to")).toInt());
            for (const QRectF &exact : rectangles) {
                const QRectF rectangle = onWholePixels(exact);
                switch (kind) {
                case TranscriptModel::Selected: // reaches from line to line without a gap
                    places.push_back({rectangle, m_selectedColor});
                    break;
                case TranscriptModel::Found:
                    appendRounded(rectangle, m_foundColor, places);
                    break;
                case TranscriptModel::LookedAt:
                    appendRounded(rectangle, m_lookedAtColor, places);
                    break;
                }
            }
        }
    }
    if (places != m_places) {
        m_places = std::move(places);
        update();
    }
}

QSGNode *MarkedPlaces::updatePaintNode(QSGNode *former, UpdatePaintNodeData *)
{
    // Without a graphics card, the place of what is added later is that of the next node above that has one.
    QSGNode *all = former ? former : new QSGTransformNode;
    while (all->childCount() > static_cast<int>(m_places.size())) {
        delete all->lastChild();
    }
    while (all->childCount() < static_cast<int>(m_places.size())) {
        all->appendChildNode(window()->createRectangleNode());
    }
    QSGNode *next = all->firstChild();
    for (const Place &place : m_places) {
        auto *node = static_cast<QSGRectangleNode *>(next);
        node->setRect(place.rectangle);
        node->setColor(hardlyTransparent(place.color));
        next = next->nextSibling();
    }
    return all;
}

} // namespace lumaphone
