#include "app/MainWindow.h"

#include "LumaphoneVersion.h"
#include "app/QmlEngineSetup.h"
#include "machine/Machine.h"
#include "session/SoundCheck.h"

#include <QGuiApplication>
#include <QPalette>
#include <QWindow>

namespace lumaphone {

namespace {

ColorScheme schemeOfPalette()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? ColorScheme::dark
                                                                                : ColorScheme::light;
}

} // namespace

MainWindow::MainWindow(Machine &machine)
    : m_settings(machine.settings())
    , m_appearance(Machine::appearance(schemeOfPalette()))
    , m_floatingCaptions(m_settings, [this] { return makePanel(); })
    , m_controller(machine.liveSession(m_settings, m_floatingCaptions))
    , m_session(m_controller, m_settings, machine.library(), machine.glossary())
    , m_soundTest(m_controller, machine.soundCheck())
    , m_inspector(m_controller, m_settings, machine.glossary())
    , m_provider(m_settings, machine.mainQueue())
    , m_library(machine.library(), QLocale::system())
    , m_glossary(machine.glossary(), machine.mainQueue())
    , m_models(machine.models(), machine.mainQueue())
    , m_modelOffer(m_models, m_settings,
          [&machine](AppleSystemSpeechLanguage language) { return machine.isRecognized(language); })
    , m_diagnosis(machine.probe(QStringLiteral("Lumaphone %1").arg(QStringLiteral(LUMAPHONE_VERSION))),
          machine.detachedTasks(), machine.mainQueue())
{
    QObject::connect(&m_models, &ModelsModel::installationEnded, &m_controller,
        &SystemAudioCaptureController::translationModelsChanged);
    setUpQmlEngine(m_engine);
}

MainWindow::~MainWindow()
{
    m_appearance->observe({});
    m_floatingCaptions.close();
}

bool MainWindow::open()
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
        {QStringLiteral("soundTest"), QVariant::fromValue(&m_soundTest)},
        {QStringLiteral("isDark"), isDark()},
    });
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Main.qml")));
    if (m_engine.rootObjects().isEmpty()) {
        return false;
    }
    m_window = qobject_cast<QWindow *>(m_engine.rootObjects().first());
    m_appearance->observe([this] { m_window->setProperty("isDark", isDark()); });
    raise();
    return true;
}

void MainWindow::raise() const
{
    if (m_window) {
        m_window->show();
        m_window->raise();
        m_window->requestActivate();
    }
}

bool MainWindow::isDark() const
{
    return m_appearance->colorScheme() == ColorScheme::dark;
}

std::unique_ptr<FloatingCaptionPanel> MainWindow::makePanel()
{
    return std::make_unique<FloatingCaptionPanel>(m_engine,
        QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Floating/FloatingCaptionView.qml")),
        QVariantMap {{QStringLiteral("settings"), QVariant::fromValue(&m_settings)}});
}

} // namespace lumaphone
