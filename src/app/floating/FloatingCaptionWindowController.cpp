#include "app/floating/FloatingCaptionWindowController.h"

#include "app/floating/FloatingCaptionPlacement.h"
#include "storage/LumaphoneSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumaphone {

namespace {

using namespace std::chrono_literals;

QScreen *screenNamed(const QString &name)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found = std::find_if(
        screens.begin(), screens.end(), [&](const QScreen *screen) { return screen->name() == name; });
    return found == screens.end() ? nullptr : *found;
}

/// Where a panel is put for the first time.
QRectF initialFrame(const QScreen &screen, const QSizeF &size)
{
    const QRectF visibleFrame = floatingcaption::upwards(screen.availableGeometry(), screen.geometry());
    return {floatingcaption::initialOrigin(visibleFrame, size), size};
}

/// As it is stored for an output: wherever that lies, the panel keeps its place on it.
QRectF frameWithin(const QRect &geometry, const QRect &output)
{
    return floatingcaption::upwards(geometry, output).translated(-output.x(), 0);
}

} // namespace

FloatingCaptionWindowController::FloatingCaptionWindowController(
    LumaphoneSettings &settings, std::shared_ptr<Clock> clock, PanelMaker makePanel, QObject *parent)
    : QObject(parent)
    , m_reader(settings, std::move(clock))
    , m_frames(settings.defaults())
    , m_makePanel(std::move(makePanel))
{
    m_saving.setSingleShot(true);
    m_saving.setInterval(200ms);
    connect(&m_saving, &QTimer::timeout, this, [this] {
        if (m_panel && m_panel->isDragged()) {
            // It may still be dropped on another output: this one then keeps the place it had.
            m_saving.start();
        } else if (m_panel) {
            saveFrame(*m_panel);
        }
    });
    connect(
        qGuiApp, &QGuiApplication::screenRemoved, this, &FloatingCaptionWindowController::screenWasRemoved);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &FloatingCaptionWindowController::screenWasAdded);
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
    m_reader.noteSaid(sourceText, translationText);
    show(sourceText, QString(), translationText);
}

void FloatingCaptionWindowController::showSpoken(
    const QString &sourceText, AppleSystemSpeechLanguage language, const QString &translationText)
{
    m_reader.noteSpoken();
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
    m_sourceLanguage = sourceLanguage;
    m_panel->setTexts(sourceText, sourceLanguage, translationText);
    orderFront();
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
    if (m_panel) {
        // It was never shown, and a window that was not is not told.
        windowWillClose(*m_panel);
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
    connect(panel, &QWindow::activeChanged, this, &FloatingCaptionWindowController::hasKeyboardChanged);
    connect(panel, &FloatingCaptionPanel::droppedElsewhere, this,
        &FloatingCaptionWindowController::panelWasDroppedOn);
    // Only a panel that has its place is the current one, so that placing it stores nothing.
    position(*panel);
    m_panel = std::move(created);
    m_home.reset();
    m_aside.reset();
    m_isHidden = false;
    makeRoom();
}

void FloatingCaptionWindowController::position(FloatingCaptionPanel &panel) const
{
    const bool isBound = panel.placing() == PanelPlacing::withinOutput;
    QScreen *screen = isBound ? homeScreen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    const QRect whole = screen->geometry();
    const QRectF initial = initialFrame(*screen, panel.size());
    if (isBound) {
        const std::optional<QRectF> last = m_frames.frameOn(screen->name());
        const QRectF frame = last ? last->translated(whole.x(), 0) : initial;
        panel.setScreen(screen);
        panel.setFrame(floatingcaption::fitted(floatingcaption::downwards(frame, whole), whole));
    } else {
        panel.setFrame(floatingcaption::downwards(m_frames.frame().value_or(initial), whole));
    }
}

/// Where a panel that cannot leave its screen is put: where it was last, else where the user is.
QScreen *FloatingCaptionWindowController::homeScreen() const
{
    if (const std::optional<QString> last = m_frames.lastOutput()) {
        if (QScreen *screen = screenNamed(*last)) {
            return screen;
        }
    }
    if (const QWindow *used = QGuiApplication::focusWindow()) {
        return used->screen();
    }
    for (const QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window != m_panel.get()) {
            return window->screen();
        }
    }
    return QGuiApplication::primaryScreen();
}

void FloatingCaptionWindowController::screenWasRemoved(const QScreen *screen)
{
    if (m_panel && m_panel->placing() == PanelPlacing::withinOutput && m_panel->screen() == screen) {
        // What it is shown with belongs to the screen.
        m_panel->hide();
        QMetaObject::invokeMethod(this, &FloatingCaptionWindowController::goHome, Qt::QueuedConnection);
    }
}

