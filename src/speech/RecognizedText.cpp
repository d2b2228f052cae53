#include "speech/RecognizedText.h"

#include "base/Text.h"

#include <QList>
#include <QRegularExpression>

#include <algorithm>

namespace lumaphone {

namespace {

bool isEastAsian(char32_t scalar)
{
    switch (QChar::script(scalar)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
        return true;
    default:
        // Ideographic and full-width punctuation, the prolonged sound mark.
        return (scalar >= 0x3000 && scalar <= 0x303F) || (scalar >= 0x30FB && scalar <= 0x30FC)
            || (scalar >= 0xFF00 && scalar <= 0xFFEF);
    }
}

bool isClosingPunctuation(char32_t scalar)
{
    return QStringLiteral(".,?!:;…").contains(QString::fromUcs4(&scalar, 1));
}

/// Pictures stand for applause, laughter and the like.
bool isPicture(char32_t scalar)
{
    return (scalar >= 0x1F000 && scalar <= 0x1FAFF) || (scalar >= 0x2600 && scalar <= 0x27BF)
        || scalar == 0xFE0F || scalar == 0x200D;
}

QString withoutMarks(QString text)
{
    static const QRegularExpression mark(QStringLiteral("<\\|[^|<>]*\\|>"));
    text.replace(mark, QStringLiteral(" "));
    QString rest;
    for (const uint scalar : text.toUcs4()) {
        const char32_t character = scalar;
        rest += isPicture(character) ? QStringLiteral(" ") : QString::fromUcs4(&character, 1);
    }
    return rest;
}

bool separatesWords(char32_t before, char32_t after, SpokenLanguage language)
{
    if (isClosingPunctuation(after)) {
        return false;
    }
    const bool writesWithoutBlanks
        = language == SpokenLanguage::japanese || language == SpokenLanguage::mandarin;
    return !writesWithoutBlanks || (!isEastAsian(before) && !isEastAsian(after));
}

bool saysSomething(const QString &text)
{
    const auto scalars = text.toUcs4();
    return std::any_of(
        scalars.begin(), scalars.end(), [](uint scalar) { return QChar::isLetterOrNumber(scalar); });
}

} // namespace

bool mayBeSpeech(const QString &event, const QString &language)
{
    return language != QStringLiteral("nospeech") && event != QStringLiteral("nospeech")
        && event != QStringLiteral("BGM");
}

QString cleanRecognizedText(const QString &text, SpokenLanguage language)
{
    QString clean;
    for (const QString &word : text::splitAtWhiteSpace(withoutMarks(text))) {
        if (!clean.isEmpty()
            && separatesWords(clean.toUcs4().constLast(), word.toUcs4().constFirst(), language)) {
            clean += QLatin1Char(' ');
        }
        clean += word;
    }
    return saysSomething(clean) ? clean : QString();
}

} // namespace lumaphone
