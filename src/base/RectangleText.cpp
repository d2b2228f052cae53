#include "base/RectangleText.h"

#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <cmath>

namespace lumaphone {

namespace {

QString numberText(double number)
{
    if (!std::isfinite(number) || number == 0) {
        return QStringLiteral("0"); // the negative nought, too
    }
    const char form = std::abs(number) < 1e15 && std::abs(number) >= 1e-6 ? 'f' : 'g';
    return QString::number(number, form, QLocale::FloatingPointShortest);
}

double numberFromText(const QString &text)
{
    bool isNumber = false;
    const double number = QLocale::c().toDouble(text, &isNumber);
    return isNumber && std::isfinite(number) ? number : 0;
}

} // namespace

QString rectangleText(const QRectF &rectangle)
{
    return QStringLiteral("{{%1, %2}, {%3, %4}}")
        .arg(numberText(rectangle.x()), numberText(rectangle.y()), numberText(rectangle.width()),
            numberText(rectangle.height()));
}

QRectF rectangleFromText(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("[+-]?(?:[0-9]++(?:\\.[0-9]*+)?|\\.[0-9]++)(?:[eE][+-]?[0-9]++)?"));
    std::array<double, 4> numbers {};
    auto matches = form.globalMatch(text);
    for (double &number : numbers) {
        if (!matches.hasNext()) {
            break;
        }
        number = numberFromText(matches.next().captured());
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

} // namespace lumaphone
