#include "language/SpokenLanguage.h"

#include "language/LanguageTable.h"

#include <algorithm>

namespace lumaphone {

namespace {

template<typename Predicate> std::optional<SpokenLanguage> firstLanguage(Predicate isWanted)
{
    const auto rows = languageTable();
    const auto found = std::find_if(rows.begin(), rows.end(), isWanted);
    return found == rows.end() ? std::nullopt : std::optional(found->language);
}

} // namespace

std::optional<SpokenLanguage> spokenLanguageNamed(const QString &code)
{
    return firstLanguage([&code](const LanguageRow &row) {
        return code == row.code || (!row.nearbyCode.isEmpty() && code == row.nearbyCode);
    });
}

std::optional<SpokenLanguage> spokenLanguageOf(const QString &localeIdentifier)
{
    return firstLanguage(
        [&localeIdentifier](const LanguageRow &row) { return localeIdentifier == row.localeIdentifier; });
}

QString languageCode(SpokenLanguage language)
{
    return languageRow(language).code.toString();
}

QString localeIdentifier(SpokenLanguage language)
{
    return languageRow(language).localeIdentifier.toString();
}

QString displayName(SpokenLanguage language)
{
    return languageRow(language).displayName.toString();
}

} // namespace lumaphone
