#include "app/floating/ReadingPace.h"

#include <QStringView>

#include <algorithm>
#include <cmath>

namespace lumaphone::readingpace {

namespace {

bool isWide(QChar character)
{
    switch (character.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
    case QChar::Script_Bopomofo:
        return true;
    default:
        return false;
    }
}

} // namespace

std::chrono::milliseconds readingTime(const QString &text)
{
    double characters = 0;
    for (const QChar character : text) {
        // Of the two halves of a rare character one counts, which are nearly all of them Chinese.
        characters += isWide(character) || character.isHighSurrogate() ? 1
            : character.isLetterOrNumber() || character.isSpace()      ? 0.5
                                                                       : 0;
    }
    const std::chrono::milliseconds needed(std::lround(1000 * characters / wideCharactersPerSecond));
    return std::clamp(needed, shortest, longest);
}

} // namespace lumaphone::readingpace
