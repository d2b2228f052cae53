#include "speech/framework/GrowingText.h"

#include "base/Text.h"
#include "language/Script.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

/// Letters of scripts that put blanks between words. Elsewhere every character is a word.
bool isWithinWord(char32_t scalar)
{
    return (QChar::isLetterOrNumber(scalar) || QChar::isMark(scalar)) && !isUnspacedLetter(scalar);
}

bool isWord(const QString &character)
{
    return QChar::isLetterOrNumber(character.toUcs4().constFirst());
}

bool isWithinWord(const QString &character)
{
    return isWithinWord(character.toUcs4().constFirst());
}

/// "don't" is one word.
bool isApostrophe(const QString &character)
{
    return character == QLatin1String("'") || character == QStringLiteral("’");
}

QString composed(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C);
}

std::size_t agreement(const std::vector<TextUnit> &a, const std::vector<TextUnit> &b)
{
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
        [](const TextUnit &one, const TextUnit &another) { return one.says(another); });
    return static_cast<std::size_t>(end - a.begin());
}

QString joined(const std::vector<TextUnit> &units)
{
    QString text;
    for (const TextUnit &unit : units) {
        text += unit.lead + unit.word;
    }
    return text::trimmed(text);
}

/// What both texts begin with, in the spelling of the second, if neither begins with the other: whole words
/// of it if there are any.
QString commonBeginning(const QString &shown, const QString &incoming)
{
    const QList<QString> a = text::characters(text::lowercased(shown.simplified()));
    const QList<QString> b = text::characters(incoming.simplified());
    qsizetype length = 0;
    while (length < a.size() && length < b.size() && a[length] == text::lowercased(b[length])) {
        ++length;
    }
    if (length == a.size() || length == b.size()) {
        return {};
    }
    qsizetype words = length;
    const bool endsWithinWord = isWithinWord(a[length]) || isWithinWord(b[length]);
    while (endsWithinWord && words > 0 && isWithinWord(b[words - 1])) {
        --words;
    }
    const auto first = [&b](qsizetype count) {
        return composed(text::trimmed(QStringList(b.first(count)).join(QString())));
    };
    return first(words).isEmpty() ? first(length) : first(words);
}

bool beginsOtherwise(const QString &shown, const QString &incoming)
{
    return !shown.isEmpty() && !incoming.isEmpty()
        && text::lowercased(text::characters(shown).constFirst())
        != text::lowercased(text::characters(incoming).constFirst());
}

/// A character of Chinese or Japanese is soon guessed wrongly, and what is shown first stays.
std::size_t fewestToBeginWith(const std::vector<TextUnit> &units)
{
    return !units.empty() && !isWithinWord(units.front().word) ? 2 : 1;
}

/// Fewer words are too few to keep another one before them.
constexpr std::size_t enoughWords = 3;
/// Two texts of the same speech meet within so many words.
constexpr std::size_t longestDetour = 4;

/// A text that begins as `shown` does and goes on as `incoming` does from where they meet.
QString joinedWhereTheyMeet(const std::vector<TextUnit> &shown, const QString &incoming)
{
    const std::vector<TextUnit> units = unitsOf(incoming);
    if (units.size() < enoughWords) {
        return incoming;
    }
    std::size_t left = 1; // of what is shown
    std::size_t skipped = 1; // of what comes
    std::size_t detour = longestDetour;
    for (std::size_t i = 0; i < std::min(shown.size(), longestDetour); ++i) {
        for (std::size_t j = 0; j < units.size() && i + j < detour; ++j) {
            if (shown[i].says(units[j])) {
                left = i;
                skipped = j;
                detour = i + j;
            }
        }
    }
    if (left == 0) {
        // The word at which they meet is the first one shown.
        left = 1;
        ++skipped;
    }
    QString begin;
    for (std::size_t i = 0; i < left; ++i) {
        begin += shown[i].lead + shown[i].word;
    }
    qsizetype rest = 0;
    for (std::size_t j = 0; j < skipped; ++j) {
        rest += units[j].lead.size() + units[j].word.size();
    }
    const QString end = composed(incoming).mid(rest);
    return text::trimmed(begin) + (skipped == 0 ? QStringLiteral(" ") : QString()) + end;
}

} // namespace

