#include "support/speech-scores/CaptionTrace.h"

#include "base/Json.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone::test {

void CaptionTrace::add(const QByteArray &line, TraceTime at)
{
    const json::Value event = json::parse(line);
    const QString kind = json::text(event, "event");
    if (kind == QStringLiteral("status")) {
        m_statuses.push_back({at, json::text(event, "status")});
        if (json::boolean(event, "isFailure") && !m_failure) {
            m_failure = m_statuses.back().text;
        }
        return;
    }
    if (kind != QStringLiteral("line")) {
        throw json::DecodingError(QStringLiteral("unknown event \"%1\"").arg(kind));
    }
    const QString id = json::text(event, "id");
    auto known = std::find_if(
        m_lines.begin(), m_lines.end(), [&id](const CaptionHistory &each) { return each.id == id; });
    if (known == m_lines.end()) {
        known = m_lines.insert(m_lines.end(), {id, {}});
    }
    known->changes.push_back({at, json::text(event, "sourceText"), json::boolean(event, "isFinal")});
}

std::optional<TraceTime> CaptionTrace::statusTime(const QString &status) const
{
    const auto found = std::find_if(
        m_statuses.begin(), m_statuses.end(), [&status](const Status &each) { return each.text == status; });
    return found == m_statuses.end() ? std::nullopt : std::optional(found->at);
}

QString CaptionTrace::finalText(TraceTime from, TraceTime to) const
{
    QStringList texts;
    for (const CaptionHistory &line : m_lines) {
        if (line.isFinished() && line.appeared() >= from && line.appeared() < to) {
            texts.append(line.text());
        }
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace lumaphone::test
