#include "app/live/TextPlaces.h"

#include <QTextLayout>
#include <QTextOption>
#include <QVariantMap>

#include <algorithm>

namespace lumaphone {

namespace {

void layOut(QTextLayout &layout, const TextSetting &setting)
{
    QString text = setting.text;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    layout.setText(text);
    layout.setFont(setting.font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true); // as the item does
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(setting.width);
    }
    layout.endLayout();
}

} // namespace

QList<QRectF> placesOf(const TextSetting &setting, int from, int to)
{
    QTextLayout layout;
    layOut(layout, setting);
    QList<QRectF> places;
    for (int number = 0; number < layout.lineCount(); ++number) {
        const QTextLine line = layout.lineAt(number);
        const int first = std::max(from, line.textStart());
        const int last = std::min(to, line.textStart() + line.textLength());
        if (first < last) {
            const double left = line.cursorToX(first);
            const double right = line.cursorToX(last);
            places.append(QRectF(std::min(left, right), number * setting.lineHeight, std::abs(right - left),
                setting.lineHeight));
        }
    }
    return places;
}

int offsetAt(const TextSetting &setting, QPointF point)
{
    QTextLayout layout;
    layOut(layout, setting);
    const int count = layout.lineCount();
    if (count == 0 || point.y() < 0) {
        return 0;
    }
    const auto number = static_cast<int>(point.y() / setting.lineHeight);
    return number >= count ? static_cast<int>(setting.text.size())
                           : layout.lineAt(number).xToCursor(point.x(), QTextLine::CursorBetweenCharacters);
}

QVariantList TextPlaces::places(
    const QString &text, const QFont &font, double width, double lineHeight, const QVariantList &marks)
{
    QVariantList places;
    for (const QVariant &mark : marks) {
        const QVariantMap map = mark.toMap();
        const QList<QRectF> found = placesOf({text, font, width, lineHeight},
            map.value(QStringLiteral("from")).toInt(), map.value(QStringLiteral("to")).toInt());
        for (const QRectF &place : found) {
            places.append(QVariantMap {{QStringLiteral("place"), place},
                {QStringLiteral("kind"), map.value(QStringLiteral("kind"))}});
        }
    }
    return places;
}

int TextPlaces::offset(const QString &text, const QFont &font, double width, double lineHeight, QPointF point)
{
    return offsetAt({text, font, width, lineHeight}, point);
}

} // namespace lumaphone
