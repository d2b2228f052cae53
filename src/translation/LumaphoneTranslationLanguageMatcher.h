#pragma once

#include <QString>

namespace lumaphone::LumaphoneTranslationLanguageMatcher {

/// A form in which identifiers of the same language are equal: lower-case, with hyphens. All spellings of
/// Taiwan Traditional Chinese, and "zh" alone, become "zh-hant"; other Chinese variants stay distinct.
QString normalizedLanguageIdentifier(const QString &identifier);

} // namespace lumaphone::LumaphoneTranslationLanguageMatcher
