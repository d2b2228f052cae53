#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// The look of the floating captions.
enum class FloatingCaptionTheme {
    dark,
    light,
    glass,
};

/// All cases, in the order of menus.
inline constexpr std::array allFloatingCaptionThemes {
    FloatingCaptionTheme::dark,
    FloatingCaptionTheme::light,
    FloatingCaptionTheme::glass,
};

/// The stored form and identity, such as "dark".
QString rawValue(FloatingCaptionTheme value);
/// Exact and case-sensitive; none for any other text.
std::optional<FloatingCaptionTheme> floatingCaptionTheme(const QString &rawValue);
/// Label for menus.
QString title(FloatingCaptionTheme value);

} // namespace lumaphone
