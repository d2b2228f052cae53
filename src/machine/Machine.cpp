#include "machine/Machine.h"

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/LivePipelineServices.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "machine/MachineProbe.h"
#include "machine/SpeechEngines.h"
#include "platform/desktop/DesktopFileViewer.h"
#include "platform/desktop/ExecutableFolderResources.h"
#include "platform/desktop/JsonDefaultsStore.h"
#include "platform/desktop/LockedSingleInstance.h"
#include "platform/desktop/PortalAppearance.h"
#include "platform/desktop/SecretServiceKeychain.h"
#include "platform/desktop/SystemClock.h"
#include "platform/desktop/XdgFolders.h"
#include "platform/sound/PulseMicrophoneCapture.h"
#include "platform/sound/PulseScreenAudioCapture.h"
#include "session/LivePipelines.h"
#include "session/SessionTranslator.h"
#include "session/SoundCheck.h"
#include "session/SystemAudioCaptureController.h"
#include "speech/framework/LocalSpeechFramework.h"
#include "storage/KeychainThread.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"
#include "storage/UserFiles.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/ondevice/OnDeviceTranslationFramework.h"

namespace lumaphone {

namespace {

/// The folder in which the instances of the program find each other.
QString instanceFolder()
{
    const XdgFolders folders;
    return folders.runtime().value_or(draftsFolder(folders)) + QStringLiteral("/lumaphone");
}

LumaphoneTranscriptProcessor transcriptProcessor()
{
    return LumaphoneTranscriptProcessor(ExecutableFolderResources());
}

/// The part, which `make` makes the first time.
template<typename Pointer, typename Make> auto &made(Pointer &part, Make make)
{
    if (!part) {
        part = make();
    }
    return *part;
}

} // namespace

Machine::Machine(SettingsWriting settingsWriting)
    : m_settingsWriting(settingsWriting)
    , m_mainQueue(MainQueue::create())
    , m_detachedTasks(std::make_shared<DetachedTasks>())
    , m_clock(std::make_shared<SystemClock>())
{
}

Machine::~Machine()
{
    m_detachedTasks->wait();
    m_mainQueue->close();
}

LockedSingleInstance &Machine::instance()
{
    return made(m_instance, [] { return std::make_unique<LockedSingleInstance>(instanceFolder()); });
}

DefaultsStore &Machine::defaults()
{
    return made(m_defaults, [this] {
        return std::make_unique<JsonDefaultsStore>(
            defaultsPath(XdgFolders()), m_settingsWriting == SettingsWriting::gathered ? m_clock : nullptr);
    });
}

LumaphoneSettings &Machine::settings()
{
    return made(m_settings, [this] { return settingsOver(defaults()); });
}

std::unique_ptr<LumaphoneSettings> Machine::settingsOver(DefaultsStore &defaults)
{
    auto &keychain = made(m_keychain, [] { return std::make_shared<SecretServiceKeychain>(); });
    auto &thread = made(
        m_keychainThread, [this] { return std::make_unique<KeychainThread>(m_keychain, m_mainQueue); });
    return std::make_unique<LumaphoneSettings>(defaults, keychain, thread.runner());
}

LumaphoneGlossaryStore &Machine::glossary()
{
    return made(m_glossary, [this] {
        return std::make_unique<LumaphoneGlossaryStore>(
            glossaryFolder(XdgFolders()), [this](const QString &path) { return fileViewer().reveal(path); });
    });
}

TranscriptLibraryStore &Machine::library()
{
    return made(m_library, [this] {
        return std::make_unique<TranscriptLibraryStore>(TranscriptLibraryStore::Environment {
            .layout = TranscriptLibraryLayout::standard(XdgFolders()),
            .areRevisions
            = RevisionQuestion::aboutAll([processor = transcriptProcessor()](const QStringList &texts) {
                  return processor.areRevisions(texts);
              }),
            .clock = *m_clock,
            .fileViewer = fileViewer(),
            .makeUuid = &QUuid::createUuid,
            .locale = QLocale::system(),
        });
    });
}

LumaphoneSessionDraftStore Machine::draftStore() const
{
    return LumaphoneSessionDraftStore(XdgFolders());
}

const ModelStore &Machine::models()
{
    return made(m_models, [] {
        return std::make_unique<ModelStore>(modelsFolder(XdgFolders()), ModelCatalogue::configured(),
            std::make_shared<ExecutableFolderResources>());
    });
}

bool Machine::isRecognized(AppleSystemSpeechLanguage language)
{
    return speech().isInstalled(localeIdentifier(language));
}

LivePipelineServices Machine::pipelineServices()
{
    speech();
    return {m_speech, m_mainQueue, m_detachedTasks, QLocale::system()};
}

LiveSessionCollaborators Machine::liveSession(
    LumaphoneSettings &settings, FloatingCaptionPresenter &floatingCaptions)
{
    auto &chatCompletions
        = made(m_chatCompletions, [] { return std::make_unique<OpenAICompatibleTranslationService>(); });
    return {
        .settings = settings,
        .floatingCaptions = floatingCaptions,
        .transcriptProcessor = transcriptProcessor(),
        .draftStore = draftStore(),
        .translator = std::make_shared<SessionTranslator>(
            settings, glossary(), onDeviceTranslation(), chatCompletions, m_clock, m_mainQueue),
        .access = CaptureAccess(screenAudio(), microphone(), m_clock),
        .makePipeline = LivePipelines {screenAudio(), microphone(), m_clock, pipelineServices()},
        .clock = m_clock,
        .mainQueue = m_mainQueue,
        .makeUuid = &QUuid::createUuid,
    };
}

std::unique_ptr<SoundCheck> Machine::soundCheck()
{
    return std::make_unique<SoundCheck>(screenAudio(), microphone(), m_clock, m_mainQueue);
}

std::function<MachineFacts()> Machine::probe(const QString &program)
{
    return [program, &store = models(), &framework = speech()] {
        return probeMachine(program, store, framework);
    };
}

std::unique_ptr<PortalAppearance> Machine::appearance(ColorScheme fallback)
{
    return std::make_unique<PortalAppearance>(fallback);
}

const std::shared_ptr<ScreenAudioCapture> &Machine::screenAudio()
{
    made(m_screenAudio, [this] { return std::make_shared<PulseScreenAudioCapture>(m_mainQueue); });
    return m_screenAudio;
}

const std::shared_ptr<MicrophoneCapture> &Machine::microphone()
{
    made(m_microphone, [this] { return std::make_shared<PulseMicrophoneCapture>(m_mainQueue); });
    return m_microphone;
}

FileViewer &Machine::fileViewer()
{
    return made(m_fileViewer, [] { return std::make_unique<DesktopFileViewer>(); });
}

LocalSpeechFramework &Machine::speech()
{
    return made(m_speech, [this] {
        auto &checked = made(
            m_checkedFiles, [] { return std::make_unique<CheckedFiles>(checkedFilesPath(XdgFolders())); });
        return std::make_shared<LocalSpeechFramework>(speechEngines(models(), checked), m_mainQueue);
    });
}

LumaphoneAppleTranslationService &Machine::onDeviceTranslation()
{
    return made(m_onDeviceTranslation, [this] {
        m_translation = std::make_unique<OnDeviceTranslationFramework>(models(), m_mainQueue);
        return std::make_unique<LumaphoneAppleTranslationService>(*m_translation);
    });
}

} // namespace lumaphone
