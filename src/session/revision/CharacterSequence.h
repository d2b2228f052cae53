#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace lumaphone {

/// A text as a row of characters (extended grapheme clusters) that are equal when they are canonically
/// equivalent. Texts whose UTF-16 units are one character each, such as English, Chinese or composed kana and
/// Hangul, cost no more than the text itself.
class CharacterSequence
{
public:
    explicit CharacterSequence(const QString &text);

    qsizetype size() const { return m_ends.empty() ? m_text.size() : qsizetype(m_ends.size()); }
    bool isEmpty() const { return m_text.isEmpty(); }
    /// The character at `index`, in composed form: == compares characters.
    QStringView operator[](qsizetype index) const;

private:
    QString m_text; ///< composed, so that equivalent characters have equal units
    std::vector<qsizetype> m_ends; ///< where each character ends; empty when every unit is a character
};

} // namespace lumaphone
