#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace lumaphone::text {

/// What makes two texts the same in a search.
enum class Comparison {
    exact, ///< canonical equivalence
    ignoringCaseAndDiacritics, ///< equality of the texts foldedForSearch()
};

/// A text made ready to be searched many times. What is found consists of whole characters (extended
/// grapheme clusters), so that "e" does not occur in the decomposed "é" unless diacritics are ignored.
class TextSearch
{
public:
    TextSearch(const QString &text, Comparison comparison);

    /// An empty pattern never occurs.
    bool contains(const QString &pattern) const;
    /// The text with every occurrence replaced, from left to right; what was put in is not searched again.
    QString replacing(const QString &pattern, const QString &replacement) const;

private:
    struct Range
    {
        qsizetype start;
        qsizetype end;
    };

    /// The first occurrence of a pattern's key at or after an offset into m_key, in offsets into m_key.
    std::optional<Range> find(const QString &patternKey, qsizetype from) const;
    bool isCharacterBoundary(qsizetype keyOffset) const;
    qsizetype textOffset(qsizetype keyOffset) const;

    QString m_text;
    Comparison m_comparison;
    QString m_key; ///< the text in the form that is compared
    std::vector<qsizetype> m_textOffsets; ///< of the characters, by offset into m_key; empty: all the same
};

} // namespace lumaphone::text
