#include "translation/engine/SentenceSplitter.h"

#include "base/Text.h"
#include "language/Script.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace lumaphone::engine {
namespace {

// Words that carry a full stop and are followed by a capital or a number within a sentence.
constexpr std::array<QLatin1StringView, 34> abbreviations = {QLatin1StringView("mr"),
    QLatin1StringView("mrs"), QLatin1StringView("ms"), QLatin1StringView("dr"), QLatin1StringView("prof"),
    QLatin1StringView("st"), QLatin1StringView("mt"), QLatin1StringView("jr"), QLatin1StringView("sr"),
    QLatin1StringView("no"), QLatin1StringView("nos"), QLatin1StringView("vs"), QLatin1StringView("vol"),
    QLatin1StringView("fig"), QLatin1StringView("figs"), QLatin1StringView("gen"), QLatin1StringView("col"),
    QLatin1StringView("lt"), QLatin1StringView("capt"), QLatin1StringView("sgt"), QLatin1StringView("gov"),
    QLatin1StringView("sen"), QLatin1StringView("rep"), QLatin1StringView("rev"), QLatin1StringView("hon"),
    QLatin1StringView("e.g"), QLatin1StringView("i.e"), QLatin1StringView("cf"), QLatin1StringView("approx"),
    QLatin1StringView("dept"), QLatin1StringView("est"), QLatin1StringView("p"), QLatin1StringView("pp"),
    QLatin1StringView("ch")};

bool isLineBreak(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r') || character == QChar(0x0B)
        || character == QChar(0x0C) || character == QChar(0x85) || character == QChar::LineSeparator
        || character == QChar::ParagraphSeparator;
}

/// Whether `text` ends in a full stop that belongs to its last word.
bool endsInAbbreviation(const QString &text)
{
    const QString trimmed = text::trimmed(text);
    if (!trimmed.endsWith(QLatin1Char('.')))
        return false;
    const auto isInside = [](QChar character) {
        return character.isLetter() || character == QLatin1Char('.');
    };
    qsizetype begin = trimmed.size() - 1;
    while (begin > 0 && isInside(trimmed[begin - 1]))
        --begin;
    const QString word = trimmed.mid(begin, trimmed.size() - 1 - begin).toLower();
    const bool isInitial = word.size() == 1 && trimmed[begin].isUpper() && word != QLatin1String("i");
    return isInitial || std::find(abbreviations.begin(), abbreviations.end(), word) != abbreviations.end();
}

/// "No." is an answer unless a number follows.
bool needsNumber(const QString &text)
{
    const QString lower = text::trimmed(text).toLower();
    return lower == QLatin1String("no.") || lower.endsWith(QLatin1String(" no."));
}

/// Half a character beyond the first plane counts as Han, which most of them are.
bool isWrittenWithoutSpaces(QChar character)
{
    return character.isSurrogate() || isUnspaced(character.unicode());
}

void append(QList<Sentence> &sentences, const QString &line)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, line);
    qsizetype begin = 0;
    while (finder.toNextBoundary() >= 0) {
        const qsizetype end = finder.position();
        const QString piece = line.mid(begin, end - begin);
        const bool isNumberNext = end < line.size() && line[end].isDigit();
        // Without a space only the marks of scripts written without spaces end a sentence: "a.b?c" is an
        // address.
        if (end < line.size() && !piece.back().isSpace() && !isWrittenWithoutSpaces(piece.back()))
            continue;
        if (end < line.size() && endsInAbbreviation(piece) && (isNumberNext || !needsNumber(piece)))
            continue;
        if (const QString text = text::trimmed(piece); !text.isEmpty())
            sentences.append({text, false});
        begin = end;
    }
}

} // namespace

QList<Sentence> splitIntoSentences(const QString &text)
{
    QList<Sentence> sentences;
    qsizetype begin = 0;
    for (qsizetype index = 0; index <= text.size(); ++index) {
        if (index < text.size() && !isLineBreak(text[index]))
            continue;
        append(sentences, text.mid(begin, index - begin));
        if (index < text.size() && !sentences.isEmpty())
            sentences.last().endsLine = true;
        begin = index + 1;
    }
    if (!sentences.isEmpty())
        sentences.last().endsLine = false;
    return sentences;
}

QString joined(const QString &left, const QString &right)
{
    if (left.isEmpty() || right.isEmpty())
        return left + right;
    const bool needsNone = isWrittenWithoutSpaces(left.back()) || isWrittenWithoutSpaces(right.front());
    return needsNone ? left + right : left + QLatin1Char(' ') + right;
}

} // namespace lumaphone::engine
