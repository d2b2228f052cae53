#include "app/live/TranscriptSelection.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone {

void TranscriptSelection::begin(Extent extent, TranscriptPosition anchor)
{
    m_span = Span {.extent = extent, .anchor = anchor, .head = anchor};
}

void TranscriptSelection::extend(TranscriptPosition head)
{
    if (m_span) {
        m_span->head = head;
    }
}

void TranscriptSelection::rowInserted(int row)
{
    if (m_span) {
        m_span->anchor.row += m_span->anchor.row >= row ? 1 : 0;
        m_span->head.row += m_span->head.row >= row ? 1 : 0;
    }
}

bool TranscriptSelection::isEmpty() const
{
    return !m_span || (m_span->extent != Extent::lines && m_span->anchor == m_span->head);
}

std::optional<int> TranscriptSelection::anchorRow() const
{
    return m_span && m_span->extent == Extent::lines ? std::optional(m_span->anchor.row) : std::nullopt;
}

std::optional<std::pair<int, int>> TranscriptSelection::rows() const
{
    return isEmpty() ? std::nullopt
                     : std::optional<std::pair<int, int>>(std::minmax(m_span->anchor.row, m_span->head.row));
}

TextRange TranscriptSelection::in(int row, Extent column, int length) const
{
    if (isEmpty() || (m_span->extent != Extent::lines && m_span->extent != column)) {
        return {};
    }
    const auto [first, last] = std::minmax(m_span->anchor, m_span->head);
    if (row < first.row || row > last.row) {
        return {};
    }
    const bool isCut = m_span->extent != Extent::lines;
    const int from = isCut && row == first.row ? std::min(first.offset, length) : 0;
    const int to = isCut && row == last.row ? std::min(last.offset, length) : length;
    return {from, std::max(from, to)};
}

QString TranscriptSelection::text(const TextOf &textOf) const
{
    const auto selected = rows();
    if (!selected) {
        return {};
    }
    const auto part = [&](int row, Extent column) {
        const QString whole = textOf(row, column);
        const TextRange range = in(row, column, static_cast<int>(whole.size()));
        return whole.mid(range.from, range.to - range.from);
    };
    QStringList parts;
    for (int row = selected->first; row <= selected->second; ++row) {
        QStringList line;
        for (const Extent column : {Extent::source, Extent::translation}) {
            if (const QString text = part(row, column); !text.isEmpty()) {
                line.append(text);
            }
        }
        if (!line.isEmpty()) {
            parts.append(line.join(QLatin1Char('\n')));
        }
    }
    return parts.join(m_span->extent == Extent::lines ? QStringLiteral("\n\n") : QStringLiteral("\n"));
}

} // namespace lumaphone
