#include "translation/engine/SourceChunks.h"

#include <QRegularExpression>

#include <algorithm>

namespace lumaphone::engine {
namespace {

using Pieces = std::vector<Vocabulary::Piece>;

struct PlacedTerm
{
    ProtectedTerm term;
    TokenRange tokens;
};

bool startsWithSpace(const QByteArray &text, const Vocabulary::Piece &piece)
{
    return piece.begin < piece.end && text[qsizetype(piece.begin)] == ' ';
}

bool endsClause(const QByteArray &text, const Vocabulary::Piece &piece)
{
    static const QString marks = QStringLiteral(",;:、，；：。！？!?");
    const QString surface
        = QString::fromUtf8(text.mid(qsizetype(piece.begin), qsizetype(piece.end - piece.begin)));
    return !surface.isEmpty() && marks.contains(surface.back());
}

TokenRange tokensOf(const Pieces &pieces, std::size_t begin, std::size_t end)
{
    const auto first
        = std::find_if(pieces.begin(), pieces.end(), [&](const auto &piece) { return piece.end > begin; });
    const auto last
        = std::find_if(first, pieces.end(), [&](const auto &piece) { return piece.begin >= end; });
    return {int(first - pieces.begin()), int(last - pieces.begin())};
}

/// The terms of the sentence, and its numbers where the vocabulary cannot spell them.
std::vector<PlacedTerm> placedTerms(const QString &sentence, const Pieces &pieces, int unknown)
{
    const auto place = [&](const ProtectedTerm &term) {
        const std::size_t begin = std::size_t(sentence.left(term.begin).toUtf8().size());
        return PlacedTerm {term, tokensOf(pieces, begin, begin + std::size_t(term.text.toUtf8().size()))};
    };
    std::vector<PlacedTerm> terms;
    for (const ProtectedTerm &term : findProtectedTerms(sentence))
        terms.push_back(place(term));

    static const QRegularExpression number(
        QStringLiteral("\\d(?:[\\d.,:/-]*\\d)?"), QRegularExpression::UseUnicodePropertiesOption);
    QRegularExpressionMatchIterator matches = number.globalMatch(sentence);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const PlacedTerm placed = place({match.captured(), match.capturedStart()});
        const auto isUnknown = [&](const Vocabulary::Piece &piece) {
            return piece.word == unknown;
        };
        const bool isSpelled = std::none_of(
            pieces.begin() + placed.tokens.first, pieces.begin() + placed.tokens.last, isUnknown);
        const bool isTaken = std::any_of(terms.begin(), terms.end(), [&](const PlacedTerm &other) {
            return placed.tokens.first < other.tokens.last && other.tokens.first < placed.tokens.last;
        });
        if (!isSpelled && !isTaken)
            terms.push_back(placed);
    }
    std::sort(
        terms.begin(), terms.end(), [](const auto &a, const auto &b) { return a.term.begin < b.term.begin; });
    return terms;
}

/// Where to cut a run of pieces that is longer than `most`: the best place in its second half.
int cutFor(
    const QByteArray &text, const Pieces &pieces, const std::vector<PlacedTerm> &terms, int first, int most)
{
    const auto isInsideTerm = [&](int cut) {
        return std::any_of(terms.begin(), terms.end(),
            [cut](const PlacedTerm &term) { return term.tokens.first < cut && cut < term.tokens.last; });
    };
    int best = first + most;
    int quality = 0;
    for (int cut = first + most; cut > first + most / 2; --cut) {
        if (isInsideTerm(cut))
            continue;
        const bool isClause = endsClause(text, pieces[std::size_t(cut) - 1]);
        const bool isWord = startsWithSpace(text, pieces[std::size_t(cut)]);
        const int found = isClause ? 3 : isWord ? 2 : 1;
        if (found > quality) {
            quality = found;
            best = cut;
        }
    }
    return best;
}

SourceChunk chunkOf(const Pieces &pieces, const std::vector<PlacedTerm> &terms, int first, int last)
{
    SourceChunk chunk;
    for (int index = first; index < last; ++index)
        chunk.words.push_back(pieces[std::size_t(index)].word);
    for (const PlacedTerm &placed : terms) {
        if (placed.tokens.first < first || placed.tokens.last > last
            || placed.tokens.first == placed.tokens.last)
            continue;
        chunk.terms.append(placed.term);
        chunk.termTokens.push_back({placed.tokens.first - first, placed.tokens.last - first});
    }
    return chunk;
}

} // namespace

QList<SourceChunk> chunked(const QString &sentence, const Vocabulary &vocabulary, int mostWords)
{
    const QByteArray text = sentence.toUtf8();
    const Pieces pieces = vocabulary.encode({text.constData(), std::size_t(text.size())});
    const std::vector<PlacedTerm> terms = placedTerms(sentence, pieces, vocabulary.unknown());
    QList<SourceChunk> chunks;
    const auto appendRun = [&](int first, int last) {
        while (last - first > mostWords) {
            const int cut = cutFor(text, pieces, terms, first, mostWords);
            chunks.append(chunkOf(pieces, terms, first, cut));
            first = cut;
        }
        if (first < last)
            chunks.append(chunkOf(pieces, terms, first, last));
    };
    int first = 0;
    for (const PlacedTerm &placed : terms) {
        if (placed.tokens.last - placed.tokens.first <= mostWords / 2)
            continue;
        appendRun(first, placed.tokens.first);
        chunks.append(SourceChunk {{}, {}, {}, placed.term.text});
        first = placed.tokens.last;
    }
    appendRun(first, int(pieces.size()));
    return chunks;
}

} // namespace lumaphone::engine
