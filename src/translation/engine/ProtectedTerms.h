#pragma once

#include <QList>
#include <QString>

#include <span>
#include <vector>

namespace lumaphone::engine {

/// A stretch of a sentence that a translation must show letter for letter: a placeholder such as "TERM_0", an
/// Internet address or a mail address.
struct ProtectedTerm
{
    QString text;
    qsizetype begin; ///< in the sentence, UTF-16 units
};

/// In the order of the sentence.
QList<ProtectedTerm> findProtectedTerms(const QString &sentence);

/// A translation and where each of its words ends.
struct SpelledTranslation
{
    QString text;
    std::vector<qsizetype> ends; ///< UTF-16 units, one per word
};

/// The source tokens that spell a term: [first, last).
struct TokenRange
{
    int first;
    int last;
};

/// Puts terms back that the model has not copied faithfully. A term that is there as often as in the source
/// is left alone. One that is there with other spaces, case or punctuation is corrected in its place. One
/// that is missing is inserted after the word that looked at it most, or takes that word's place if this is a
/// scrap of the term. `alignment` has a row of `sourceTokens` values for each word; `tokens` has the place of
/// each term.
QString restoreTerms(const SpelledTranslation &translation, const QList<ProtectedTerm> &terms,
    std::span<const TokenRange> tokens, std::span<const float> alignment, int sourceTokens);

} // namespace lumaphone::engine
