#include "app/floating/CaptionLineFit.h"

#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace lumaphone {

namespace {

bool fits(const QString &text, const QFont &font, const CaptionLineBounds &bounds)
{
    QString laidOut = text;
    laidOut.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(laidOut, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    double height = 0;
    int count = 0;
    bool isInside = true;
    for (QTextLine line = layout.createLine(); line.isValid() && isInside; line = layout.createLine()) {
        line.setLineWidth(bounds.available.width());
        height += std::ceil(line.height());
        ++count;
        isInside = count <= bounds.maximumLines && height <= bounds.available.height();
    }
    layout.endLayout();
    return isInside;
}

} // namespace

int fittingPixelSize(const QString &text, QFont font, const CaptionLineBounds &bounds)
{
    const int largest = std::max(1, static_cast<int>(std::lround(bounds.fontSize)));
    const int smallest = std::clamp(static_cast<int>(std::ceil(bounds.minimumFontSize)), 1, largest);
    for (int size = largest; size > smallest; --size) {
        font.setPixelSize(size);
        if (fits(text, font, bounds)) {
            return size;
        }
    }
    return smallest;
}

CaptionLineFit::CaptionLineFit(QObject *parent)
    : QObject(parent)
{
}

template<typename Value>
void CaptionLineFit::set(Value &member, const Value &value, void (CaptionLineFit::*changed)())
{
    if (member == value) {
        return;
    }
    member = value;
    emit(this->*changed)();
    update();
}

void CaptionLineFit::setText(const QString &text)
{
    set(m_text, text, &CaptionLineFit::textChanged);
}

void CaptionLineFit::setFontFamily(const QString &family)
{
    set(m_fontFamily, family, &CaptionLineFit::fontFamilyChanged);
}

void CaptionLineFit::setFontWeight(int weight)
{
    set(m_fontWeight, std::clamp(weight, 1, 1000), &CaptionLineFit::fontWeightChanged);
}

void CaptionLineFit::setFontSize(double points)
{
    set(m_bounds.fontSize, points, &CaptionLineFit::fontSizeChanged);
}

void CaptionLineFit::setMinimumFontSize(double points)
{
    set(m_bounds.minimumFontSize, points, &CaptionLineFit::minimumFontSizeChanged);
}

void CaptionLineFit::setMaximumLines(int lines)
{
    set(m_bounds.maximumLines, lines, &CaptionLineFit::maximumLinesChanged);
}

void CaptionLineFit::setAvailableWidth(double width)
{
    set(m_width, width, &CaptionLineFit::availableWidthChanged);
}

void CaptionLineFit::setAvailableHeight(double height)
{
    set(m_height, height, &CaptionLineFit::availableHeightChanged);
}

void CaptionLineFit::update()
{
    m_bounds.available = {m_width, m_height};
    QFont font(m_fontFamily);
    font.setWeight(static_cast<QFont::Weight>(m_fontWeight));
    const int pixelSize = fittingPixelSize(m_text, font, m_bounds);
    if (m_pixelSize != pixelSize) {
        m_pixelSize = pixelSize;
        emit pixelSizeChanged();
    }
}

} // namespace lumaphone
