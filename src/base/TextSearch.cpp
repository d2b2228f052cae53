#include "base/TextSearch.h"

#include "base/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumaphone::text {

namespace {

constexpr qsizetype insideCharacter = -1;

/// Made of characters that are single units and stay single units in every form. (A carriage return and a
/// line feed are one character.)
bool isPlain(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
        [](QChar unit) { return unit.unicode() < 0x80 && unit != QLatin1Char('\r'); });
}

/// Decomposed, so that the key of a text is that of its characters, one after the other.
QString keyOf(const QString &text, Comparison comparison)
{
    switch (comparison) {
    case Comparison::exact:
        return canonicalForm(text);
    case Comparison::ignoringCaseAndDiacritics:
        return canonicalForm(foldedForSearch(text));
    }
    Q_UNREACHABLE();
}

} // namespace

TextSearch::TextSearch(const QString &text, Comparison comparison)
    : m_text(text)
    , m_comparison(comparison)
{
    if (isPlain(text)) {
        m_key = keyOf(text, comparison);
        return;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    m_key.reserve(text.size());
    m_textOffsets.reserve(static_cast<std::size_t>(text.size()) + 1);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        m_key.append(keyOf(text.mid(start, end - start), comparison));
        m_textOffsets.push_back(start);
        m_textOffsets.resize(static_cast<std::size_t>(m_key.size()), insideCharacter);
        start = end;
    }
    m_textOffsets.push_back(start);
}

bool TextSearch::contains(const QString &pattern) const
{
    return find(keyOf(pattern, m_comparison), 0).has_value();
}

QString TextSearch::replacing(const QString &pattern, const QString &replacement) const
{
    const QString key = keyOf(pattern, m_comparison);
    QString result;
    qsizetype copied = 0;
    for (auto match = find(key, 0); match; match = find(key, match->end)) {
        const qsizetype start = textOffset(match->start);
        result.append(QStringView(m_text).mid(copied, start - copied)).append(replacement);
        copied = textOffset(match->end);
    }
    return copied == 0 ? m_text : result.append(QStringView(m_text).mid(copied));
}

std::optional<TextSearch::Range> TextSearch::find(const QString &patternKey, qsizetype from) const
{
    if (patternKey.isEmpty()) {
        return std::nullopt;
    }
    for (;;) {
        const qsizetype start = m_key.indexOf(patternKey, from);
        if (start < 0) {
            return std::nullopt;
        }
        const qsizetype end = start + patternKey.size();
        if (isCharacterBoundary(start) && isCharacterBoundary(end)) {
            return Range {start, end};
        }
        from = start + 1;
        while (!isCharacterBoundary(from)) {
            ++from;
        }
    }
}

bool TextSearch::isCharacterBoundary(qsizetype keyOffset) const
{
    return textOffset(keyOffset) != insideCharacter;
}

qsizetype TextSearch::textOffset(qsizetype keyOffset) const
{
    return m_textOffsets.empty() ? keyOffset : m_textOffsets[static_cast<std::size_t>(keyOffset)];
}

} // namespace lumaphone::text
