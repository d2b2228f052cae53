#pragma once

#include <QRectF>
#include <QString>

namespace lumaphone {

/// A rectangle as `{{x, y}, {width, height}}`, such as `{{310, 157.5}, {820, 180}}`: independent of the
/// locale, and exact, so that reading gives the same numbers back. Infinite numbers, and what is no number,
/// are written as 0.
QString rectangleText(const QRectF &rectangle);

/// Takes the first four numbers of `text` as x, y, width and height, whatever stands between them; those that
/// are missing or beyond the range of a number are 0. Text without numbers is the zero rectangle.
QRectF rectangleFromText(const QString &text);

} // namespace lumaphone
