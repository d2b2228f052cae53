#include "translation/engine/ProtectedTerms.h"

#include "language/Script.h"
#include "translation/engine/SentenceSplitter.h"

#include <QRegularExpression>

#include <algorithm>

namespace lumaphone::engine {
namespace {

/// An edit of the translation: [begin, end) becomes the term.
struct Edit
{
    qsizetype begin;
    qsizetype end;
    QString term;
};

bool isEssential(QChar character)
{
    return character.isLetterOrNumber();
}

/// The term with anything but letters and digits optional and free: "TERM_0" is found in "term 0" and in
/// "TERM _ 0".
QRegularExpression tolerantPattern(const QString &term)
{
    const QString filler = QStringLiteral("[^\\p{L}\\p{N}]{0,3}");
    QString pattern;
    for (const QChar character : term) {
        if (!isEssential(character))
            continue;
        if (!pattern.isEmpty())
            pattern += filler;
        pattern += QRegularExpression::escape(QString(character));
    }
    // Neither a longer word nor a longer number is the term.
    return QRegularExpression(QStringLiteral("(?<![\\p{Latin}\\p{N}])%1(?![\\p{Latin}\\p{N}])").arg(pattern),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
}

bool overlaps(const QList<Edit> &edits, qsizetype begin, qsizetype end)
{
    return std::any_of(
        edits.begin(), edits.end(), [&](const Edit &edit) { return begin < edit.end && edit.begin < end; });
}

/// Claims the term's faithful copies and, failing that, a distorted one. Returns whether one was found.
bool claimCopy(QList<Edit> &edits, const QString &text, const QString &term)
{
    QRegularExpressionMatchIterator matches = tolerantPattern(term).globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (overlaps(edits, match.capturedStart(), match.capturedEnd()))
            continue;
        edits.append({match.capturedStart(), match.capturedEnd(), term});
        return true;
    }
    return false;
}

/// Whether a word of the translation is a piece of the term rather than a word of the language.
bool isScrapOf(const QString &word, const QString &term)
{
    const QString trimmed = word.trimmed();
    const auto isTelling = [](QChar character) {
        return character.isUpper() || character.isDigit() || character == QLatin1Char('_');
    };
    return !trimmed.isEmpty() && term.contains(trimmed, Qt::CaseInsensitive)
        && (word.front() != QLatin1Char(' ') || std::any_of(trimmed.begin(), trimmed.end(), isTelling));
}

float attention(std::span<const float> alignment, std::size_t word, int sourceTokens, const TokenRange &range)
{
    float sum = 0;
    for (int token = range.first; token < range.last; ++token)
        sum += alignment[word * std::size_t(sourceTokens) + std::size_t(token)];
    return sum;
}

/// Where a missing term belongs.
Edit placeFor(const SpelledTranslation &translation, const ProtectedTerm &term, const TokenRange &range,
    std::span<const float> alignment, int sourceTokens)
{
    std::size_t best = 0;
    float most = -1;
    for (std::size_t word = 0; word < translation.ends.size(); ++word) {
        const float looked = attention(alignment, word, sourceTokens, range);
        if (looked > most) {
            most = looked;
            best = word;
        }
    }
    if (translation.ends.empty())
        return {0, 0, term.text};
    const auto beginOf = [&](std::size_t word) {
        return word == 0 ? 0 : translation.ends[word - 1];
    };
    const auto textOf = [&](std::size_t word) {
        return translation.text.mid(beginOf(word), translation.ends[word] - beginOf(word));
    };
    // One letter alone proves nothing.
    if (textOf(best).trimmed().size() < 2 || !isScrapOf(textOf(best), term.text))
        return {translation.ends[best], translation.ends[best], term.text};
    std::size_t first = best;
    std::size_t last = best;
    while (first > 0 && isScrapOf(textOf(first - 1), term.text))
        --first;
    while (last + 1 < translation.ends.size() && isScrapOf(textOf(last + 1), term.text))
        ++last;
    return {beginOf(first), translation.ends[last], term.text};
}

bool wantsSpaceBeside(QChar character)
{
    return character.isLetterOrNumber() && !isUnspacedLetter(character.unicode());
}

} // namespace

QList<ProtectedTerm> findProtectedTerms(const QString &sentence)
{
    // Hangul has spaces between words, but its particles follow an address without one.
    static const QRegularExpression pattern(QStringLiteral(
        "\\b(?:https?|ftp)://[^\\s\\p{Han}\\p{Hiragana}\\p{Katakana}\\p{Hangul}<>\"'「」『』（），。、！？]+"
        "|\\bwww\\.[A-Za-z0-9][A-Za-z0-9./?=&%#_~:+-]+"
        "|[A-Za-z0-9][A-Za-z0-9._%+-]*@[A-Za-z0-9-]+(?:\\.[A-Za-z0-9-]+)+"
        "|[A-Za-z][A-Za-z0-9]*(?:_[A-Za-z0-9]+)+"));
    QList<ProtectedTerm> terms;
    QRegularExpressionMatchIterator matches = pattern.globalMatch(sentence);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        QString text = match.captured();
        while (!text.isEmpty() && QStringLiteral(".,;:!?)").contains(text.back()))
            text.chop(1);
        terms.append({text, match.capturedStart()});
    }
    return terms;
}

QString restoreTerms(const SpelledTranslation &translation, const QList<ProtectedTerm> &terms,
    std::span<const TokenRange> tokens, std::span<const float> alignment, int sourceTokens)
{
    QList<Edit> edits;
    std::vector<bool> isPlaced(std::size_t(terms.size()), false);
    // Copies first, longest term first: a term may be the beginning of another.
    std::vector<std::size_t> order(isPlaced.size());
    for (std::size_t index = 0; index < order.size(); ++index)
        order[index] = index;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return terms[qsizetype(a)].text.size() > terms[qsizetype(b)].text.size();
    });
    for (const std::size_t index : order)
        isPlaced[index] = claimCopy(edits, translation.text, terms[qsizetype(index)].text);
    for (std::size_t index = 0; index < isPlaced.size(); ++index) {
        if (isPlaced[index])
            continue;
        Edit edit = placeFor(translation, terms[qsizetype(index)], tokens[index], alignment, sourceTokens);
        for (const Edit &other : edits) {
            // Beside another term, not inside it.
            if (edit.begin < other.end && other.begin < std::max(edit.end, edit.begin + 1))
                edit.begin = edit.end = other.end;
        }
        edits.append(edit);
    }

    std::stable_sort(
        edits.begin(), edits.end(), [](const Edit &a, const Edit &b) { return a.begin < b.begin; });
    QString text;
    qsizetype done = 0;
    for (const Edit &edit : edits) {
        text += translation.text.mid(done, edit.begin - done);
        const bool isInsertion = edit.begin == edit.end;
        if (isInsertion && !text.isEmpty() && wantsSpaceBeside(text.back()))
            text += QLatin1Char(' ');
        text += edit.term;
        done = edit.end;
        if (isInsertion && done < translation.text.size() && wantsSpaceBeside(translation.text[done]))
            text += QLatin1Char(' ');
    }
    return text + translation.text.mid(done);
}

} // namespace lumaphone::engine
