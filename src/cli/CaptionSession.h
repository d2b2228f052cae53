#pragma once

#include "base/Completion.h"
#include "base/MainQueue.h"
#include "cli/CaptionPrinter.h"
#include "cli/CommandLine.h"
#include "session/SystemAudioCaptureController.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>

#include <memory>

namespace lumaphone::cli {

/// One run of captions in the terminal: drives the live session and shows every change of it. Main thread.
class CaptionSession final : public QObject
{
public:
    /// Controller and printer outlive the session. `translates` says whether lines will get translations.
    CaptionSession(SystemAudioCaptureController &controller, CaptionPrinter &printer, bool translates,
        const std::shared_ptr<MainQueue> &mainQueue);

    /// Captions until stop() is called or the session fails; then waits for the translations under way.
    /// Call once.
    QCoro::Task<ExitStatus> run();
    /// Ends the session: the open line is finished and shown. Also while the session still starts.
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
};

} // namespace lumaphone::cli
