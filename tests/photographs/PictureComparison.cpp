#include "photographs/PictureComparison.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>

namespace lumaphone::test {

namespace {

constexpr int reduction = 4;
constexpr int block = 8; ///< in pixels of kept pictures
constexpr int slack = 4; ///< in pixels of photographs
constexpr double tolerance = 9;

double distance(QRgb a, QRgb b)
{
    return (std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b)))
        / 3.0;
}

/// On average over the block.
double distanceOf(const QImage &expected, const QImage &actual, const QRect &place)
{
    double sum = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            sum += distance(expected.pixel(x, y), actual.pixel(x, y));
        }
    }
    return sum / (place.width() * place.height());
}

/// A photograph made small, as it is and as if it lay a little beside its place.
class SmallPictures
{
public:
    explicit SmallPictures(const QImage &photograph)
        : m_photograph(photograph)
        , m_asItIs(keptPicture(photograph))
    {
    }

    const QImage &asItIs() const { return m_asItIs; }
    /// Of the one that lies best.
    double leastDistance(const QImage &expected, const QRect &place)
    {
        double least = distanceOf(expected, m_asItIs, place);
        if (least <= tolerance) {
            return least;
        }
        for (const QImage &picture : beside()) {
            least = std::min(least, distanceOf(expected, picture, place));
        }
        return least;
    }

private:
    const QList<QImage> &beside()
    {
        constexpr int places = (2 * slack + 1) * (2 * slack + 1);
        for (int place = int(m_beside.size()); place < places; ++place) {
            const QPoint offset(place % (2 * slack + 1) - slack, place / (2 * slack + 1) - slack);
            m_beside.append(keptPicture(m_photograph.copy(m_photograph.rect().translated(offset))));
        }
        return m_beside;
    }

    const QImage m_photograph;
    const QImage m_asItIs;
    QList<QImage> m_beside;
};

} // namespace

QImage keptPicture(const QImage &photograph)
{
    return photograph.convertToFormat(QImage::Format_RGB32)
        .scaled(photograph.width() / reduction, photograph.height() / reduction, Qt::IgnoreAspectRatio,
            Qt::SmoothTransformation);
}

PictureDifference differenceOf(const QImage &kept, const QImage &photograph)
{
    const QImage expected = kept.convertToFormat(QImage::Format_RGB32);
    SmallPictures pictures(photograph);
    const QRect all = pictures.asItIs().rect();
    if (expected.rect() != all) {
        return {255, {photograph.rect()}};
    }
    PictureDifference difference;
    for (int y = 0; y < all.height(); y += block) {
        for (int x = 0; x < all.width(); x += block) {
            const QRect place = QRect(x, y, block, block).intersected(all);
            const double found = pictures.leastDistance(expected, place);
            difference.greatest = std::max(difference.greatest, found);
            if (found > tolerance) {
                difference.places.append({place.topLeft() * reduction, place.size() * reduction});
            }
        }
    }
    return difference;
}

QImage framed(const QImage &photograph, const PictureDifference &difference)
{
    QImage picture = photograph.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::red, 2));
    painter.drawRects(difference.places.toVector());
    return picture;
}

} // namespace lumaphone::test
