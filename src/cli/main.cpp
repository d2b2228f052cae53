#include "LumaphoneVersion.h"
#include "base/CoreDumps.h"
#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "base/RunToEnd.h"
#include "capture/LivePipelineServices.h"
#include "capture/SoundFileLivePipeline.h"
#include "capture/SoundFileReader.h"
#include "cli/CaptionSession.h"
#include "cli/CommandLine.h"
#include "cli/CommandStreams.h"
#include "cli/DoctorCommand.h"
#include "cli/DraftCommand.h"
#include "cli/GlossaryCommand.h"
#include "cli/JsonLinesCaptionPrinter.h"
#include "cli/KeyCommand.h"
#include "cli/LibraryCommand.h"
#include "cli/ModelsCommand.h"
#include "cli/NoFloatingCaptions.h"
#include "cli/NoTranslation.h"
#include "cli/SessionDefaults.h"
#include "cli/SettingsCommand.h"
#include "cli/StandardStreams.h"
#include "cli/TerminationSignals.h"
#include "cli/TextCaptionPrinter.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "machine/InstalledSpeechEngines.h"
#include "machine/MachineProbe.h"
#include "models/ModelInstaller.h"
#include "models/ModelStore.h"
#include "platform/desktop/DesktopFileViewer.h"
#include "platform/desktop/ExecutableFolderResources.h"
#include "platform/desktop/JsonDefaultsStore.h"
#include "platform/desktop/LockedSingleInstance.h"
#include "platform/desktop/SecretServiceKeychain.h"
#include "platform/desktop/SystemClock.h"
#include "platform/desktop/XdgFolders.h"
#include "platform/sound/PulseMicrophoneCapture.h"
#include "platform/sound/PulseScreenAudioCapture.h"
#include "session/LivePipelines.h"
#include "session/SessionTranslator.h"
#include "session/SystemAudioCaptureController.h"
#include "speech/framework/EngineSpeechFramework.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"
#include "storage/UserFiles.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/ondevice/OnDeviceTranslationFramework.h"

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

/// The user's transcripts.
struct Library
{
    SystemClock clock;
    DesktopFileViewer viewer;
    TranscriptLibraryStore store {{
        .layout = TranscriptLibraryLayout::standard(XdgFolders()),
        .areRevisions
        = RevisionQuestion::aboutAll([processor = LumaphoneTranscriptProcessor(ExecutableFolderResources())](
                                         const QStringList &texts) { return processor.areRevisions(texts); }),
        .clock = clock,
        .fileViewer = viewer,
        .makeUuid = &QUuid::createUuid,
        .locale = QLocale::system(),
    }};
};

/// The models of the user and those of the program.
ModelStore modelStore()
{
    return {modelsFolder(XdgFolders()), ModelCatalogue::configured(),
        std::make_shared<ExecutableFolderResources>()};
}

/// The folder in which the instances of the program find each other.
QString instanceFolder(const XdgFolders &folders)
{
    return folders.runtime().value_or(draftsFolder(folders)) + QStringLiteral("/lumaphone");
}

/// Two processes never share a draft: false, with a message, while another one uses it.
bool claim(LockedSingleInstance &instance, const CommandStreams &streams)
{
    if (instance.claim({}, [](const QString &) {}) == InstanceRole::first) {
        return true;
    }
    streams.complain(QStringLiteral("Lumaphone 正在執行並使用草稿。請先結束它。"));
    return false;
}

/// A live session in the terminal with the machine's own services.
class LiveCaptions
{
public:
    LiveCaptions(const CaptionCommandLine &command, const CommandStreams &streams)
        : m_command(command)
        , m_streams(streams)
    {
        m_settings.setSourceLanguage(command.language);
        m_settings.setAudioInputSource(std::holds_alternative<MicrophoneInputChoice>(command.input)
                ? LumaphoneAudioInputSource::microphone
                : LumaphoneAudioInputSource::systemAudio);
        // Without translation no provider has to be configured either.
        if (command.translation == TranslationChoice::apple
            || command.translation == TranslationChoice::off) {
            m_settings.setProcessingMode(LumaphoneProcessingMode::appleMode);
        } else if (command.translation == TranslationChoice::custom) {
            m_settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        }
    }

