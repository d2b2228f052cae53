#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// The languages that the networks tell apart.
enum class SpokenLanguage { japanese, english, korean, mandarin };

/// As a network names it: "ja", "en", "ko", "zh"; "yue" counts as Mandarin. None for any other.
std::optional<SpokenLanguage> spokenLanguageNamed(const QString &name);
/// The name that a network understands.
QString networkName(SpokenLanguage language);

/// Such as "ja-JP"; none for other locales.
std::optional<SpokenLanguage> spokenLanguageOf(const QString &localeIdentifier);
QString localeIdentifier(SpokenLanguage language);

} // namespace lumaphone
