#include "cli/LiveCaptions.h"

#include "base/MainQueue.h"
#include "base/RunToEnd.h"
#include "capture/LivePipelineServices.h"
#include "capture/SoundFileLivePipeline.h"
#include "cli/CaptionSession.h"
#include "cli/DraftCommand.h"
#include "cli/JsonLinesCaptionPrinter.h"
#include "cli/NoTranslation.h"
#include "cli/StandardStreams.h"
#include "cli/TextCaptionPrinter.h"
#include "machine/Machine.h"
#include "platform/desktop/TerminationSignals.h"
#include "session/SystemAudioCaptureController.h"

#include <unistd.h>

namespace lumaphone::cli {

namespace {

std::unique_ptr<CaptionPrinter> makePrinter(OutputFormat format, const CommandStreams &streams)
{
    switch (format) {
    case OutputFormat::text:
        return std::make_unique<TextCaptionPrinter>(streams, [] { return terminalColumnsOf(STDOUT_FILENO); });
    case OutputFormat::jsonLines:
        return std::make_unique<JsonLinesCaptionPrinter>(streams);
    }
    Q_UNREACHABLE();
}

/// What the command asks for, in the place of what the user has chosen.
void choose(LumaphoneSettings &settings, const CaptionCommandLine &command)
{
    settings.setSourceLanguage(command.language);
    settings.setAudioInputSource(std::holds_alternative<MicrophoneInputChoice>(command.input)
            ? LumaphoneAudioInputSource::microphone
            : LumaphoneAudioInputSource::systemAudio);
    if (command.translation) {
        // Without translation no provider has to be configured either.
        settings.setProcessingMode(command.translation == TranslationChoice::custom
                ? LumaphoneProcessingMode::customAPI
                : LumaphoneProcessingMode::appleMode);
    }
}

/// Plays the file whatever the session listens to.
LivePipelineMaker filePipeline(const SoundFileInput &file, const LivePipelineServices &services,
    const std::shared_ptr<Clock> &clock, std::function<void()> onCompleted)
{
    return [file, services, clock, onCompleted = std::move(onCompleted)](LumaphoneAudioInputSource,
               AppleSystemSpeechLanguage language, SystemAudioPipelineEventHandler onEvent) {
        const auto pace = file.isRealtime ? SoundFilePace::speedOfSound : SoundFilePace::asFastAsRecognised;
        return SoundFileLivePipeline::create(
            file.path, language, pace, clock, services, std::move(onEvent), onCompleted);
    };
}

} // namespace

LiveCaptions::LiveCaptions(const CaptionCommandLine &command, Machine &machine, const CommandStreams &streams)
    : m_command(command)
    , m_machine(machine)
    , m_streams(streams)
    , m_defaults(machine.defaults())
    , m_settings(machine.settingsOver(m_defaults))
{
    choose(*m_settings, command);
}

LiveSessionCollaborators LiveCaptions::collaborators(std::function<void()> onFileCompleted)
{
    LiveSessionCollaborators live = m_machine.liveSession(*m_settings, m_noPanel);
    if (!m_command.keepsDraft) {
        live.draftStore = LumaphoneSessionDraftStore();
    }
    if (m_command.translation == TranslationChoice::off) {
        live.translator = std::make_shared<NoTranslation>();
    }
    if (const auto *file = std::get_if<SoundFileInput>(&m_command.input)) {
        live.makePipeline
            = filePipeline(*file, m_machine.pipelineServices(), live.clock, std::move(onFileCompleted));
    }
    return live;
}

ExitStatus LiveCaptions::run()
{
    if (m_command.keepsDraft && !claimDraft(m_machine.instance(), m_streams)) {
        return exitFailure;
    }
    if (!m_command.keepsDraft && m_machine.draftStore().load()) {
        m_streams.complain(
            QStringLiteral("找到上一段尚未儲存的字幕草稿，可用「lumaphone-cli draft show」查看。"));
    }
    const std::shared_ptr<MainQueue> &mainQueue = m_machine.mainQueue();
    CaptionSession *running = nullptr;
    SystemAudioCaptureController controller(
        collaborators([&] { mainQueue->post([&running] { running->complete(); }); }));
    const auto printer = makePrinter(m_command.format, m_streams);
    CaptionSession session(controller, *printer, mainQueue);
    running = &session;
    const TerminationSignals termination([&session] { session.stop(); });
    return runToEnd(session.run());
}

} // namespace lumaphone::cli
