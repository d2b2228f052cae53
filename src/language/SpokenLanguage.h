#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// A language that is heard and recognised: what a choice means, unless it is `automatic`. LanguageTable.h
/// says what is known of each.
enum class SpokenLanguage { japanese, english, korean, mandarin };

/// As networks and catalogues name it: "ja", "en", "ko", "zh"; "yue" counts as Mandarin. None for any other.
std::optional<SpokenLanguage> spokenLanguageNamed(const QString &code);
/// Such as "ja-JP"; none for other locales.
std::optional<SpokenLanguage> spokenLanguageOf(const QString &localeIdentifier);

/// The name that networks and catalogues know.
QString languageCode(SpokenLanguage language);
/// The platform locale, such as "ja-JP".
QString localeIdentifier(SpokenLanguage language);
/// For people, such as "日文".
QString displayName(SpokenLanguage language);

} // namespace lumaphone
