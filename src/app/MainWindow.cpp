#include "app/MainWindow.h"

#include "LumaphoneVersion.h"
#include "app/QmlEngineSetup.h"
#include "machine/Machine.h"
#include "session/SoundCheck.h"
#include "storage/TranscriptLibraryStore.h"

#include <QColor>
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
    , m_floatingCaptions(m_settings, machine.clock(), [this] { return makePanel(); })
    , m_controller(machine.liveSession(m_settings, m_floatingCaptions))
    , m_session(m_controller, m_settings, machine.library(), machine.glossary())
    , m_soundTest(m_controller, machine.soundCheck())
    , m_inspector(m_controller, m_settings, machine.glossary())
    , m_provider(m_settings, machine.clock(), machine.mainQueue())
    , m_library(machine.library(), QLocale::system())
    , m_glossary(machine.glossary(), machine.mainQueue())
    , m_models(machine.models(), machine.mainQueue(), InstallationMemory(&machine.defaults()))
    , m_modelOffer(m_models, m_settings,
          [&machine](AppleSystemSpeechLanguage language) { return machine.isRecognized(language); })
    , m_diagnosis(machine.probe(QStringLiteral("Lumaphone %1").arg(QStringLiteral(LUMAPHONE_VERSION))),
          machine.detachedTasks(), machine.mainQueue())
    , m_welcome(m_settings, !m_controller.captionLines().isEmpty() || !machine.library().records().isEmpty())
{
    QObject::connect(&m_models, &ModelsModel::installationEnded, &m_controller,
        &SystemAudioCaptureController::translationModelsChanged);
    m_floatingCaptions.reader()->observe(m_controller);
    setUpQmlEngine(m_engine);
}

MainWindow::~MainWindow()
{
    m_appearance->observe({});
    m_floatingCaptions.close();
}

bool MainWindow::open()
{
    QVariantMap properties = appearance();
    properties.insert({
        {QStringLiteral("session"), QVariant::fromValue(&m_session)},
        {QStringLiteral("inspector"), QVariant::fromValue(&m_inspector)},
        {QStringLiteral("provider"), QVariant::fromValue(&m_provider)},
        {QStringLiteral("floatingCaptions"), QVariant::fromValue(&m_floatingCaptions)},
        {QStringLiteral("transcriptLibrary"), QVariant::fromValue(&m_library)},
        {QStringLiteral("glossary"), QVariant::fromValue(&m_glossary)},
        {QStringLiteral("modelOffer"), QVariant::fromValue(&m_modelOffer)},
        {QStringLiteral("diagnosis"), QVariant::fromValue(&m_diagnosis)},
        {QStringLiteral("welcome"), QVariant::fromValue(&m_welcome)},
        {QStringLiteral("soundTest"), QVariant::fromValue(&m_soundTest)},
    });
    m_engine.setInitialProperties(properties);
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Main.qml")));
    if (m_engine.rootObjects().isEmpty()) {
        return false;
    }
    m_window = qobject_cast<QWindow *>(m_engine.rootObjects().first());
    m_appearance->observe([this] {
        const QVariantMap changed = appearance();
        for (auto property = changed.cbegin(); property != changed.cend(); ++property) {
            m_window->setProperty(qPrintable(property.key()), property.value());
        }
    });
    raise();
    m_models.resumeInstallations();
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

void MainWindow::close() const
{
    if (m_window) {
        m_window->close();
    }
}

/// As the properties of the window.
QVariantMap MainWindow::appearance() const
{
    const DesktopAppearance &wanted = m_appearance->current();
    const QColor accent = wanted.accent
        ? QColor::fromRgbF(static_cast<float>(wanted.accent->red), static_cast<float>(wanted.accent->green),
            static_cast<float>(wanted.accent->blue))
        : QColor(Qt::transparent);
    return {
        {QStringLiteral("isDark"), wanted.scheme == ColorScheme::dark},
        {QStringLiteral("desktopAccent"), accent},
        {QStringLiteral("isHighContrast"), wanted.wantsHighContrast},
        {QStringLiteral("isMotionReduced"), wanted.wantsReducedMotion},
    };
}

std::unique_ptr<FloatingCaptionPanel> MainWindow::makePanel()
{
    return std::make_unique<FloatingCaptionPanel>(m_engine,
        QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Floating/FloatingCaptionView.qml")),
        QVariantMap {{QStringLiteral("settings"), QVariant::fromValue(&m_settings)},
            {QStringLiteral("reader"), QVariant::fromValue(m_floatingCaptions.reader())}});
}

} // namespace lumaphone
