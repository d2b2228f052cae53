#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// Which texts the floating captions show.
enum class FloatingCaptionDisplayMode {
    bilingual,
    translationOnly,
    sourceOnly,
};

/// All cases, in the order of menus.
inline constexpr std::array allFloatingCaptionDisplayModes {
    FloatingCaptionDisplayMode::bilingual,
    FloatingCaptionDisplayMode::translationOnly,
    FloatingCaptionDisplayMode::sourceOnly,
};

/// The stored form and identity, such as "bilingual".
QString rawValue(FloatingCaptionDisplayMode value);
/// Exact and case-sensitive; none for any other text.
std::optional<FloatingCaptionDisplayMode> floatingCaptionDisplayMode(const QString &rawValue);
/// Label for menus.
QString title(FloatingCaptionDisplayMode value);

} // namespace lumaphone
