#include "app/live/LineAnnouncements.h"

#include "app/live/CaptionLinesModel.h"
#include "session/SystemAudioCaptureController.h"

#include <algorithm>

namespace lumaphone {

LineAnnouncements::LineAnnouncements(const SystemAudioCaptureController &controller,
    const CaptionLinesModel &lines, std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent)
    , m_controller(controller)
    , m_patience(patience)
{
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &LineAnnouncements::advance);
    connect(&lines, &CaptionLinesModel::lineFinished, this, &LineAnnouncements::lineFinished);
    connect(&lines, &QAbstractItemModel::dataChanged, this, &LineAnnouncements::advance);
    connect(&lines, &QAbstractItemModel::modelReset, this, &LineAnnouncements::advance);
}

void LineAnnouncements::lineFinished(int row)
{
    m_waiting.push_back({m_controller.captionLines().at(row).id, QDeadlineTimer(m_patience)});
    advance();
}

void LineAnnouncements::advance()
{
    m_end.stop();
    while (!m_waiting.empty()) {
        const Waiting first = m_waiting.front();
        const LumaphoneCaptionLine *line = find(first.line);
        const std::optional<QString> text = line ? textOf(*line) : QString();
        if (!text && !first.deadline.hasExpired()) {
            m_end.start(
                std::chrono::ceil<std::chrono::milliseconds>(first.deadline.remainingTimeAsDuration()));
            return;
        }
        if (!text && !isAnyReadyBehindFirst()) {
            return; // it keeps nobody waiting
        }
        m_waiting.pop_front();
        const QString told = text ? *text : line->sourceText;
        if (!told.isEmpty()) {
            emit announced(told);
        }
    }
}

const LumaphoneCaptionLine *LineAnnouncements::find(const QUuid &line) const
{
    const auto &lines = m_controller.captionLines();
    // It is one of the newest.
    const auto found = std::find_if(
        lines.rbegin(), lines.rend(), [&line](const LumaphoneCaptionLine &one) { return one.id == line; });
    return found == lines.rend() ? nullptr : &*found;
}

std::optional<QString> LineAnnouncements::textOf(const LumaphoneCaptionLine &line) const
{
    switch (m_controller.translationOf(line).state) {
    case TranslationState::pending:
        return std::nullopt;
    case TranslationState::arrived:
        return line.translatedText;
    case TranslationState::failed:
    case TranslationState::unwanted:
        return line.sourceText;
    }
    Q_UNREACHABLE();
}

bool LineAnnouncements::isAnyReadyBehindFirst() const
{
    // Nothing behind the first has been told. One walk, however many wait.
    const auto &lines = m_controller.captionLines();
    const QUuid &first = m_waiting.front().line;
    for (auto line = lines.rbegin(); line != lines.rend() && line->id != first; ++line) {
        if (line->isFinal && textOf(*line)) {
            return true;
        }
    }
    return false;
}

} // namespace lumaphone
