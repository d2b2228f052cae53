#include "speech/framework/RecognizedText.h"

#include "base/Text.h"
#include "language/LanguageTable.h"
#include "speech/framework/GrowingText.h"

#include <QList>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace lumaphone {

namespace {

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
    return languageRow(language).hasSpaces || (!isUnspaced(before) && !isUnspaced(after));
}

bool saysSomething(const QString &text)
{
    const auto scalars = text.toUcs4();
    return std::any_of(
        scalars.begin(), scalars.end(), [](uint scalar) { return QChar::isLetterOrNumber(scalar); });
}

constexpr std::size_t longestRepetition = 12; // words
constexpr std::size_t incredibleWords = 5;
constexpr std::size_t incrediblePhrases = 3;

/// How often the last `length` words stand at the end, one after another.
std::size_t repetitionsAtEnd(const std::vector<TextUnit> &units, std::size_t length)
{
    std::size_t same = 0; // words that are the same as those one repetition later
    while (same + length < units.size()
        && units[units.size() - 1 - same].says(units[units.size() - 1 - same - length])) {
        ++same;
    }
    return units.size() < length ? 0 : same / length + 1;
}

// Quick speakers say six words or nine syllables a second for a while; detectors miss the edges of speech.
constexpr std::chrono::duration<double> shortestWord {1.0 / 7};
constexpr std::chrono::duration<double> shortestCharacter {1.0 / 11};
constexpr std::chrono::duration<double> slack {0.5};

// Speech without pauses is never slower, the pause at its end included.
constexpr double slowestWordsPerSecond = 0.7;

/// Words of English that begin with a capital at the beginning of a sentence only.
bool isNeverAName(const QString &word)
{
    static const QSet<QString> words = [] {
        const QString list = QStringLiteral("a about after all also although an and any are as at be because "
                                            "been before being both but by can "
                                            "could did do does down during each either for from had has have "
                                            "having he her here him his how if "
                                            "in into is it it's its just like many me more most much my "
                                            "neither no nor not now of off on once "
                                            "one only onto or other our out over own same she should since "
                                            "so some still such than that that's "
                                            "the their them then there these they this those though through "
                                            "to too under unless until up upon "
                                            "us very was we were what when where which while who whom whose "
                                            "why with within without would yet "
                                            "you your");
        const QStringList all = list.split(QLatin1Char(' '));
        return QSet<QString>(all.begin(), all.end());
    }();
    return words.contains(word);
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

QString withoutRepeatedTail(const QString &text)
{
    const std::vector<TextUnit> units = unitsOf(text);
    for (std::size_t length = 1; length <= longestRepetition; ++length) {
        const std::size_t times = repetitionsAtEnd(units, length);
        if (times >= (length == 1 ? incredibleWords : incrediblePhrases)) {
            QString kept;
            for (std::size_t i = 0; i < units.size() - (times - 1) * length; ++i) {
                kept += units[i].lead + units[i].word;
            }
            return text::trimmed(kept);
        }
    }
    return text;
}

bool canBeSaid(const QString &text, std::chrono::duration<double> speech)
{
    double seconds = -slack.count();
    for (const TextUnit &unit : unitsOf(text)) {
        const bool isCharacter = isUnspaced(unit.word.toUcs4().constFirst());
        seconds += (isCharacter ? shortestCharacter : shortestWord).count();
    }
    return seconds <= speech.count();
}

bool fills(const QString &text, std::chrono::duration<double> speech)
{
    return static_cast<double>(unitsOf(text).size()) >= speech.count() * slowestWordsPerSecond;
}

QString writtenAsPart(const QString &text, SentenceCut cut)
{
    QString part = text;
    const bool hasFullStop = part.endsWith(QLatin1Char('.')) || part.endsWith(QChar(u'。'));
    if (cut.isBehind && hasFullStop && !part.endsWith(QLatin1String(".."))) {
        part.chop(1);
    }
    if (cut.isBefore) {
        const std::vector<TextUnit> units = unitsOf(part);
        if (!units.empty() && units.front().word != units.front().key && isNeverAName(units.front().key)) {
            part.replace(units.front().lead.size(), units.front().word.size(), units.front().key);
        }
    }
    return part;
}

} // namespace lumaphone
