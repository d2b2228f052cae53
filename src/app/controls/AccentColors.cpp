#include "app/controls/AccentColors.h"

#include <algorithm>
#include <cmath>

namespace lumaphone {

namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// Rounded to what the screen can show, so that what was measured is what is seen.
QColor mixed(const QColor &one, const QColor &other, double share)
{
    const auto part = [share](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * share));
    };
    return {part(one.red(), other.red()), part(one.green(), other.green()), part(one.blue(), other.blue())};
}

/// The colour, as much nearer to `end` as it takes to stand out from each of the others.
QColor standingOut(const QColor &color, const QColor &end, std::initializer_list<QColor> others, double ratio)
{
    constexpr int steps = 50;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = mixed(color, end, static_cast<double>(step) / steps);
        if (std::all_of(others.begin(), others.end(),
                [&](const QColor &other) { return contrast(candidate, other) >= ratio; })) {
            return candidate;
        }
    }
    return end;
}

} // namespace

AccentColors AccentPalette::colors(
    const QColor &wanted, const QColor &surface, const QColor &onAccent, double ratio)
{
    const QColor strong = luminance(surface) < 0.18 ? Qt::white : Qt::black;
    AccentColors colors;
    colors.accent = standingOut(wanted.toRgb(), strong, {surface, onAccent}, ratio);
    colors.hovered = mixed(colors.accent, strong, 0.12);
    colors.pressed = mixed(colors.accent, strong, 0.24);
    colors.well = mixed(surface, colors.accent, 0.13);
    colors.text = standingOut(colors.accent, strong, {surface, colors.well}, ratio);
    return colors;
}

} // namespace lumaphone
