#include "app/controls/LanguageFonts.h"

#include "language/LanguageTable.h"

namespace lumaphone {

QString LanguageFonts::familyOf(const QString &language)
{
    const auto known = speechLanguageFromRawValue(language);
    const LanguageRow *const row = known ? languageRow(*known) : nullptr;
    return (row == nullptr ? languageRow(SpokenLanguage::mandarin) : *row).fontFamily.toString();
}

} // namespace lumaphone
