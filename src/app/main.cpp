#include "LumaphoneVersion.h"
#include "app/QmlEngineSetup.h"
#include "app/diagnosis/DiagnosisModel.h"
#include "app/floating/FloatingCaptionPanel.h"
#include "app/floating/FloatingCaptionWindowController.h"
#include "app/glossary/GlossarySettingsModel.h"
#include "app/inspector/InspectorModel.h"
#include "app/inspector/ProviderSettingsModel.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "app/live/LiveSessionModel.h"
#include "app/models/ModelOffer.h"
#include "app/models/ModelsModel.h"
#include "base/CoreDumps.h"
#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "capture/LivePipelineServices.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "machine/InstalledSpeechEngines.h"
#include "machine/MachineProbe.h"
#include "models/ModelStore.h"
#include "platform/desktop/DesktopFileViewer.h"
#include "platform/desktop/ExecutableFolderResources.h"
#include "platform/desktop/JsonDefaultsStore.h"
#include "platform/desktop/LockedSingleInstance.h"
#include "platform/desktop/PortalAppearance.h"
#include "platform/desktop/SecretServiceKeychain.h"
#include "platform/desktop/SystemClock.h"
#include "platform/desktop/XdgFolders.h"
#include "platform/display/LayerShellOffer.h"
#include "platform/display/Renderer.h"
#include "platform/display/WindowSystem.h"
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

#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QProcessEnvironment>
#include <QQmlApplicationEngine>
#include <QWindow>

#include <cstdio>

using namespace lumaphone;

namespace {

void complain(const QString &message)
{
    std::fprintf(stderr, "lumaphone: %s\n", qUtf8Printable(message));
}

/// The folder in which the instances of the program find each other.
QString instanceFolder(const XdgFolders &folders)
{
    return folders.runtime().value_or(draftsFolder(folders)) + QStringLiteral("/lumaphone");
}

/// For the toolkit, which reads it when the application is made.
void choose(const char *variable, const QString &value)
{
    if (!value.isEmpty()) {
        qputenv(variable, value.toUtf8());
    }
}

/// What is true of the toolkit as a whole.
void setUpApplication()
{
    QGuiApplication::setApplicationName(QStringLiteral("lumaphone"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Lumaphone"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.lumaphone.Lumaphone"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("app.lumaphone.Lumaphone"),
        QIcon(QStringLiteral(":/qt/qml/Lumaphone/icons/lumaphone.png"))));
    // The panel may stay open when the window closes; the window says when to end.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QFont font = QGuiApplication::font();
    font.setFamilies({QStringLiteral("Noto Sans CJK TC"), font.family()});
    QGuiApplication::setFont(font);
}

ColorScheme schemeOfPalette()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? ColorScheme::dark
                                                                                : ColorScheme::light;
}

/// What the user has stored on this machine, and the machine's services. Outlives the session.
struct Machine
{
    XdgFolders folders;
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    std::shared_ptr<DetachedTasks> detachedTasks = std::make_shared<DetachedTasks>();
    std::shared_ptr<SystemClock> clock = std::make_shared<SystemClock>();
    std::shared_ptr<PulseScreenAudioCapture> screenAudio
        = std::make_shared<PulseScreenAudioCapture>(mainQueue);
    std::shared_ptr<PulseMicrophoneCapture> microphone = std::make_shared<PulseMicrophoneCapture>(mainQueue);
    JsonDefaultsStore defaults {defaultsPath(folders)};
    SecretServiceKeychain keychain;
    DesktopFileViewer fileViewer;
    ModelStore models {
        modelsFolder(folders), ModelCatalogue::configured(), std::make_shared<ExecutableFolderResources>()};
    CheckedFiles checkedFiles {checkedFilesPath(folders)};
    std::shared_ptr<EngineSpeechFramework> speechFramework
        = std::make_shared<EngineSpeechFramework>(installedSpeechEngines(models, checkedFiles), mainQueue);
    OnDeviceTranslationFramework translationFramework {models, mainQueue};
    LumaphoneAppleTranslationService onDevice {translationFramework};
    OpenAICompatibleTranslationService chatCompletions;
    LumaphoneTranscriptProcessor transcriptProcessor {ExecutableFolderResources()};
    PortalAppearance appearance {schemeOfPalette()};

    LumaphoneSettings settings {defaults, keychain};
    LumaphoneGlossaryStore glossary {glossaryFolder(folders), [this](const QString &path) {
                                         fileViewer.reveal(path);
                                     }};
    TranscriptLibraryStore library {{
        .layout = TranscriptLibraryLayout::standard(folders),
        .areRevisions = RevisionQuestion::aboutAll(
            [this](const QStringList &texts) { return transcriptProcessor.areRevisions(texts); }),
        .clock = *clock,
        .fileViewer = fileViewer,
        .makeUuid = &QUuid::createUuid,
        .locale = QLocale::system(),
    }};

    ~Machine()
    {
        detachedTasks->wait();
        mainQueue->close();
    }

    LivePipelines pipelines() const
    {
        return {
            screenAudio, microphone, clock, {speechFramework, mainQueue, detachedTasks, QLocale::system()}};
    }
};

