#include "endtoend/PrivateCompositor.h"
#include "endtoend/User.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/PrivateDisplay.h"
#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/PrivateSoundServer.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <utility>

using namespace lumaphone::test;

namespace {

/// What carries the panel.
enum class Carrier {
    layer, ///< a surface of the layer shell
    x11, ///< a window of the compositor's X server
    ordinary,
};

constexpr QSize displaySize(2400, 900);

/// A black panel that lets nothing shine through, above a light window, and a translator at a given address.
const char settings[] = R"({
    "lumaphone.caption.opacity": 1.0,
    "lumaphone.caption.theme": "dark",
    "lumaphone.processingMode": "customAPI",
    "lumaphone.provider.baseURL": "%URL%",
    "lumaphone.provider.model": "test-model"
})";

QImage photograph()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

/// Where the panel is in a part of the picture, without its border; null if it is not there. Nothing else has
/// rows as long that are black.
QRect panelIn(const QImage &picture, const QRect &part)
{
    constexpr int shortest = 200;
    QRect found;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        int length = 0;
        for (int x = part.left(); x <= part.right() + 1; ++x) {
            if (x <= part.right() && (row[x] & 0xffffff) == 0) {
                ++length;
                continue;
            }
            if (length >= shortest) {
                found |= QRect(x - length, y, length, 1);
            }
            length = 0;
        }
    }
    return found;
}

/// Where the panel is once it rests; null if it never does. The pointer does not: Weston shows a window that
/// it does not manage only along with something else that is new.
QRect restingPanelIn(const QRect &part, const PrivateDisplay &display)
{
    QRect last;
    int step = 1;
    const bool rests = waitUntil(
        [&] {
            display.control({"mousemove_relative", "--", QString::number(step), "0"});
            step = -step;
            const QRect former = std::exchange(last, panelIn(photograph(), part));
            return last.isValid() && last == former;
        },
        30000);
    return rests ? last : QRect();
}

bool waitForPanel(const QRect &place, const QRect &part)
{
    return waitUntil([&] { return panelIn(photograph(), part) == place; }, 30000);
}

/// The middle of the upper edge's padding, where no text is.
QPoint handleOf(const QRect &panel)
{
    return {panel.center().x(), panel.top() + 12};
}

} // namespace

/// The program on a desktop, and a user before the display that the desktop is on.
class WaylandDesktopTest : public QObject
{
    Q_OBJECT

public:
    WaylandDesktopTest(const PrivateDisplay &display, const PrivateSessionBus &bus)
        : m_display(display)
        , m_keyring(bus)
    {
    }

private slots:
    void initTestCase()
    {
        m_keyring.start();
        m_chat = std::make_unique<RunningProgram>(QStringLiteral(LUMAPHONE_CHAT_SERVER), QStringList());
        QVERIFY(m_chat->waitForOutput("\n"));
    }

