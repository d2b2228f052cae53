#include "language/TranslationLanguages.h"

#include "language/LanguageTable.h"

namespace lumaphone {

QString translationTargetIdentifier()
{
    return languageRow(SpokenLanguage::mandarin).translationCode.toString();
}

QString translationSourceIdentifier(AppleSystemSpeechLanguage language)
{
    const LanguageRow *const row = languageRow(language);
    return (row == nullptr ? languageRow(SpokenLanguage::japanese) : *row).translationCode.toString();
}

bool needsTranslation(AppleSystemSpeechLanguage language)
{
    return translationSourceIdentifier(language) != translationTargetIdentifier();
}

} // namespace lumaphone
