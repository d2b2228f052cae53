#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// How recognised texts are translated.
enum class LumaphoneProcessingMode {
    appleMode, ///< on this computer, by the platform
    customAPI, ///< by a chat-completions endpoint
};

/// All cases, in the order of menus.
inline constexpr std::array allLumaphoneProcessingModes {
    LumaphoneProcessingMode::appleMode,
    LumaphoneProcessingMode::customAPI,
};

/// The stored form and identity, such as "appleMode".
QString rawValue(LumaphoneProcessingMode value);
/// Exact and case-sensitive; none for any other text.
std::optional<LumaphoneProcessingMode> lumaphoneProcessingMode(const QString &rawValue);
/// Label for menus.
QString title(LumaphoneProcessingMode value);

} // namespace lumaphone
