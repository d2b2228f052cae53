#include "app/live/JoinedText.h"

#include "base/Text.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace lumaphone {

JoinedText::JoinedText(QString LumaphoneCaptionLine::*side, QObject *parent)
    : QObject(parent)
    , m_side(side)
{
}

void JoinedText::follow(const QList<LumaphoneCaptionLine> &lines, qsizetype first)
{
    const bool wasEmpty = isEmpty();
    const auto kept = std::min(size_t(first), m_ends.size());
    m_text.truncate(kept == 0 ? 0 : m_ends[kept - 1]);
    m_ends.resize(kept);
    for (qsizetype line = qsizetype(kept); line < lines.size(); ++line) {
        const QString paragraph = text::trimmed(lines[line].*m_side);
        if (!paragraph.isEmpty()) {
            m_text.append(m_text.isEmpty() ? QString() : QStringLiteral("\n\n"));
            m_text.append(paragraph);
        }
        m_ends.push_back(m_text.size());
    }
    if (isEmpty() != wasEmpty) {
        emit isEmptyChanged();
    }
}

void JoinedText::copy() const
{
    QGuiApplication::clipboard()->setText(m_text);
}

} // namespace lumaphone
