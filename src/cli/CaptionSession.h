#pragma once

#include "base/Completion.h"
#include "base/MainQueue.h"
#include "cli/CaptionPrinter.h"
#include "cli/CommandLine.h"
#include "session/SystemAudioCaptureController.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <cstdint>
#include <memory>

namespace lumaphone::cli {

/// One run of captions in the terminal: drives the live session and shows every change of it. Main thread.
class CaptionSession final : public QObject
{
public:
    /// Controller and printer outlive the session.
    CaptionSession(SystemAudioCaptureController &controller, CaptionPrinter &printer,
        const std::shared_ptr<MainQueue> &mainQueue);

    /// Captions until the session is ended or fails; then waits for the translations under way. Call once.
    QCoro::Task<ExitStatus> run();
    /// The sound has come to its end: the open line is finished, and every translation waited for.
    void complete();
    /// The user ends the session, also while it still starts: the open line is finished, translations are
    /// waited for a moment, and lines without one are shown without. Called again it waits no longer.
    void stop();

private:
    void showLine(qsizetype index);
    void showStatus();
    void tellTranslationFailure(const QString &description);
    void showUntranslatedLines();

    SystemAudioCaptureController &m_controller;
    CaptionPrinter &m_printer;
    const Completion<ExitStatus> m_ended;
    const Completion<> m_settled;
    QHash<QUuid, std::int64_t> m_untranslatedLines; ///< revisions shown as those whose translation failed
    QSet<QString> m_toldFailures;
    qint64 m_samplesAtLastStatus = 0;
    bool m_isRefused = false; ///< the lines are those of another session, which waits to be saved
    QTimer m_patience; ///< with the translations under way, once the user has ended the session
};

} // namespace lumaphone::cli