    ~LiveCaptions()
    {
        m_detachedTasks->wait();
        m_mainQueue->close();
    }

    ExitStatus run()
    {
        if (m_command.keepsDraft && !claim(m_instance, m_streams)) {
            return exitFailure;
        }
        if (!m_command.keepsDraft && LumaphoneSessionDraftStore(m_user.folders).load()) {
            m_streams.complain(
                QStringLiteral("找到上一段尚未儲存的字幕草稿，可用「lumaphone-cli draft show」查看。"));
        }
        CaptionSession *running = nullptr;
        SystemAudioCaptureController controller({
            .settings = m_settings,
            .floatingCaptions = m_noPanel,
            .transcriptProcessor = LumaphoneTranscriptProcessor(ExecutableFolderResources()),
            .draftStore = m_command.keepsDraft ? LumaphoneSessionDraftStore(m_user.folders)
                                               : LumaphoneSessionDraftStore(),
            .translator = makeTranslator(),
            .access = CaptureAccess(m_screenAudio, m_microphone, m_clock),
            .makePipeline
            = pipelineMaker([this, &running] { m_mainQueue->post([&running] { running->complete(); }); }),
            .clock = m_clock,
            .mainQueue = m_mainQueue,
            .makeUuid = &QUuid::createUuid,
        });
        const auto printer = makePrinter(m_command.format, m_streams);
        CaptionSession session(controller, *printer, m_mainQueue);
        running = &session;
        const TerminationSignals termination([&session] { session.stop(); });
        return runToEnd(session.run());
    }

private:
    std::shared_ptr<CaptionTranslator> makeTranslator()
    {
        if (m_command.translation == TranslationChoice::off) {
            return std::make_shared<NoTranslation>();
        }
        return std::make_shared<SessionTranslator>(
            m_settings, m_user.glossary, m_onDevice, m_chatCompletions, m_mainQueue);
    }

    LivePipelineMaker pipelineMaker(std::function<void()> onFileCompleted)
    {
        const LivePipelineServices services {
            std::make_shared<EngineSpeechFramework>(
                installedSpeechEngines(m_models, m_checkedFiles), m_mainQueue),
            m_mainQueue, m_detachedTasks, QLocale::system()};
        if (const auto *file = std::get_if<SoundFileInput>(&m_command.input)) {
            return [file = *file, services, clock = m_clock, onFileCompleted](LumaphoneAudioInputSource,
                       AppleSystemSpeechLanguage language, SystemAudioPipelineEventHandler onEvent) {
                const auto pace
                    = file.isRealtime ? SoundFilePace::SpeedOfSound : SoundFilePace::AsFastAsRecognised;
                return SoundFileLivePipeline::create(
                    file.path, language, pace, clock, services, std::move(onEvent), onFileCompleted);
            };
        }
        return LivePipelines {m_screenAudio, m_microphone, m_clock, services};
    }

