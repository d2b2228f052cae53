#include "app/live/JoinedText.h"

#include "base/Text.h"

#include <algorithm>

namespace lumaphone {

JoinedText::JoinedText(QString LumaphoneCaptionLine::*side)
    : m_side(side)
{
}

bool JoinedText::follow(const QList<LumaphoneCaptionLine> &lines, qsizetype first)
{
    const auto kept = std::min(size_t(first), m_ends.size());
    const qsizetype end = kept == 0 ? 0 : m_ends[kept - 1];
    const QString former = m_text.mid(end);
    m_text.truncate(end);
    m_ends.resize(kept);
    for (qsizetype line = qsizetype(kept); line < lines.size(); ++line) {
        const QString paragraph = text::trimmed(lines[line].*m_side);
        if (!paragraph.isEmpty()) {
            m_text.append(m_text.isEmpty() ? QString() : QStringLiteral("\n\n"));
            m_text.append(paragraph);
        }
        m_ends.push_back(m_text.size());
    }
    return QStringView(m_text).mid(end) != former;
}

} // namespace lumaphone