void FloatingCaptionWindowController::screenWasAdded()
{
    if (m_panel && m_panel->placing() == PanelPlacing::withinOutput && m_panel->screen() != homeScreen()) {
        goHome();
    }
}

void FloatingCaptionWindowController::panelWasDroppedOn(const QScreen *screen, const QRect &geometry)
{
    m_saving.stop();
    const QRect there = floatingcaption::fitted(geometry, screen->geometry());
    m_frames.setFrameOn(screen->name(), frameWithin(there, screen->geometry()));
    goHome();
}

/// The window of a panel that cannot leave its screen is made anew on the right one.
void FloatingCaptionWindowController::goHome()
{
    if (!m_panel) {
        return;
    }
    m_saving.stop();
    m_panel->disconnect(this);
    m_panel->hide();
    m_panel.release()->deleteLater();
    createPanel();
    m_panel->setTexts(m_currentSourceText, m_sourceLanguage, m_currentTranslationText);
    orderFront();
}

void FloatingCaptionWindowController::windowDidMoveOrResize(const FloatingCaptionPanel &panel)
{
    if (&panel != m_panel.get() || m_isMovingAside || panel.frame() == m_aside) {
        return;
    }
    // Where the user puts it, it stays.
    m_home.reset();
    m_aside.reset();
    m_saving.start();
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
    m_reader.leave();
    setTexts({}, {});
    emit isOpenChanged();
    emit hasKeyboardChanged();
}

void FloatingCaptionWindowController::setDialogs(const QVariantList &areas)
{
    if (m_dialogs != areas) {
        m_dialogs = areas;
        emit dialogsChanged();
        makeRoom();
    }
}

void FloatingCaptionWindowController::makeRoom()
{
    // Where the desktop places it, it also decides what lies above, and would not let it come back.
    if (!m_panel || m_panel->placing() == PanelPlacing::byDesktop) {
        return;
    }
    const QRect home = m_home.value_or(m_aside.value_or(m_panel->frame()));
    const std::optional<QRect> room = m_dialogs.isEmpty() ? home : roomBesideDialogs(home);
    if (!room) {
        m_isHidden = true;
        m_panel->hide();
        return;
    }
    if (*room != m_aside.value_or(home)) {
        moveAside(*room);
    }
    m_home = m_dialogs.isEmpty() ? std::nullopt : std::optional(home);
    if (std::exchange(m_isHidden, false)) {
        m_panel->orderFront();
    }
}

std::optional<QRect> FloatingCaptionWindowController::roomBesideDialogs(const QRect &home) const
{
    QList<QRect> areas;
    for (const QVariant &area : m_dialogs) {
        areas.append(area.toRectF().toAlignedRect());
    }
    const bool isAnywhere
        = std::any_of(areas.begin(), areas.end(), [](const QRect &area) { return area.isEmpty(); });
    // Only where the program places its windows does it know where they are.
    if (isAnywhere || m_panel->placing() != PanelPlacing::anywhere) {
        return std::nullopt;
    }
    const QScreen *below = QGuiApplication::screenAt(home.center());
    const QScreen *screen = below ? below : QGuiApplication::primaryScreen();
    return screen ? floatingcaption::clearOf(home, areas, screen->availableGeometry()) : std::nullopt;
}

void FloatingCaptionWindowController::moveAside(const QRect &place)
{
    if (m_saving.isActive()) {
        m_saving.stop();
        saveFrame(*m_panel);
    }
    m_aside = place;
    m_isMovingAside = true;
    m_panel->setFrame(place);
    m_isMovingAside = false;
}

void FloatingCaptionWindowController::orderFront()
{
    if (!m_isHidden) {
        m_panel->orderFront();
    }
}

void FloatingCaptionWindowController::saveFrame(const FloatingCaptionPanel &panel)
{
    const bool isBound = panel.placing() == PanelPlacing::withinOutput;
    const QScreen *screen = isBound ? panel.screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    if (isBound) {
        m_frames.setFrameOn(screen->name(), frameWithin(panel.frame(), screen->geometry()));
        return;
    }
    QRectF frame = floatingcaption::upwards(panel.frame(), screen->geometry());
    if (panel.placing() == PanelPlacing::byDesktop) {
        // Nobody knows where it lies; another desktop may still use the place that is stored.
        frame.moveTo(m_frames.frame().value_or(initialFrame(*screen, frame.size())).topLeft());
    }
    m_frames.setFrame(frame);
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
