#pragma once

#include "base/Completion.h"
#include "base/MainQueue.h"
#include "cli/CaptionPrinter.h"
#include "cli/CommandLine.h"
#include "session/SystemAudioCaptureController.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <memory>

namespace lumaphone::cli {

/// One run of captions in the terminal: drives the live session and shows every change of it. Main thread.
class CaptionSession final : public QObject
{
public:
    /// Controller and printer outlive the session. `translates` says whether lines will get translations.
    CaptionSession(SystemAudioCaptureController &controller, CaptionPrinter &printer, bool translates,
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
    void showTranslationFailure(const QString &sourceText, const QString &description);
    TranslationState translationOf(const LumaphoneCaptionLine &line) const;

    SystemAudioCaptureController &m_controller;
    CaptionPrinter &m_printer;
    const bool m_translates;
    const Completion<ExitStatus> m_ended;
    const Completion<> m_settled;
    QSet<QString> m_untranslatedTexts; ///< whose translation failed, in canonical form
    QSet<QString> m_toldFailures;
    qint64 m_samplesAtLastStatus = 0;
    QTimer m_patience; ///< with the translations under way, once the user has ended the session
};

} // namespace lumaphone::cli