    void init()
    {
        QFETCH(CompositorKind, kind);
        QFETCH(Carrier, carrier);
        LUMAPHONE_NEEDS(notInstalled(PrivateCompositor::programs(kind)));
        if (carrier == Carrier::layer && !LUMAPHONE_HAS_LAYER_SHELL) {
            QSKIP("This build knows no layer shell.");
        }
        m_kind = kind;
        m_carrier = carrier;
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_home->path()).mkpath("config/lumaphone"));
        QFile file(m_home->filePath("config/lumaphone/settings.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(settings).replace("%URL%", m_chat->outputLines().constFirst()));
        m_display.control({"mousemove", "5", "5"});
    }

    void cleanup()
    {
        if (QTest::currentTestFailed()) {
            keepPhotograph();
        }
        m_display.control({"mouseup", "1"});
        m_compositor.reset();
    }

    void speechIsCaptioned_data() { desktops(); }
    void speechIsCaptioned()
    {
        PrivateSoundServer sound;
        sound.addOutput("speakers");
        start();
        User user(m_home->path(), environment());
        DO("shown startStop");
        DO("platform");
        QCOMPARE(user.seen, m_carrier == Carrier::x11 ? QString("ok xcb") : QString("ok wayland"));
        DO("choose languageMenu english");
        QVERIFY(openPanel(user).isValid());
        DO("click startStop");
        DO("await stage.state 正在聽");
        const SoundPlayback speech = sound.play(PrivateSoundServer::speechFiles().constFirst());
        DO("count card.lines 1");
        DO("await stage.translationText 〔");
        DO("panel 〔");
        keepPhotograph();
        DO("close");
        QVERIFY(user.program().waitForEnd());
        QVERIFY(!user.program().crashed());
        QCOMPARE(user.program().exitCode(), 0);
    }

    /// Without Weston's X server: a window that Weston does not manage is seen where it has gone only once it
    /// shows another picture.
    void aPanelThatWasDraggedAndResizedOpensAgainAsItWas_data()
    {
        layerDesktops();
        QTest::newRow("Weston") << CompositorKind::weston << Carrier::ordinary;
    }
    void aPanelThatWasDraggedAndResizedOpensAgainAsItWas()
    {
        start();
        QRect last;
        {
            User user(m_home->path(), environment());
            const QRect panel = openPanel(user);
            QVERIFY(panel.isValid());
            const QPoint delta = towardsTheMiddle(panel);
            const QRect moved = panel.translated(delta);
            QCOMPARE(dragged(handleOf(panel), delta, moved), moved);
            const QRect wider = moved.adjusted(0, 0, 60, 0);
            QCOMPARE(dragged({moved.right() - 1, moved.center().y()}, {60, 0}, wider), wider);
            last = wider.adjusted(0, -40, 0, 0);
            QCOMPARE(dragged({wider.center().x(), wider.top() + 1}, {0, -40}, last), last);
            keepPhotograph();
            DO("close");
            QVERIFY(user.program().waitForEnd());
        }
        User user(m_home->path(), environment());
        const QRect again = openPanel(user);
        QCOMPARE(again.size(), last.size());
        if (m_carrier != Carrier::ordinary) {
            QCOMPARE(again.topLeft(), last.topLeft());
        }
    }

    void thePanelFloatsAboveAFullScreenWindowWithoutTheKeyboard_data() { layerDesktops(); }
    void thePanelFloatsAboveAFullScreenWindowWithoutTheKeyboard()
    {
        start();
        User user(m_home->path(), environment());
        const QRect panel = openPanel(user);
        QVERIFY(panel.isValid());
        DO("fill");
        DO("frame");
        QVERIFY(waitForPanel(panel, m_compositor->output(0)));
        const QRect moved = panel.translated(0, -30);
        QCOMPARE(dragged(handleOf(panel), {0, -30}, moved), moved);
        keepPhotograph();
        DO("press Ctrl+Shift+F");
        DO("panel");
    }

    void theProgramsKeysWorkWhereThePanelHasTheKeyboard_data()
    {
        addColumns();
        QTest::newRow("Weston") << CompositorKind::weston << Carrier::ordinary;
    }
    void theProgramsKeysWorkWhereThePanelHasTheKeyboard()
    {
        start();
        User user(m_home->path(), environment());
        const QRect panel = openPanel(user);
        QVERIFY(panel.isValid());
        // So that the display's keys go to the desktop, and the desktop's to the panel.
        m_display.control({"mousemove", QString::number(panel.center().x()),
            QString::number(panel.center().y()), "click", "3", "key", "ctrl+shift+f"});
        DO("panel");
    }

    void thePanelStaysOnItsOutput_data() { layerDesktops(); }
    void thePanelStaysOnItsOutput()
    {
        start(2);
        User user(m_home->path(), environment());
        const QRect panel = openPanel(user);
        const QRect output = m_compositor->output(0);
        QVERIFY(output.contains(panel));
        // Its border is not black.
        const QRect atTheEdge(QPoint(output.left() + 1, panel.top()), panel.size());
        press(handleOf(panel));
        move({-panel.left(), 0});
        QVERIFY(waitForPanel(atTheEdge, output));
        keepPhotograph();
    }

    void aPanelDroppedOnAnotherOutputGoesThere_data() { layerDesktops(); }
    void aPanelDroppedOnAnotherOutputGoesThere()
    {
        start(2);
        {
            User user(m_home->path(), environment());
            QVERIFY(openPanel(user).isValid());
            QVERIFY(dropOnTheSecondOutput(restingPanelIn(m_compositor->output(0), m_display)));
            keepPhotograph();
            DO("close");
            QVERIFY(user.program().waitForEnd());
        }
        const QRect panel = panelOnTheSecondOutput();
        User user(m_home->path(), environment());
        QCOMPARE(openPanel(user), panel);
    }

    void thePanelOutlivesItsOutput_data() { desktops(); }
    void thePanelOutlivesItsOutput()
    {
        start(2);
        User user(m_home->path(), environment());
        const QRect panel = openPanel(user);
        QVERIFY(panel.isValid());
        if (m_carrier == Carrier::layer) {
            QVERIFY(m_compositor->output(0).contains(panel));
            QVERIFY(dropOnTheSecondOutput(panel));
        }
        m_compositor->unplug(1);
        if (m_carrier == Carrier::layer) {
            // Where it was on the output that is left.
            QVERIFY(waitForPanel(panel, m_compositor->output(0)));
        } else {
            QVERIFY(restingPanelIn(m_compositor->output(0), m_display).isValid());
        }
        keepPhotograph();
        DO("panel Lumaphone");
        DO("close");
        QVERIFY(user.program().waitForEnd());
        QVERIFY(!user.program().crashed());
        QCOMPARE(user.program().exitCode(), 0);
    }

private:
    static void addColumns()
    {
        QTest::addColumn<CompositorKind>("kind");
        QTest::addColumn<Carrier>("carrier");
    }
    static void layerDesktops()
    {
        addColumns();
        QTest::newRow("labwc") << CompositorKind::labwc << Carrier::layer;
        QTest::newRow("sway") << CompositorKind::sway << Carrier::layer;
    }
    static void desktops()
    {
        layerDesktops();
        QTest::newRow("Weston with an X server") << CompositorKind::weston << Carrier::x11;
        QTest::newRow("Weston") << CompositorKind::weston << Carrier::ordinary;
    }

    void start(int outputs = 1)
    {
        m_compositor = std::make_unique<PrivateCompositor>(m_display, m_kind, outputs);
        const QPoint middle = m_compositor->output(0).center();
        m_display.control({"mousemove", QString::number(middle.x()), QString::number(middle.y())});
    }
    /// The X server is there where it must not matter, too.
    QList<std::pair<QString, QString>> environment() const
    {
        return m_compositor->environment(m_carrier != Carrier::ordinary);
    }

    /// Where it is then; null if it cannot be seen.
    QRect openPanel(User &user) const
    {
        const bool isOpen = user.does("shown startStop") && user.does("frame")
            && user.does("click floatingCaptions") && user.does("panel Lumaphone");
        if (!isOpen) {
            qWarning("%s", qPrintable(user.seen));
        }
        return isOpen ? restingPanelIn({{}, m_display.size()}, m_display) : QRect();
    }

    /// As a hand does it: it comes to a place and presses later. X servers of compositors lose a press that
    /// comes along with the pointer.
    void press(const QPoint &place) const
    {
        m_display.control({"mousemove", QString::number(place.x()), QString::number(place.y())});
        m_display.control({"mousemove_relative", "1", "0"});
        m_display.control({"mousemove_relative", "--", "-1", "0"});
        settle();
        m_display.control({"mousedown", "1"});
    }
    void move(const QPoint &by) const
    {
        m_display.control({"mousemove_relative", "--", QString::number(by.x()), QString::number(by.y())});
    }
    /// Where the panel has come to when it has been dragged from a place of its own, to `wanted` if all is
    /// well. Some desktops take hold of it only after the program has asked them.
    QRect dragged(const QPoint &from, const QPoint &by, const QRect &wanted) const
    {
        const QRect all({}, m_display.size());
        const QRect before = panelIn(photograph(), all);
        press(from);
        move(by / 2);
        waitUntil([&] { return panelIn(photograph(), all) != before; });
        move(by - by / 2);
        waitForPanel(wanted, all);
        m_display.control({"mouseup", "1"});
        settle();
        return restingPanelIn(all, m_display);
    }
    QPoint towardsTheMiddle(const QRect &panel) const
    {
        const QPoint middle = m_compositor->output(0).center();
        return {panel.center().x() < middle.x() ? 150 : -150, panel.center().y() < middle.y() ? 100 : -100};
    }

    QRect panelOnTheSecondOutput() const { return m_droppedAt; }
    bool dropOnTheSecondOutput(const QRect &panel)
    {
        const QPoint by(m_compositor->output(1).x(), -40);
        m_droppedAt = panel.translated(by);
        press(handleOf(panel));
        move(by / 2);
        waitUntil([&] { return panelIn(photograph(), QRect({}, m_display.size())) != panel; });
        move(by - by / 2);
        settle();
        m_display.control({"mouseup", "1"});
        return waitForPanel(m_droppedAt, m_compositor->output(1))
            && panelIn(photograph(), m_compositor->output(0)).isNull();
    }

    /// For those who want to see the desktops, in the folder LUMAPHONE_TEST_PHOTOGRAPHS.
    static void keepPhotograph()
    {
        const QString folder = qEnvironmentVariable("LUMAPHONE_TEST_PHOTOGRAPHS");
        if (!folder.isEmpty()) {
            photograph().save(QStringLiteral("%1/%2 (%3).png")
                                  .arg(folder, QTest::currentTestFunction(), QTest::currentDataTag()));
        }
    }

    const PrivateDisplay &m_display;
    PrivateKeyring m_keyring;
    std::unique_ptr<RunningProgram> m_chat;
    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<PrivateCompositor> m_compositor;
    CompositorKind m_kind = CompositorKind::weston;
    Carrier m_carrier = Carrier::ordinary;
    QRect m_droppedAt;
};

int main(int argc, char *argv[])
{
    const PrivateDisplay display(displaySize, WindowManager::none);
    const PrivateSessionBus bus;
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QGuiApplication application(argc, argv);
    WaylandDesktopTest test(display, bus);
    return QTest::qExec(&test, argc, argv);
}

#include "WaylandDesktopTest.moc"
