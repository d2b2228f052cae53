#pragma once

#include <QList>
#include <QString>

namespace lumaphone::engine {

/// A sentence, and whether a line break follows it.
struct Sentence
{
    QString text; ///< without white space at its ends, never empty
    bool endsLine;

    bool operator==(const Sentence &) const = default;
};

/// The sentences of a text in Japanese, Korean, Chinese or English. Abbreviations ("Mr.", "e.g."), initials,
/// decimals and addresses end no sentence; a line break always does.
QList<Sentence> splitIntoSentences(const QString &text);

/// Two translated pieces side by side: scripts written without spaces get none between them.
QString joined(const QString &left, const QString &right);

} // namespace lumaphone::engine
