#pragma once

#include "language/SpokenLanguage.h"

#include <chrono>

namespace lumaphone {

/// Whether a network's event leaves room for speech. Music and silence do not.
bool mayBeSpeech(const QString &event, const QString &language);

/// A decoded text as it is shown: without a network's marks ("<|BGM|>") and pictures of events, without stray
/// blanks. Empty if nothing but punctuation is left. Mandarin keeps the script in which it came.
QString cleanRecognizedText(const QString &text, SpokenLanguage language);

/// Without the repetitions at its end that a network falls into when it has lost its way: of a word that
/// stands there five times or more, or of several words that stand there three times or more, one is left.
QString withoutRepeatedTail(const QString &text);

/// Whether a person can have said so many words (where no blanks divide them, characters) in so much speech.
bool canBeSaid(const QString &text, std::chrono::duration<double> speech);

/// Whether so much speech can have been so few words: a recogniser that takes noise for speech finds a word
/// here and there.
bool fills(const QString &text, std::chrono::duration<double> speech);

/// How the end of one segment and the beginning of the next are written when a sentence was cut in two.
struct SentenceCut
{
    bool isBefore = false; ///< the sentence began in the segment before
    bool isBehind = false; ///< it goes on in the next one
};
/// Networks write every segment as a whole sentence. Without the full stop where the sentence goes on, and
/// without the capital of a word that is no name where it began before.
QString writtenAsPart(const QString &text, SentenceCut cut);

} // namespace lumaphone
