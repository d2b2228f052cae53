#include "session/revision/CharacterSequence.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumaphone {

namespace {

/// Whether a unit never joins a neighbour that is of this kind too: no mark, joiner, jamo, surrogate or
/// carriage return.
bool standsAlone(QChar unit)
{
    const char16_t c = unit.unicode();
    const auto within = [c](char16_t first, char16_t last) {
        return c >= first && c <= last;
    };
    return (c < 0x300 && c != '\r') // Latin
        || within(0x3001, 0x3029) // CJK punctuation
        || within(0x3041, 0x3096) || within(0x309B, 0x30FF) // kana
        || within(0x4E00, 0x9FFF) // Han
        || within(0xAC00, 0xD7A3) // Hangul syllables
        || within(0xFF01, 0xFF9D); // full-width Latin, half-width katakana
}

} // namespace

CharacterSequence::CharacterSequence(const QString &text)
    : m_text(text.normalized(QString::NormalizationForm_C))
{
    if (std::all_of(m_text.cbegin(), m_text.cend(), standsAlone)) {
        return;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text);
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        m_ends.push_back(end);
    }
}

QStringView CharacterSequence::operator[](qsizetype index) const
{
    const QStringView text = m_text;
    if (m_ends.empty()) {
        return text.sliced(index, 1);
    }
    const qsizetype start = index == 0 ? 0 : m_ends[std::size_t(index) - 1];
    return text.sliced(start, m_ends[std::size_t(index)] - start);
}

} // namespace lumaphone
