#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace lumaphone::test {

/// A photograph made small enough to be kept: a quarter as wide and as high.
QImage keptPicture(const QImage &photograph);

/// Where two pictures differ.
struct PictureDifference
{
    double greatest = 0; ///< of a block, from 0 to 255
    QList<QRect> places; ///< blocks of the photograph that have changed; all of it if it has another size

    bool isNone() const { return places.isEmpty(); }
};

/// Compares a photograph with a kept picture, block by block: how far the colours of a block are from the
/// expected ones on average. A block may lie up to two pixels beside its place, so that another hinting,
/// smoothing or version of a font changes nothing, while something that has moved, come, gone or taken
/// another colour does.
PictureDifference differenceOf(const QImage &kept, const QImage &photograph);
/// The photograph with its changed blocks framed.
QImage framed(const QImage &photograph, const PictureDifference &difference);

} // namespace lumaphone::test
