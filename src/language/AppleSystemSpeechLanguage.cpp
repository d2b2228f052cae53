#include "language/AppleSystemSpeechLanguage.h"

#include "language/LanguageTable.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone {

std::span<const AppleSystemSpeechLanguage> allSpeechLanguages()
{
    static const auto all = [] {
        std::vector<AppleSystemSpeechLanguage> languages {AppleSystemSpeechLanguage::automatic};
        for (const LanguageRow &row : languageTable()) {
            languages.push_back(row.choice);
        }
        return languages;
    }();
    return all;
}

QString rawValue(AppleSystemSpeechLanguage language)
{
    const LanguageRow *const row = languageRow(language);
    return row == nullptr ? QStringLiteral("automatic") : row->rawValue.toString();
}

std::optional<AppleSystemSpeechLanguage> speechLanguageFromRawValue(const QString &raw)
{
    const auto all = allSpeechLanguages();
    const auto found = std::find_if(all.begin(), all.end(),
        [&raw](AppleSystemSpeechLanguage language) { return rawValue(language) == raw; });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

QString displayName(AppleSystemSpeechLanguage language)
{
    const LanguageRow *const row = languageRow(language);
    return row == nullptr ? QStringLiteral("自動辨識") : row->displayName.toString();
}

QString displayNames(const std::vector<AppleSystemSpeechLanguage> &languages)
{
    QStringList names;
    for (const AppleSystemSpeechLanguage language : languages) {
        names.append(displayName(language));
    }
    return names.join(QStringLiteral("、"));
}

QString localeIdentifier(AppleSystemSpeechLanguage language)
{
    const LanguageRow *const row = languageRow(language);
    return row == nullptr ? localeIdentifier(SpokenLanguage::japanese) : row->localeIdentifier.toString();
}

std::vector<AppleSystemSpeechLanguage> recognitionCandidates(AppleSystemSpeechLanguage language)
{
    if (language != AppleSystemSpeechLanguage::automatic) {
        return {language};
    }
    const auto others = allSpeechLanguages().subspan(1);
    return {others.begin(), others.end()};
}

} // namespace lumaphone
