#pragma once

#include "session/revision/CharacterSequence.h"

#include <QString>

/// The built-in rule that tells a corrected text from a new utterance: pure functions, shared by the program
/// and its helper.
namespace lumaphone {

/// Whether `incoming` is a revision of `current`: the same utterance, recognised again.
bool fallbackIsRevisionOfCurrentPartial(const QString &current, const QString &incoming);

/// The text without the differences that do not matter: runs of white space become one blank, letters
/// lower-case, katakana hiragana.
QString normalizedForComparison(const QString &text);

/// For short phrases whose ending was recognised anew: few edits after a common beginning.
bool isLikelyShortRevision(const CharacterSequence &current, const CharacterSequence &incoming);

/// For long sentences whose tail changed: the common beginning covers at least 58 % of the longer text.
bool hasStrongCommonPrefix(const CharacterSequence &current, const CharacterSequence &incoming);

/// Number of equal characters at the beginning of both.
qsizetype commonPrefixLength(const CharacterSequence &x, const CharacterSequence &y);

/// Levenshtein distance in characters: insertion, deletion and substitution cost 1 each.
qsizetype editDistance(const CharacterSequence &x, const CharacterSequence &y);

} // namespace lumaphone
