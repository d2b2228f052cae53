#include "language/EffectiveTranslationLanguage.h"

#include <QList>

namespace lumaphone {

namespace {

constexpr qsizetype fewestLetters = 4;
constexpr qsizetype latinPercent = 72;

bool isLatinLetter(char32_t scalar)
{
    return (scalar >= U'A' && scalar <= U'Z') || (scalar >= U'a' && scalar <= U'z');
}

} // namespace

AppleSystemSpeechLanguage effectiveTranslationLanguage(
    const QString &text, AppleSystemSpeechLanguage recognized)
{
    if (recognized != AppleSystemSpeechLanguage::mandarin) {
        return recognized;
    }
    qsizetype letters = 0;
    qsizetype latin = 0;
    for (const char32_t scalar : text.toUcs4()) {
        letters += QChar::isLetter(scalar) || QChar::isMark(scalar) ? 1 : 0;
        latin += isLatinLetter(scalar) ? 1 : 0;
    }
    if (letters < fewestLetters || latin * 100 < letters * latinPercent) {
        return AppleSystemSpeechLanguage::mandarin;
    }
    return AppleSystemSpeechLanguage::english;
}

} // namespace lumaphone
