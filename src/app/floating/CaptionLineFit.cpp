#include "app/floating/CaptionLineFit.h"

#include <algorithm>

namespace lumaphone {

CaptionLineFit::CaptionLineFit(QObject *parent)
    : QObject(parent)
{
}

template<typename Value> bool CaptionLineFit::set(Value &member, const Value &value, Signal changed)
{
    if (member == value) {
        return false;
    }
    member = value;
    emit(this->*changed)();
    return true;
}

void CaptionLineFit::setText(const QString &text)
{
    if (set(m_text, text, &CaptionLineFit::textChanged)) {
        measure();
    }
}

void CaptionLineFit::setFontFamily(const QString &family)
{
    if (m_font.family() != family) {
        m_font.setFamily(family);
        emit fontFamilyChanged();
        measure();
    }
}

void CaptionLineFit::setFontWeight(int weight)
{
    const auto wanted = static_cast<QFont::Weight>(std::clamp(weight, 1, 1000));
    if (m_font.weight() != wanted) {
        m_font.setWeight(wanted);
        emit fontWeightChanged();
        measure();
    }
}

void CaptionLineFit::setFontSize(double points)
{
    if (set(m_bounds.fontSize, points, &CaptionLineFit::fontSizeChanged)) {
        measure();
    }
}

void CaptionLineFit::setMinimumFontSize(double points)
{
    if (set(m_bounds.minimumFontSize, points, &CaptionLineFit::minimumFontSizeChanged)) {
        measure();
    }
}

void CaptionLineFit::setMaximumLines(int lines)
{
    if (set(m_bounds.maximumLines, lines, &CaptionLineFit::maximumLinesChanged)) {
        measure();
    }
}

void CaptionLineFit::setLineSpacing(double spacing)
{
    if (set(m_bounds.lineSpacing, spacing, &CaptionLineFit::lineSpacingChanged)) {
        measure();
    }
}

void CaptionLineFit::setAvailableWidth(double width)
{
    if (m_bounds.available.width() != width) {
        m_bounds.available.setWidth(width);
        emit availableWidthChanged();
        measure();
    }
}

void CaptionLineFit::setAvailableHeight(double height)
{
    if (m_bounds.available.height() != height) {
        m_bounds.available.setHeight(height);
        emit availableHeightChanged();
        fit();
    }
}

void CaptionLineFit::measure()
{
    const double least = captionLineHeight(m_text, m_font, m_bounds.minimumFontSize, m_bounds.lineSpacing);
    set(m_leastHeight, least, &CaptionLineFit::leastHeightChanged);
    set(m_wantedHeight, captionHeight(m_text, m_font, m_bounds), &CaptionLineFit::wantedHeightChanged);
    fit();
}

void CaptionLineFit::fit()
{
    set(m_fit, fittedCaption(m_text, m_font, m_bounds), &CaptionLineFit::fitChanged);
}

} // namespace lumaphone
