#include "session/CaptionLineList.h"

#include "base/Text.h"

namespace lumaphone {

std::optional<qsizetype> CaptionLineList::firstIndexOf(const QUuid &id) const
{
    const auto found = m_firstIndexes.constFind(id);
    return found == m_firstIndexes.cend() ? std::nullopt : std::optional(*found);
}

std::optional<qsizetype> CaptionLineList::newestIndexOf(const QString &sourceText) const
{
    for (qsizetype index = m_lines.size() - 1; index >= 0; --index) {
        if (text::canonicallyEqual(m_lines[index].sourceText, sourceText)) {
            return index;
        }
    }
    return std::nullopt;
}

void CaptionLineList::append(LumaphoneCaptionLine line)
{
    const qsizetype index = m_lines.size();
    if (!m_firstIndexes.contains(line.id)) {
        m_firstIndexes.insert(line.id, index);
    }
    m_lines.append(std::move(line));
    if (m_listener) {
        m_listener->captionLineInserted(index);
    }
}

void CaptionLineList::replace(qsizetype index, LumaphoneCaptionLine line)
{
    Q_ASSERT(m_lines.at(index).id == line.id);
    m_lines[index] = std::move(line);
    if (m_listener) {
        m_listener->captionLineChanged(index);
    }
}

void CaptionLineList::reset(QList<LumaphoneCaptionLine> lines)
{
    m_lines = std::move(lines);
    m_firstIndexes.clear();
    for (qsizetype index = m_lines.size() - 1; index >= 0; --index) {
        m_firstIndexes.insert(m_lines[index].id, index);
    }
    if (m_listener) {
        m_listener->captionLinesReset();
    }
}

} // namespace lumaphone
