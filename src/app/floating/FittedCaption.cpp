#include "app/floating/FittedCaption.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace lumaphone {

namespace {

constexpr double endless = 1e6;

struct Extent
{
    int lines = 0;
    double height = 0;
    double tallestLine = 0;
};

/// What the text takes at that size; measuring ends where it leaves the bounds.
Extent extent(const QString &text, QFont font, double fontSize, const CaptionLineBounds &bounds)
{
    const DrawnFontSize drawn(fontSize);
    font.setPixelSize(drawn.pixels);
    QString laidOut = text;
    laidOut.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(laidOut, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    Extent taken;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(bounds.available.width() / drawn.scale);
        const double height = std::ceil(line.height()) * bounds.lineSpacing * drawn.scale;
        taken.height += height;
        taken.tallestLine = std::max(taken.tallestLine, height);
        ++taken.lines;
        if (taken.lines > bounds.maximumLines || taken.height > bounds.available.height()) {
            break;
        }
    }
    layout.endLayout();
    return taken;
}

bool fits(const QString &text, const QFont &font, double fontSize, const CaptionLineBounds &bounds)
{
    const Extent taken = extent(text, font, fontSize, bounds);
    return taken.lines <= bounds.maximumLines && taken.height <= bounds.available.height();
}

/// Where the text may begin when its oldest words are left out.
std::vector<qsizetype> beginnings(const QString &text, QTextBoundaryFinder::BoundaryType unit)
{
    std::vector<qsizetype> found;
    QTextBoundaryFinder finder(unit, text);
    for (qsizetype at = finder.toNextBoundary(); at >= 0 && at < text.size(); at = finder.toNextBoundary()) {
        const QChar first = text.at(at);
        const QChar::Category category = first.category();
        if (!first.isSpace() && category != QChar::Punctuation_Other
            && category != QChar::Punctuation_Close) {
            found.push_back(at);
        }
    }
    return found;
}

/// As many of the newest words as have room.
QString newestWords(const QString &text, const QFont &font, double fontSize, const CaptionLineBounds &bounds)
{
    const auto from = [&text](qsizetype beginning) {
        return QStringLiteral("…") + text.mid(beginning);
    };
    for (const auto unit : {QTextBoundaryFinder::Word, QTextBoundaryFinder::Grapheme}) {
        const std::vector<qsizetype> all = beginnings(text, unit);
        const auto longest = std::partition_point(all.begin(), all.end(),
            [&](qsizetype beginning) { return !fits(from(beginning), font, fontSize, bounds); });
        if (longest != all.end()) {
            return from(*longest);
        }
    }
    return QStringLiteral("…");
}

} // namespace

DrawnFontSize::DrawnFontSize(double fontSize)
    : pixels(std::max(1, static_cast<int>(std::lround(fontSize))))
    , scale(fontSize > 0 ? fontSize / pixels : 1)
{
}

double captionLineHeight(const QString &text, const QFont &font, double fontSize, double lineSpacing)
{
    return extent(text, font, fontSize,
        {.maximumLines = std::numeric_limits<int>::max(),
            .lineSpacing = lineSpacing,
            .available = {endless, endless}})
        .tallestLine;
}

FittedCaption fittedCaption(const QString &text, const QFont &font, const CaptionLineBounds &bounds)
{
    const double largest = std::max(1.0, bounds.fontSize);
    const double smallest = std::clamp(bounds.minimumFontSize, 1.0, largest);
    if (bounds.available.isEmpty()) {
        return {QString(), smallest, text.isEmpty()};
    }
    for (double size = largest; size > smallest; size = std::ceil(size) - 1) {
        if (fits(text, font, size, bounds)) {
            return {text, size, true};
        }
    }
    double size = smallest;
    const double lineHeight = captionLineHeight(text, font, size, bounds.lineSpacing);
    if (lineHeight > bounds.available.height()) {
        // Heights of lines are rounded up.
        size *= (bounds.available.height() - 1) / lineHeight;
    }
    if (fits(text, font, size, bounds)) {
        return {text, size, true};
    }
    return {newestWords(text, font, size, bounds), size, false};
}

double captionHeight(const QString &text, const QFont &font, CaptionLineBounds bounds)
{
    bounds.available.setHeight(endless);
    const FittedCaption fitted = fittedCaption(text, font, bounds);
    return extent(fitted.text, font, fitted.fontSize, bounds).height;
}

} // namespace lumaphone
