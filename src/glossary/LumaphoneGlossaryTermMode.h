#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lumaphone {

/// How the rendering of a glossary term is fixed.
enum class LumaphoneGlossaryTermMode {
    preserve, ///< keep the source wording in the translation
    translate, ///< always render the source as the target
};

/// All cases, in the order of menus.
inline constexpr std::array allLumaphoneGlossaryTermModes {
    LumaphoneGlossaryTermMode::preserve,
    LumaphoneGlossaryTermMode::translate,
};

/// The stored form and identity: "preserve" or "translate".
QString rawValue(LumaphoneGlossaryTermMode mode);
/// Exact and case-sensitive; none for any other text.
std::optional<LumaphoneGlossaryTermMode> lumaphoneGlossaryTermMode(const QString &rawValue);

} // namespace lumaphone
