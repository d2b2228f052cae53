#include "app/live/TextPlaces.h"

#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace lumaphone {

LaidOutText::LaidOutText(const TextSetting &setting)
    : m_lineHeight(setting.lineHeight)
{
    QString text = setting.text;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    m_layout.setText(text);
    m_layout.setFont(setting.font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true); // as the item does
    m_layout.setTextOption(option);
    m_layout.beginLayout();
    for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
        line.setLineWidth(setting.width);
    }
    m_layout.endLayout();
}

QList<QRectF> LaidOutText::places(int from, int to) const
{
    QList<QRectF> places;
    for (int number = 0; number < m_layout.lineCount(); ++number) {
        const QTextLine line = m_layout.lineAt(number);
        const int first = std::max(from, line.textStart());
        const int last = std::min(to, line.textStart() + line.textLength());
        if (first < last) {
            const double left = line.cursorToX(first);
            const double right = line.cursorToX(last);
            places.append(
                QRectF(std::min(left, right), number * m_lineHeight, std::abs(right - left), m_lineHeight));
        }
    }
    return places;
}

int LaidOutText::offset(QPointF point) const
{
    const int count = m_layout.lineCount();
    if (count == 0 || point.y() < 0) {
        return 0;
    }
    const auto number = static_cast<int>(point.y() / m_lineHeight);
    return number >= count ? static_cast<int>(m_layout.text().size())
                           : m_layout.lineAt(number).xToCursor(point.x(), QTextLine::CursorBetweenCharacters);
}

int TextPlaces::offset(const QString &text, const QFont &font, double width, double lineHeight, QPointF point)
{
    return LaidOutText({text, font, width, lineHeight}).offset(point);
}

} // namespace lumaphone