std::vector<TextUnit> unitsOf(const QString &text)
{
    std::vector<TextUnit> units;
    TextUnit unit;
    const QList<QString> characters = text::characters(text);
    const auto take = [&units, &unit] {
        unit.key = text::lowercased(unit.word);
        units.push_back(std::exchange(unit, {}));
    };
    for (qsizetype i = 0; i < characters.size(); ++i) {
        const QString &character = characters[i];
        const bool continues = !unit.word.isEmpty()
            && (isWithinWord(character)
                || (isApostrophe(character) && i + 1 < characters.size() && isWithinWord(characters[i + 1])));
        if (!unit.word.isEmpty() && !continues) {
            take();
        }
        if (continues || isWord(character)) {
            unit.word += composed(character);
            if (!isWithinWord(character) && !continues) {
                take();
            }
        } else {
            unit.lead += composed(character);
        }
    }
    if (!unit.word.isEmpty()) {
        take();
    }
    return units;
}

GrowingText::GrowingText(Agreement agreement)
    : m_agreement(agreement)
{
}

QStringList GrowingText::heard(const QString &hypothesis)
{
    Units newest = unitsOf(hypothesis);
    const std::size_t length = agreed(newest);
    const std::size_t kept = agreement(m_shown, newest);
    QStringList texts;
    // Another first word would be another utterance: what is shown stays until the final text.
    const bool mayChange = kept > 0 || m_shown.empty();
    if (mayChange && length > kept) {
        if (kept < m_shown.size()) {
            m_shown.resize(kept);
            texts.append(joined(m_shown));
        }
        m_shown.insert(m_shown.end(), newest.begin() + static_cast<std::ptrdiff_t>(kept),
            newest.begin() + static_cast<std::ptrdiff_t>(length));
        texts.append(joined(m_shown));
    }
    remember(std::move(newest));
    return texts;
}

void GrowingText::listen(const QString &hypothesis)
{
    remember(unitsOf(hypothesis));
}

QStringList GrowingText::concluded(const QString &finalText)
{
    const Units units = m_shown;
    const QString shown = joined(units);
    forget();
    if (finalText.isEmpty()) {
        return shown.isEmpty() ? QStringList() : QStringList(shown);
    }
    const QString last
        = beginsOtherwise(shown, finalText) ? joinedWhereTheyMeet(units, finalText) : finalText;
    const QString beginning = commonBeginning(shown, last);
    return beginning.isEmpty() ? QStringList(last) : QStringList {beginning, last};
}

void GrowingText::remember(Units newest)
{
    m_previous.push_back(std::move(newest));
    const std::size_t enough
        = static_cast<std::size_t>(std::max({m_agreement.onFirstWord, m_agreement.onOtherWords, 1})) - 1;
    if (m_previous.size() > enough) {
        m_previous.erase(m_previous.begin(), m_previous.end() - static_cast<std::ptrdiff_t>(enough));
    }
}

void GrowingText::forget()
{
    m_previous.clear();
    m_shown.clear();
}

/// How many words the newest hypothesis shares with those before it.
std::size_t GrowingText::agreed(const Units &newest) const
{
    const auto sharedWith = [&](int hypotheses) {
        if (m_previous.size() + 1 < static_cast<std::size_t>(hypotheses)) {
            return std::size_t {0};
        }
        std::size_t length = newest.size();
        for (auto it = m_previous.end() - (hypotheses - 1); it != m_previous.end(); ++it) {
            length = std::min(length, agreement(*it, newest));
        }
        return length;
    };
    const std::size_t length = sharedWith(m_agreement.onOtherWords);
    const bool isBeginning = m_shown.empty();
    if (isBeginning && (sharedWith(m_agreement.onFirstWord) == 0 || length < fewestToBeginWith(newest))) {
        return 0;
    }
    return length;
}

} // namespace lumaphone
