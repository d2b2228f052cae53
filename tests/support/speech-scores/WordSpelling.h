#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>
#include <QStringList>

namespace lumaphone::test {

/// What is compared when a recognised text stands beside a transcript: the words of a text in one spelling,
/// without case, punctuation and hyphens, with "Mr." as "mister" and "33" as "thirty three". Contractions
/// stay as they are. In Japanese and Mandarin, where blanks mean nothing, each character is a word. Throws
/// std::invalid_argument for automatic, which is no language.
QStringList spelledWords(const QString &text, AppleSystemSpeechLanguage language);

/// How many words have to be put in, left out or exchanged to turn one list into the other.
qsizetype wordErrors(const QStringList &spoken, const QStringList &heard);
/// The same, told for each spoken word. A word too many counts at the one before it, or at the first one.
/// There must be a spoken word.
QList<qsizetype> errorsOfWords(const QStringList &spoken, const QStringList &heard);

} // namespace lumaphone::test
