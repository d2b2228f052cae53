#include "speech/StableText.h"

#include "base/Text.h"

#include <algorithm>

namespace lumaphone {

namespace {

/// Letters of scripts that put blanks between words. Elsewhere every character may end a text.
bool isWithinWord(const QString &character)
{
    const uint scalar = character.toUcs4().constFirst();
    const QChar::Script script = QChar::script(scalar);
    return QChar::isLetterOrNumber(scalar) && script != QChar::Script_Han && script != QChar::Script_Hiragana
        && script != QChar::Script_Katakana;
}

/// What both texts begin with, without a word that only one of them ends there.
QString commonWords(const QString &a, const QString &b)
{
    const QList<QString> first = text::characters(a);
    const QList<QString> second = text::characters(b);
    const auto [endA, endB] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    auto end = endA;
    const bool isWholeInBoth = endA == first.end() && endB == second.end();
    const bool goesOn
        = (endA != first.end() && isWithinWord(*endA)) || (endB != second.end() && isWithinWord(*endB));
    if (!isWholeInBoth && goesOn) {
        while (end != first.begin() && isWithinWord(*(end - 1))) {
            --end;
        }
    }
    return QStringList(first.begin(), end).join(QString()).normalized(QString::NormalizationForm_C);
}

} // namespace

std::optional<QString> StableText::decoded(std::int64_t segment, const QString &text)
{
    if (m_segment != segment) {
        m_segment = segment;
        m_previous.clear();
        m_shown.clear();
    }
    const QString agreed = text::trimmed(commonWords(m_previous, text));
    m_previous = text;
    if (agreed.isEmpty() || m_shown.startsWith(agreed)) {
        return std::nullopt;
    }
    m_shown = agreed;
    return agreed;
}

} // namespace lumaphone