    const CaptionCommandLine &m_command;
    const CommandStreams &m_streams;
    UserData m_user;
    SessionDefaults m_defaults {m_user.defaults};
    LumaphoneSettings m_settings {m_defaults, m_user.keychain};
    LockedSingleInstance m_instance {instanceFolder(m_user.folders)};
    NoFloatingCaptions m_noPanel;
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    ModelStore m_models = modelStore();
    CheckedFiles m_checkedFiles {checkedFilesPath(m_user.folders)};
    OnDeviceTranslationFramework m_translationFramework {m_models, m_mainQueue};
    LumaphoneAppleTranslationService m_onDevice {m_translationFramework};
    OpenAICompatibleTranslationService m_chatCompletions;
    std::shared_ptr<DetachedTasks> m_detachedTasks = std::make_shared<DetachedTasks>();
    std::shared_ptr<SystemClock> m_clock = std::make_shared<SystemClock>();
    std::shared_ptr<PulseScreenAudioCapture> m_screenAudio
        = std::make_shared<PulseScreenAudioCapture>(m_mainQueue);
    std::shared_ptr<PulseMicrophoneCapture> m_microphone
        = std::make_shared<PulseMicrophoneCapture>(m_mainQueue);
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
        if (const auto *file = std::get_if<SoundFileInput>(&command.input)) {
            // Said before a session starts, whose messages speak of devices.
            SoundFileReader reader(file->path);
        }
        return LiveCaptions(command, m_streams).run();
    }

    ExitStatus operator()(const Doctor &) const
    {
        const ModelStore models = modelStore();
        CheckedFiles checked(checkedFilesPath(XdgFolders()));
        const EngineSpeechFramework speech(installedSpeechEngines(models, checked), MainQueue::create());
        return runDoctor(
            probeMachine(
                QStringLiteral("lumaphone-cli %1").arg(QStringLiteral(LUMAPHONE_VERSION)), models, speech),
            m_streams);
    }

    ExitStatus operator()(const DraftShow &) const
    {
        return runDraftShow(LumaphoneSessionDraftStore(XdgFolders()), m_streams);
    }
    ExitStatus operator()(const DraftDiscard &) const
    {
        const XdgFolders folders;
        LockedSingleInstance instance(instanceFolder(folders));
        if (!claim(instance, m_streams)) {
            return exitFailure;
        }
        LumaphoneSessionDraftStore store(folders);
        return runDraftDiscard(store, m_streams);
    }

    ExitStatus operator()(const ModelsList &) const { return runModelsList(modelStore(), m_streams); }
    ExitStatus operator()(const ModelsInstall &command) const
    {
        const ModelStore store = modelStore();
        const auto mainQueue = MainQueue::create();
        ModelInstaller installer(store, mainQueue);
        std::stop_source stop;
        const TerminationSignals termination([&stop] { stop.request_stop(); });
        return runToEnd(runModelsInstall(
            command, store, installer, m_streams, terminalColumnsOf(STDERR_FILENO), stop.get_token()));
    }
    ExitStatus operator()(const ModelsRemove &command) const
    {
        return runModelsRemove(command, modelStore(), m_streams);
    }
    ExitStatus operator()(const ModelsVerify &command) const
    {
        return runModelsVerify(command, modelStore(), m_streams);
    }
    ExitStatus operator()(const ModelsLicence &command) const
    {
        return runModelsLicence(command, modelStore(), m_streams);
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

    ExitStatus operator()(const GlossaryImport &command) const
    {
        UserData user;
        return runGlossaryImport(command, user.glossary, m_streams);
    }
    ExitStatus operator()(const GlossaryExport &command) const
    {
        return runGlossaryExport(command, UserData().glossary, m_streams);
    }

    ExitStatus operator()(const LibraryList &command) const
    {
        return runLibraryList(command, Library().store, m_streams);
    }
    ExitStatus operator()(const LibraryShow &command) const
    {
        Library library;
        return runLibraryShow(command, library.store, m_streams);
    }
    ExitStatus operator()(const LibraryExport &command) const
    {
        Library library;
        return runLibraryExport(command, library.store, m_streams);
    }
    ExitStatus operator()(const LibraryDelete &command) const
    {
        Library library;
        return runLibraryDelete(command, library.store, terminalQuestion(m_streams), m_streams);
    }
    ExitStatus operator()(const LibrarySave &) const
    {
        const UserData user;
        LockedSingleInstance instance(instanceFolder(user.folders));
        if (!claim(instance, m_streams)) {
            return exitFailure;
        }
        Library library;
        LumaphoneSessionDraftStore drafts(user.folders);
        return runLibrarySave(drafts, library.store, user.settings, user.glossary.enabledTerms(), m_streams);
    }

    const CommandStreams &streams() const { return m_streams; }

private:
    CommandStreams m_streams {descriptorSink(STDOUT_FILENO), descriptorSink(STDERR_FILENO)};
};

} // namespace

int main(int argc, char *argv[])
{
    forgoCoreDumps();
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