/// The window with everything that it shows.
class MainWindow
{
public:
    explicit MainWindow(Machine &machine)
        : m_machine(machine)
        , m_floatingCaptions(machine.settings, [this] { return makePanel(); })
        , m_controller({
              .settings = machine.settings,
              .floatingCaptions = m_floatingCaptions,
              .transcriptProcessor = machine.transcriptProcessor,
              .draftStore = LumaphoneSessionDraftStore(machine.folders),
              .translator = std::make_shared<SessionTranslator>(machine.settings, machine.glossary,
                  machine.onDevice, machine.chatCompletions, machine.mainQueue),
              .access = CaptureAccess(machine.screenAudio, machine.microphone, machine.clock),
              .makePipeline = machine.pipelines(),
              .clock = machine.clock,
              .mainQueue = machine.mainQueue,
              .makeUuid = &QUuid::createUuid,
          })
        , m_session(m_controller, machine.settings, machine.library, machine.glossary)
        , m_inspector(m_controller, machine.settings, machine.glossary)
        , m_provider(machine.settings, machine.mainQueue)
        , m_library(machine.library, QLocale::system())
        , m_glossary(machine.glossary, machine.mainQueue)
        , m_models(machine.models, machine.mainQueue)
        , m_modelOffer(m_models, machine.settings,
              [&machine](AppleSystemSpeechLanguage language) {
                  return machine.speechFramework->isInstalled(localeIdentifier(language));
              })
        , m_diagnosis(
              [&machine] {
                  return probeMachine(QStringLiteral("Lumaphone %1").arg(QStringLiteral(LUMAPHONE_VERSION)),
                      machine.models, *machine.speechFramework);
              },
              *machine.detachedTasks, machine.mainQueue)
    {
        QObject::connect(&m_models, &ModelsModel::installationEnded, &m_controller,
            &SystemAudioCaptureController::translateRestoredLines);
        setUpQmlEngine(m_engine);
    }
    ~MainWindow()
    {
        m_machine.appearance.observe({});
        m_floatingCaptions.close();
    }
    MainWindow(const MainWindow &) = delete;
    MainWindow &operator=(const MainWindow &) = delete;

    /// False if the views could not be loaded.
    bool open()
    {
        m_engine.setInitialProperties({
            {QStringLiteral("session"), QVariant::fromValue(&m_session)},
            {QStringLiteral("inspector"), QVariant::fromValue(&m_inspector)},
            {QStringLiteral("provider"), QVariant::fromValue(&m_provider)},
            {QStringLiteral("floatingCaptions"), QVariant::fromValue(&m_floatingCaptions)},
            {QStringLiteral("transcriptLibrary"), QVariant::fromValue(&m_library)},
            {QStringLiteral("glossary"), QVariant::fromValue(&m_glossary)},
            {QStringLiteral("modelOffer"), QVariant::fromValue(&m_modelOffer)},
            {QStringLiteral("diagnosis"), QVariant::fromValue(&m_diagnosis)},
            {QStringLiteral("isDark"), isDark()},
        });
        m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Main.qml")));
        if (m_engine.rootObjects().isEmpty()) {
            return false;
        }
        m_window = qobject_cast<QWindow *>(m_engine.rootObjects().first());
        m_machine.appearance.observe([this] { m_window->setProperty("isDark", isDark()); });
        raise();
        return true;
    }

    void raise() const
    {
        if (m_window) {
            m_window->show();
            m_window->raise();
            m_window->requestActivate();
        }
    }

private:
    bool isDark() const { return m_machine.appearance.colorScheme() == ColorScheme::dark; }

    std::unique_ptr<FloatingCaptionPanel> makePanel()
    {
        return std::make_unique<FloatingCaptionPanel>(m_engine,
            QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Floating/FloatingCaptionView.qml")),
            QVariantMap {{QStringLiteral("settings"), QVariant::fromValue(&m_machine.settings)}});
    }

    Machine &m_machine;
    FloatingCaptionWindowController m_floatingCaptions;
    SystemAudioCaptureController m_controller;
    LiveSessionModel m_session;
    InspectorModel m_inspector;
    ProviderSettingsModel m_provider;
    TranscriptLibraryWorkspaceModel m_library;
    GlossarySettingsModel m_glossary;
    ModelsModel m_models;
    ModelOffer m_modelOffer;
    DiagnosisModel m_diagnosis;
    QQmlApplicationEngine m_engine; ///< goes first, while what it shows is there
    QWindow *m_window = nullptr;
};

int run()
{
    MainWindow *raised = nullptr;
    LockedSingleInstance instance(instanceFolder(XdgFolders()));
    const auto raise = [&raised](const QString &permission) {
        if (raised) {
            // Wayland's windows come to the front only by the right of what the user has just started.
            if (!permission.isEmpty()) {
                qputenv("XDG_ACTIVATION_TOKEN", permission.toUtf8());
            }
            raised->raise();
        }
    };
    if (instance.claim(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), raise) == InstanceRole::second) {
        complain(QStringLiteral("Lumaphone 已經在執行，視窗會移到最前面。"));
        return 0;
    }
    Machine machine;
    MainWindow window(machine);
    raised = &window;
    const int status = window.open() ? QGuiApplication::exec() : 1;
    raised = nullptr;
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    forgoCoreDumps();
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    choose("QT_QPA_PLATFORM", preferredWindowSystem(environment, &isLayerShellOffered));
    choose("QT_QUICK_BACKEND", preferredRenderer(environment, &hasGraphicsCard));
    const QGuiApplication application(argc, argv);
    setUpApplication();
    try {
        return run();
    } catch (const std::exception &error) {
        complain(localizedDescription(error));
        return 1;
    }
}
