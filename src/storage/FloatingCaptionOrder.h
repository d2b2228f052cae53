#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// Which of the two texts of the floating captions stands above the other.
enum class FloatingCaptionOrder {
    sourceFirst,
    translationFirst,
};

/// All cases, in the order of menus.
inline constexpr std::array allFloatingCaptionOrders {
    FloatingCaptionOrder::sourceFirst,
    FloatingCaptionOrder::translationFirst,
};

/// The stored form and identity, such as "sourceFirst".
QString rawValue(FloatingCaptionOrder value);
/// Exact and case-sensitive; none for any other text.
std::optional<FloatingCaptionOrder> floatingCaptionOrder(const QString &rawValue);
/// Label for menus.
QString title(FloatingCaptionOrder value);

} // namespace lumaphone
