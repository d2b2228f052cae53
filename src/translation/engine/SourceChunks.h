#pragma once

#include "translation/engine/ProtectedTerms.h"
#include "translation/engine/Vocabulary.h"

#include <QList>
#include <QString>

#include <vector>

namespace lumaphone::engine {

/// A part of a sentence that fits into the model, or one that is not for the model at all.
struct SourceChunk
{
    std::vector<int> words;
    QList<ProtectedTerm> terms;
    std::vector<TokenRange> termTokens; ///< of the terms, counted within the chunk
    QString verbatim; ///< not empty: to be copied, there are no words
};

/// Cuts a sentence into parts of at most `mostWords` words, where possible behind a comma or between words,
/// and never inside of a protected term. Terms too long for that become parts of their own.
QList<SourceChunk> chunked(const QString &sentence, const Vocabulary &vocabulary, int mostWords);

} // namespace lumaphone::engine
