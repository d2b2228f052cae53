#pragma once

#include <QString>

#include <optional>

namespace lumaphone {

/// The identifier of the supported locale (ja-JP, en-US, ko-KR, zh-Hant-TW) that names the same language,
/// script and region, in whatever form it is written: "en", "en_US.UTF-8", "zh-TW". None for any other.
std::optional<QString> supportedSpeechLocale(const QString &localeIdentifier);

/// What the user calls the language of a locale, such as "日文"; the identifier itself if it is not
/// supported.
QString speechLanguageName(const QString &localeIdentifier);

} // namespace lumaphone
