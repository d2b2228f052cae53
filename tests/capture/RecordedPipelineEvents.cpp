#include "capture/RecordedPipelineEvents.h"

namespace lumaphone::test {

namespace {

QString lineOf(const pipeline_event::AudioSample &event)
{
    return QStringLiteral("audio ") + event.summary.detail;
}

QString lineOf(const pipeline_event::Speech &event)
{
    return rawValue(event.language)
        + (event.isFinal ? QStringLiteral(" final ") : QStringLiteral(" volatile ")) + event.text;
}

QString lineOf(const pipeline_event::Pace &event)
{
    return event.isBehind ? QStringLiteral("behind") : QStringLiteral("caught up");
}

QString lineOf(const pipeline_event::Awaited &event)
{
    return event.output ? QStringLiteral("awaits ") + *event.output : QStringLiteral("flows again");
}

QString lineOf(const pipeline_event::Failed &event)
{
    return QStringLiteral("failed ") + event.message;
}

} // namespace

SystemAudioPipelineEventHandler RecordedPipelineEvents::handler() const
{
    return [record = m_record](const SystemAudioPipelineEvent &event) {
        const QString line = std::visit([](const auto &concrete) { return lineOf(concrete); }, event);
        const std::lock_guard lock(record->mutex);
        record->lines.append(line);
    };
}

QStringList RecordedPipelineEvents::lines() const
{
    const std::lock_guard lock(m_record->mutex);
    return m_record->lines;
}

int RecordedPipelineEvents::count() const
{
    const std::lock_guard lock(m_record->mutex);
    return static_cast<int>(m_record->lines.size());
}

} // namespace lumaphone::test
