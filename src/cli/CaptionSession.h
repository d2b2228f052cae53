#pragma once

#include "base/Completion.h"
#include "base/MainQueue.h"
#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "cli/CaptionPrinter.h"
#include "cli/CommandLine.h"
#include "session/CaptionLineMerger.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <memory>

namespace lumaphone::cli {

/// Makes the pipeline of a session. The handlers may be called on any thread; `onFinished` once, when a
/// source that can end, such as a file, has delivered everything.
using PipelineFactory = std::function<std::shared_ptr<LumaphoneLiveAudioPipeline>(
    SystemAudioPipelineEventHandler onEvent, std::function<void()> onFinished)>;

/// One run of captions in the terminal: merges what the pipeline recognises and shows every change.
/// Main thread.
class CaptionSession final : private CaptionLineListener
{
public:
    /// All must outlive the session.
    CaptionSession(std::shared_ptr<MainQueue> mainQueue, CaptionLineMerger &merger, CaptionPrinter &printer);
    ~CaptionSession() override;
    CaptionSession(const CaptionSession &) = delete;
    CaptionSession &operator=(const CaptionSession &) = delete;

    /// Captions until the source ends, stop() is called or the pipeline fails. Call once.
    QCoro::Task<ExitStatus> run(PipelineFactory makePipeline);
    /// Ends the session: the open line is finished and shown. Also while the session still starts.
    void stop();

private:
    void handlePipelineEvent(const SystemAudioPipelineEvent &event);
    void captionLineInserted(qsizetype index) override;
    void captionLineChanged(qsizetype index) override;
    void captionLinesReset() override { }

    std::shared_ptr<MainQueue> m_mainQueue;
    CaptionLineMerger &m_merger;
    CaptionPrinter &m_printer;
    Completion<ExitStatus> m_ended;
    std::shared_ptr<LumaphoneLiveAudioPipeline> m_pipeline;
    bool m_isStarting = false;
    /// Events on their way to the main thread look here whether the session still wants them.
    std::shared_ptr<CaptionSession *> m_self;
};

} // namespace lumaphone::cli
