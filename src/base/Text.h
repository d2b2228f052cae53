#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace lumaphone::text {

/// Whether the scalar has the Unicode property White_Space (line breaks included; U+200B and U+FEFF are not).
bool isWhiteSpace(char32_t scalar);

/// Without white space and line breaks at both ends.
QString trimmed(const QString &text);

/// The pieces between runs of white space, none of them empty.
QList<QString> splitAtWhiteSpace(const QString &text);

/// Full Unicode lower-casing without regard to context: İ becomes two scalars, ẞ becomes ß, Σ becomes σ.
QString lowercased(const QString &text);

/// Equality under canonical equivalence: composed and decomposed spellings are the same text.
bool canonicallyEqual(const QString &a, const QString &b);

/// A form under which canonically equivalent texts are equal bit by bit.
QString canonicalForm(const QString &text);

/// The text's characters (extended grapheme clusters), each in canonical form, so that == compares
/// characters as people see them.
QList<QString> characters(const QString &text);

/// Folded for a search that ignores case and diacritics: case is folded, and combining marks of Latin,
/// Greek and Cyrillic letters are dropped. Voiced marks of kana and all of Hangul stay.
QString foldedForSearch(const QString &text);

} // namespace lumaphone::text
