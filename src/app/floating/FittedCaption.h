#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace lumaphone {

/// What a text of a few lines has to fit into.
struct CaptionLineBounds
{
    double fontSize = 0; ///< wanted, in points
    double minimumFontSize = 0; ///< down to which it shrinks before it loses words
    int maximumLines = 1;
    double lineSpacing = 1; ///< in heights of the font's own lines
    QSizeF available;
};

/// A text as it is drawn within its bounds, where no line is ever cut through.
struct FittedCaption
{
    QString text; ///< without its oldest words, of which "…" tells, if there is no room for all
    double fontSize = 1;
    bool isWhole = true;

    bool operator==(const FittedCaption &) const = default;
};

/// The text in the largest size at which all of it has room; else, in the smallest allowed one, its newest
/// words. It becomes even smaller only where not one line would have room.
FittedCaption fittedCaption(const QString &text, const QFont &font, const CaptionLineBounds &bounds);

/// The height of the tallest line of `text` at that size, when nothing wraps.
double captionLineHeight(const QString &text, const QFont &font, double fontSize, double lineSpacing);

/// The height that `text` takes within bounds whose height has no end.
double captionHeight(const QString &text, const QFont &font, CaptionLineBounds bounds);

/// How a size that is no whole number is drawn: fonts have whole pixels, so the picture is scaled.
struct DrawnFontSize
{
    explicit DrawnFontSize(double fontSize);

    int pixels;
    double scale; ///< near 1
};

} // namespace lumaphone
