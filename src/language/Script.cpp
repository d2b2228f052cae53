#include "language/Script.h"

#include <QList>

#include <optional>

namespace lumaphone {

namespace {

std::optional<Script> scriptOf(char32_t character)
{
    switch (QChar::script(character)) {
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return Script::kana;
    case QChar::Script_Hangul:
        return Script::hangul;
    case QChar::Script_Han:
        return Script::han;
    case QChar::Script_Latin:
        return Script::latin;
    default:
        return std::nullopt;
    }
}

} // namespace

Scripts scriptsIn(const QString &text)
{
    Scripts scripts;
    for (const uint character : text.toUcs4()) {
        if (const auto script = scriptOf(character)) {
            scripts.add(*script);
        }
    }
    return scripts;
}

bool isUnspacedLetter(char32_t character)
{
    switch (QChar::script(character)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
        return true;
    default:
        return false;
    }
}

bool isUnspaced(char32_t character)
{
    const auto within = [character](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    return isUnspacedLetter(character) || within(0x3000, 0x303F) // ideographic marks
        || within(0x30FB, 0x30FC) // middle dot and prolonged sound mark
        || within(0xFF00, 0xFFEF); // full-width forms
}

} // namespace lumaphone
