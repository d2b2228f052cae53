#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <QUuid>

#include <chrono>
#include <deque>
#include <optional>

namespace lumaphone {

class CaptionLinesModel;
class SystemAudioCaptureController;

/// Tells someone who listens instead of reading what was said: each finished line once, in the order of the
/// lines, by its translation when that has come. A line without one is told by its source: when the
/// translation has failed or is not wanted, or when it has been waited for long enough and others are ready
/// behind it.
class LineAnnouncements final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(8);

    /// Controller and model must outlive it. `patience`: how long a line may keep others waiting, from its
    /// end.
    LineAnnouncements(const SystemAudioCaptureController &controller, const CaptionLinesModel &lines,
        std::chrono::milliseconds patience, QObject *parent = nullptr);

signals:
    void announced(const QString &text);

private:
    struct Waiting
    {
        QUuid line;
        QDeadlineTimer deadline;
    };

    void lineFinished(int row);
    void advance();
    const LumaphoneCaptionLine *find(const QUuid &line) const;
    /// What is told of a line; none while its translation is on its way.
    std::optional<QString> textOf(const LumaphoneCaptionLine &line) const;
    bool isAnyReadyBehindFirst() const;

    const SystemAudioCaptureController &m_controller;
    const std::chrono::milliseconds m_patience;
    std::deque<Waiting> m_waiting;
    QTimer m_end; ///< of the patience with the first line
};

} // namespace lumaphone
