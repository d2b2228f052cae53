#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/LivePipelineServices.h"
#include "capture/MicrophoneLivePipeline.h"
#include "capture/SoundFileLivePipeline.h"
#include "capture/SystemAudioLivePipeline.h"
#include "cli/CaptionSession.h"
#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"
#include "cli/GlossaryCommand.h"
#include "cli/JsonLinesCaptionPrinter.h"
#include "cli/KeyCommand.h"
#include "cli/SettingsCommand.h"
#include "cli/StandardStreams.h"
#include "cli/TerminationSignals.h"
#include "cli/TextCaptionPrinter.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "platform/linux/EngineSpeechFramework.h"
#include "platform/linux/ExecutableFolderResources.h"
#include "platform/linux/JsonDefaultsStore.h"
#include "platform/linux/PocketSphinxEngine.h"
#include "platform/linux/PulseMicrophoneCapture.h"
#include "platform/linux/PulseScreenAudioCapture.h"
#include "platform/linux/SecretServiceKeychain.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/XdgFolders.h"
#include "session/CaptionLineMerger.h"
#include "session/LumaphoneTranscriptProcessor.h"
#include "storage/LumaphoneSettings.h"
#include "storage/UserFiles.h"

#include <QCoreApplication>
#include <QLocale>

#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>

using namespace lumaphone;
using namespace lumaphone::cli;

namespace {

/// Captions are UTF-8, whatever the locale of the shell.
void ensureUtf8()
{
    std::setlocale(LC_ALL, "");
    if (qstrcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        ::setenv(std::getenv("LC_ALL") != nullptr ? "LC_ALL" : "LC_CTYPE", "C.UTF-8", 1);
    }
}

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

/// What the user has stored on this machine.
struct UserData
{
    XdgFolders folders;
    JsonDefaultsStore defaults {defaultsPath(folders)};
    SecretServiceKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    LumaphoneGlossaryStore glossary {glossaryFolder(folders), [](const QString &) {
                                     }};
};

/// Runs one command with the machine's own services.
class Program
{
public:
    ExitStatus operator()(const ShowText &command) const
    {
        m_streams.out(command.text.toUtf8());
        return exitSuccess;
    }

    ExitStatus operator()(const CaptionCommandLine &command) const
    {
        const auto mainQueue = MainQueue::create();
        const auto detachedTasks = std::make_shared<DetachedTasks>();
        const auto clock = std::make_shared<SystemClock>();
        const auto framework = std::make_shared<EngineSpeechFramework>(
            std::vector<std::shared_ptr<SpeechEngine>> {std::make_shared<PocketSphinxEngine>()}, mainQueue);
        const LivePipelineServices services {framework, mainQueue, detachedTasks, QLocale::system()};

        const LumaphoneTranscriptProcessor processor {ExecutableFolderResources()};
        CaptionLineMerger merger(
            [&processor](const QString &current, const QString &incoming) {
                return processor.isRevision(current, incoming);
            },
            *clock, &QUuid::createUuid);
        const auto printer = makePrinter(command.format, m_streams);
        CaptionSession session(mainQueue, merger, *printer);
        const TerminationSignals termination([&session] { session.stop(); });

        const auto makePipeline = [&](SystemAudioPipelineEventHandler onEvent,
                                      std::function<void()> onFinished) {
            return makeInputPipeline(command, clock, services, std::move(onEvent), std::move(onFinished));
        };
        const ExitStatus status = QCoro::waitFor(session.run(makePipeline));
        detachedTasks->wait();
        mainQueue->close();
        return status;
    }

    ExitStatus operator()(const SettingsList &) const
    {
        return runSettingsList(UserData().settings, m_streams);
    }
    ExitStatus operator()(const SettingsGet &command) const
    {
        return runSettingsGet(command, UserData().settings, m_streams);
    }
    ExitStatus operator()(const SettingsSet &command) const
    {
        UserData user;
        return runSettingsSet(command, user.settings, m_streams);
    }

    ExitStatus operator()(const KeySet &) const
    {
        UserData user;
        return runKeySet(user.settings, m_streams);
    }
    ExitStatus operator()(const KeyClear &) const
    {
        UserData user;
        return runKeyClear(user.settings, m_streams);
    }
    ExitStatus operator()(const KeyStatus &) const { return runKeyStatus(UserData().settings, m_streams); }

    ExitStatus operator()(const GlossaryList &) const
    {
        return runGlossaryList(UserData().glossary, m_streams);
    }
    ExitStatus operator()(const GlossaryAdd &command) const
    {
        UserData user;
        return runGlossaryAdd(command, user.glossary, &QUuid::createUuid, m_streams);
    }
    ExitStatus operator()(const GlossaryRemove &command) const
    {
        UserData user;
        return runGlossaryRemove(command, user.glossary, m_streams);
    }
    ExitStatus operator()(const GlossarySetEnabled &command) const
    {
        UserData user;
        return runGlossarySetEnabled(command, user.glossary, m_streams);
    }

    const CommandStreams &streams() const { return m_streams; }

private:
    static std::shared_ptr<LumaphoneLiveAudioPipeline> makeInputPipeline(const CaptionCommandLine &command,
        const std::shared_ptr<Clock> &clock, const LivePipelineServices &services,
        SystemAudioPipelineEventHandler onEvent, std::function<void()> onFinished)
    {
        if (const auto *file = std::get_if<SoundFileInput>(&command.input)) {
            const auto pace
                = file->isRealtime ? SoundFilePace::SpeedOfSound : SoundFilePace::AsFastAsRecognised;
            return SoundFileLivePipeline::create(file->path, command.language, pace, clock, services,
                std::move(onEvent), std::move(onFinished));
        }
        if (std::holds_alternative<MicrophoneInputChoice>(command.input)) {
            return MicrophoneLivePipeline::create(command.language,
                std::make_shared<PulseMicrophoneCapture>(services.mainQueue), services, std::move(onEvent));
        }
        return SystemAudioLivePipeline::create(command.language,
            std::make_shared<PulseScreenAudioCapture>(services.mainQueue), clock, services,
            std::move(onEvent));
    }

    CommandStreams m_streams {descriptorSink(STDOUT_FILENO), descriptorSink(STDERR_FILENO)};
};

} // namespace

int main(int argc, char *argv[])
{
    ensureUtf8();
    const QCoreApplication application(argc, argv);
    const Program program;
    try {
        return std::visit(program, parseCommandLine(QCoreApplication::arguments().mid(1)));
    } catch (const UsageError &error) {
        program.streams().complain(error.errorDescription());
        program.streams().complain(QStringLiteral("「lumaphone-cli --help」說明用法。"));
        return exitUsage;
    } catch (const std::exception &error) {
        program.streams().complain(localizedDescription(error));
        return exitFailure;
    }
}
