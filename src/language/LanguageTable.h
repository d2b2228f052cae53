#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "language/Script.h"
#include "language/SpokenLanguage.h"
#include "language/WrittenChinese.h"

#include <QStringView>

#include <span>

namespace lumaphone {

/// What the program knows of a language that it hears. A further language is a row of the table in
/// LanguageTable.cpp, which takes an enumerator of either type; the compiler then asks for what cannot be
/// said in a row.
struct LanguageRow
{
    SpokenLanguage language;
    AppleSystemSpeechLanguage choice; ///< by which the user chooses it and its texts are tagged
    QStringView rawValue; ///< the stored form of the choice
    QStringView displayName; ///< for people
    QStringView localeIdentifier; ///< of the one supported locale
    QStringView fullLocale; ///< the same with its script and region, in small letters
    bool isMeantByCodeAlone; ///< whether the bare code means that script and region
    QStringView code; ///< as networks and the models' catalogue name it
    QStringView nearbyCode; ///< by which networks name speech that is taken for this language; mostly none
    QStringView translationCode; ///< as translation services name it
    Script script; ///< by which a text that no network has named is known; the first row with it counts
    WrittenChinese networksWrite;
    bool hasSpaces; ///< between words
    bool growsByCharacters; ///< recognised text grows by a few that need not continue the former ones
    QStringView fontFamily; ///< whose glyphs its readers expect
};

/// All languages, in the order of menus and of recognition.
std::span<const LanguageRow> languageTable();

const LanguageRow &languageRow(SpokenLanguage language);
/// None for `automatic`, which is no language.
const LanguageRow *languageRow(AppleSystemSpeechLanguage language);

} // namespace lumaphone
