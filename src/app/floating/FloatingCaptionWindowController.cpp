#include "app/floating/FloatingCaptionWindowController.h"

#include "app/floating/FloatingCaptionPlacement.h"
#include "base/RectangleText.h"
#include "storage/LumaphoneSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QThread>

#include <chrono>
#include <utility>

namespace lumaphone {

namespace {

using namespace std::chrono_literals;

const auto frameKey = QStringLiteral("lumaphone.caption.frame");

} // namespace

FloatingCaptionWindowController::FloatingCaptionWindowController(
    LumaphoneSettings &settings, PanelMaker makePanel, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_makePanel(std::move(makePanel))
{
    m_saving.setSingleShot(true);
    m_saving.setInterval(200ms);
    connect(&m_saving, &QTimer::timeout, this, [this] {
        if (m_panel) {
            saveFrame(*m_panel);
        }
    });
}

FloatingCaptionWindowController::~FloatingCaptionWindowController()
{
    if (m_saving.isActive()) {
        saveFrame(*m_panel);
    }
    // Not by closing it: nobody is told any more.
    if (m_panel) {
        m_panel->disconnect(this);
    }
}

void FloatingCaptionWindowController::show(const QString &sourceText, const QString &translationText)
{
    show(sourceText, QString(), translationText);
}

void FloatingCaptionWindowController::showSpoken(
    const QString &sourceText, AppleSystemSpeechLanguage language, const QString &translationText)
{
    show(sourceText, rawValue(language), translationText);
}

void FloatingCaptionWindowController::show(
    const QString &sourceText, const QString &sourceLanguage, const QString &translationText)
{
    Q_ASSERT(thread() == QThread::currentThread());
    const bool wasOpen = isOpen();
    if (!wasOpen) {
        createPanel();
    }
    m_panel->setTexts(sourceText, sourceLanguage, translationText);
    m_panel->orderFront();
    setTexts(sourceText, translationText);
    if (!wasOpen) {
        emit isOpenChanged();
    }
}

void FloatingCaptionWindowController::toggle()
{
    if (isOpen()) {
        close();
        return;
    }
    show(QStringLiteral("Lumaphone 已經準備好浮在畫面上。"),
        QStringLiteral("播放影片或會議聲音後，字幕會在這裡即時更新。"));
}

void FloatingCaptionWindowController::close()
{
    if (m_panel) {
        m_panel->close();
    }
}

void FloatingCaptionWindowController::createPanel()
{
    std::unique_ptr<FloatingCaptionPanel> created = m_makePanel();
    FloatingCaptionPanel *panel = created.get();
    const auto note = [this, panel] {
        windowDidMoveOrResize(*panel);
    };
    connect(panel, &FloatingCaptionPanel::moved, this, note);
    connect(panel, &FloatingCaptionPanel::resized, this, note);
    connect(panel, &FloatingCaptionPanel::willClose, this, [this, panel] { windowWillClose(*panel); });
    // Only a panel that has its place is the current one, so that placing it stores nothing.
    position(*panel);
    m_panel = std::move(created);
}

void FloatingCaptionWindowController::position(FloatingCaptionPanel &panel) const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    const QRect mainScreen = screen->geometry();
    if (const std::optional<QString> stored = m_settings.defaults().string(frameKey)) {
        const QRectF frame = rectangleFromText(*stored);
        if (!frame.isEmpty()) {
            panel.setGeometry(floatingcaption::downwards(frame, mainScreen));
            return;
        }
    }
    const QRectF visibleFrame = floatingcaption::upwards(screen->availableGeometry(), mainScreen);
    const QRectF frame(floatingcaption::initialOrigin(visibleFrame, panel.size()), panel.size());
    panel.setGeometry(floatingcaption::downwards(frame, mainScreen));
}

void FloatingCaptionWindowController::windowDidMoveOrResize(const FloatingCaptionPanel &panel)
{
    if (&panel == m_panel.get()) {
        m_saving.start();
    }
}

void FloatingCaptionWindowController::windowWillClose(const FloatingCaptionPanel &panel)
{
    if (&panel != m_panel.get()) {
        return;
    }
    if (m_saving.isActive()) {
        m_saving.stop();
        saveFrame(panel);
    }
    m_panel.release()->deleteLater();
    setTexts({}, {});
    emit isOpenChanged();
}

void FloatingCaptionWindowController::saveFrame(const FloatingCaptionPanel &panel) const
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRectF frame = floatingcaption::upwards(panel.geometry(), screen->geometry());
        m_settings.defaults().setObject(frameKey, rectangleText(frame));
    }
}

void FloatingCaptionWindowController::setTexts(const QString &sourceText, const QString &translationText)
{
    if (std::exchange(m_currentSourceText, sourceText) != sourceText) {
        emit currentSourceTextChanged();
    }
    if (std::exchange(m_currentTranslationText, translationText) != translationText) {
        emit currentTranslationTextChanged();
    }
}

} // namespace lumaphone
