#pragma once

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace lumaphone {

/// The spoken language of the sound, as the user chooses it and as recognised texts are tagged.
enum class AppleSystemSpeechLanguage {
    automatic, ///< detection among the others; never the language of a recognised text
    japanese,
    english,
    korean,
    mandarin,
};

/// All cases, in the order of menus.
std::span<const AppleSystemSpeechLanguage> allSpeechLanguages();

/// The stored form and identity, such as "japanese".
QString rawValue(AppleSystemSpeechLanguage language);
/// Exact and case-sensitive; none for any other text.
std::optional<AppleSystemSpeechLanguage> speechLanguageFromRawValue(const QString &rawValue);
/// Label for menus and messages.
QString displayName(AppleSystemSpeechLanguage language);
/// The label of several languages in one message, joined with the ideographic comma.
QString displayNames(const std::vector<AppleSystemSpeechLanguage> &languages);
/// The platform locale, such as "en-US". Code that needs a single locale for `automatic` gets Japanese.
QString localeIdentifier(AppleSystemSpeechLanguage language);
/// The languages to recognise for a choice, in the order in which they are tried.
std::vector<AppleSystemSpeechLanguage> recognitionCandidates(AppleSystemSpeechLanguage language);

} // namespace lumaphone
