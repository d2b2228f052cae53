#include "language/LanguageTable.h"

#include <algorithm>
#include <array>

namespace lumaphone {

namespace {

constexpr std::array table {
    LanguageRow {
        .language = SpokenLanguage::japanese,
        .choice = AppleSystemSpeechLanguage::japanese,
        .rawValue = u"japanese",
        .displayName = u"日文",
        .localeIdentifier = u"ja-JP",
        .fullLocale = u"ja-jpan-jp",
        .isMeantByCodeAlone = true,
        .code = u"ja",
        .nearbyCode = {},
        .translationCode = u"ja",
        .script = Script::kana,
        .networksWrite = WrittenChinese::none,
        .hasSpaces = false,
        .growsByCharacters = true,
        .fontFamily = u"Noto Sans CJK JP",
    },
    LanguageRow {
        .language = SpokenLanguage::english,
        .choice = AppleSystemSpeechLanguage::english,
        .rawValue = u"english",
        .displayName = u"英文",
        .localeIdentifier = u"en-US",
        .fullLocale = u"en-latn-us",
        .isMeantByCodeAlone = true,
        .code = u"en",
        .nearbyCode = {},
        .translationCode = u"en",
        .script = Script::latin,
        .networksWrite = WrittenChinese::none,
        .hasSpaces = true,
        .growsByCharacters = false,
        .fontFamily = u"Noto Sans CJK TC",
    },
    LanguageRow {
        .language = SpokenLanguage::korean,
        .choice = AppleSystemSpeechLanguage::korean,
        .rawValue = u"korean",
        .displayName = u"韓文",
        .localeIdentifier = u"ko-KR",
        .fullLocale = u"ko-kore-kr",
        .isMeantByCodeAlone = true,
        .code = u"ko",
        .nearbyCode = {},
        .translationCode = u"ko",
        .script = Script::hangul,
        .networksWrite = WrittenChinese::none,
        .hasSpaces = true,
        .growsByCharacters = true,
        .fontFamily = u"Noto Sans CJK KR",
    },
    LanguageRow {
        .language = SpokenLanguage::mandarin,
        .choice = AppleSystemSpeechLanguage::mandarin,
        .rawValue = u"mandarin",
        .displayName = u"中文",
        .localeIdentifier = u"zh-Hant-TW",
        .fullLocale = u"zh-hant-tw",
        .isMeantByCodeAlone = false, // it would be Simplified Chinese
        .code = u"zh",
        .nearbyCode = u"yue",
        .translationCode = u"zh-Hant",
        .script = Script::han,
        .networksWrite = WrittenChinese::simplified,
        .hasSpaces = false,
        .growsByCharacters = true,
        .fontFamily = u"Noto Sans CJK TC",
    },
};

/// Rows are found by their number, and both types list their cases in the table's order.
constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (static_cast<std::size_t>(table[i].language) != i
            || static_cast<std::size_t>(table[i].choice) != i + 1) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder() && AppleSystemSpeechLanguage::automatic == AppleSystemSpeechLanguage {});

} // namespace

std::span<const LanguageRow> languageTable()
{
    return table;
}

const LanguageRow &languageRow(SpokenLanguage language)
{
    return table[static_cast<std::size_t>(language)];
}

const LanguageRow *languageRow(AppleSystemSpeechLanguage language)
{
    const auto found = std::find_if(
        table.begin(), table.end(), [language](const LanguageRow &row) { return row.choice == language; });
    return found == table.end() ? nullptr : &*found;
}

} // namespace lumaphone
