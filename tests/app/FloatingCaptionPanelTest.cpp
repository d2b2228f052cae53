#include "app/floating/FloatingCaptionPanel.h"

#include "app/OnPrivateDisplay.h"
#include "app/floating/FloatingCaptionPlacement.h"
#include "support/Coroutines.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Windows = std::vector<uint32_t>;
template<typename Reply> using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

const QColor panelColor("#c02040");
const QColor otherColor("#20c060");

/// What the display knows of its windows.
class Desktop
{
public:
    xcb_atom_t atom(const QByteArray &name) const
    {
        const Answer<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_connection,
                xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData()), nullptr),
            &std::free);
        return reply->atom;
    }
    Windows property(uint32_t window, const QByteArray &name) const
    {
        const Answer<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection,
                xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 1000), nullptr),
            &std::free);
        const auto *values = static_cast<uint32_t *>(xcb_get_property_value(reply.get()));
        return {values, values + xcb_get_property_value_length(reply.get()) / 4};
    }
    Windows property(const QByteArray &name) const { return property(root(), name); }
    /// Top-level windows and frames of the window manager, from the bottom up.
    Windows stacking() const
    {
        const auto reply = tree(root());
        const auto *children = xcb_query_tree_children(reply.get());
        return {children, children + xcb_query_tree_children_length(reply.get())};
    }
    qsizetype heightOf(const QWindow &window) const
    {
        uint32_t topLevel = uint32_t(window.winId());
        while (tree(topLevel)->parent != root()) {
            topLevel = tree(topLevel)->parent;
        }
        const Windows all = stacking();
        return std::find(all.begin(), all.end(), topLevel) - all.begin();
    }
    bool isMapped(const QWindow &window) const
    {
        const Answer<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, uint32_t(window.winId())), nullptr),
            &std::free);
        return reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    uint32_t inputFocus() const
    {
        const Answer<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr), &std::free);
        return reply->focus;
    }
    /// As a photograph of the screen shows it.
    static QColor colorAt(const QPoint &point)
    {
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, point.x(), point.y(), 1, 1)
            .toImage()
            .pixelColor(0, 0);
    }

private:
    uint32_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root; }
    Answer<xcb_query_tree_reply_t> tree(uint32_t window) const
    {
        return {
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr), &std::free};
    }

    xcb_connection_t *m_connection
        = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
};

QUrl coloredView(const QTemporaryDir &folder, const QColor &color)
{
    QFile file(folder.filePath(color.name().mid(1) + ".qml"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("import QtQuick\nRectangle { color: \"" + color.name().toUtf8()
            + "\"; property string sourceText; property string translationText }");
    }
    return QUrl::fromLocalFile(file.fileName());
}

/// An open panel, and another window that lies around its middle.
struct Fixture
{
    QTemporaryDir folder;
    QQmlEngine engine;
    Desktop desktop;
    FloatingCaptionPanel panel {engine, coloredView(folder, panelColor), {}};
    QQuickView other {&engine, nullptr};

    Fixture()
    {
        panel.setGeometry(300, 500, 820, 180);
        other.setResizeMode(QQuickView::SizeRootObjectToView);
        other.setSource(coloredView(folder, otherColor));
        other.setGeometry(200, 300, 1000, 500);
        panel.orderFront();
    }
    bool openOther()
    {
        other.show();
        return waitUntil([&] { return isActive() && panelIsShown(); });
    }
    bool isActive() const
    {
        return desktop.property("_NET_ACTIVE_WINDOW") == Windows {uint32_t(other.winId())};
    }
    bool panelIsShown() const { return Desktop::colorAt(panel.geometry().center()) == panelColor; }
    bool panelIsOnTop() const { return panelIsShown() && desktop.heightOf(panel) > desktop.heightOf(other); }
};

} // namespace

class FloatingCaptionPanelTest : public QObject
{
    Q_OBJECT

public:
    explicit FloatingCaptionPanelTest(const PrivateDisplay &display)
        : m_display(display)
    {
    }

private slots:
    void init()
    {
        m_display.control({"mousemove", "5", "5"});
        m_display.control({"set_desktop", "0"});
    }

    void aWindowThatIsRaisedStaysBelow()
    {
        Fixture f;
        QVERIFY(f.openOther());
        f.other.raise();
        f.other.requestActivate();
        QVERIFY(waitUntil(
            [&] { return Desktop::colorAt(f.other.geometry().topLeft() + QPoint(5, 5)) == otherColor; }));
        QVERIFY(f.panelIsOnTop());
    }

    void aFullScreenWindowInUseStaysBelow()
    {
        Fixture f;
        QVERIFY(f.openOther());
        f.other.showFullScreen();
        const QSize wholeScreen = QGuiApplication::primaryScreen()->size();
        QVERIFY(waitUntil([&] { return f.isActive() && f.other.size() == wholeScreen; }));
        QVERIFY(waitUntil([&] { return Desktop::colorAt({1, 1}) == otherColor; }));
        QVERIFY(f.panelIsOnTop());
        f.other.requestActivate();
        f.other.raise();
        settle();
        QVERIFY(f.panelIsOnTop());
    }

    void aMenuOpenedAboveThePanelStaysVisible()
    {
        Fixture f;
        f.other.setFlags(Qt::Popup);
        f.other.setGeometry(f.panel.geometry());
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
        f.other.show();
        QVERIFY(waitUntil([&] { return !f.panelIsShown(); }));
        f.panel.setTexts("a", {}, "b");
        f.panel.orderFront();
        settle();
        QVERIFY(!f.panelIsShown());
        f.other.hide();
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
    }

    void thePanelIsOnEveryDesktop()
    {
        Fixture f;
        QVERIFY(f.openOther());
        m_display.control({"set_desktop", "2"});
        QVERIFY(waitUntil([&] { return !f.desktop.isMapped(f.other); }));
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
        QVERIFY(f.desktop.isMapped(f.panel));
    }

    void noTaskBarOrPagerListsThePanel()
    {
        Fixture f;
        QVERIFY(f.openOther());
        for (const char *list : {"_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING"}) {
            QCOMPARE(f.desktop.property(list), Windows {uint32_t(f.other.winId())});
        }
        const Windows states = f.desktop.property(uint32_t(f.panel.winId()), "_NET_WM_STATE");
        for (const char *state : {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                 "_NET_WM_STATE_SKIP_PAGER"}) {
            QVERIFY2(std::count(states.begin(), states.end(), f.desktop.atom(state)) == 1, state);
        }
        QCOMPARE(f.desktop.property(uint32_t(f.panel.winId()), "_NET_WM_DESKTOP"), Windows {0xFFFFFFFF});
        QCOMPARE(f.desktop.property(uint32_t(f.panel.winId()), "_NET_WM_BYPASS_COMPOSITOR"), Windows {2});
        QCOMPARE(f.desktop.property(uint32_t(f.panel.winId()), "_NET_WM_WINDOW_TYPE").front(),
            f.desktop.atom("_KDE_NET_WM_WINDOW_TYPE_ON_SCREEN_DISPLAY"));
    }

    void thePanelNeverTakesTheFocus()
    {
        Fixture f;
        QVERIFY(f.openOther());
        const uint32_t focused = f.desktop.inputFocus();
        const QPoint center = f.panel.geometry().center();
        QSignalSpy moves(&f.panel, &FloatingCaptionPanel::moved);
        m_display.control({"mousemove", QString::number(center.x()), QString::number(center.y()), "mousedown",
            "1", "mousemove_relative", "--", "-20", "0", "mouseup", "1"});
        QVERIFY(waitUntil([&] { return moves.count() > 0; }));
        f.panel.orderFront();
        f.panel.setTexts("a", {}, "b");
        settle();
        QVERIFY(f.isActive());
        QCOMPARE(f.desktop.inputFocus(), focused);
        QCOMPARE(QGuiApplication::focusWindow(), static_cast<QWindow *>(&f.other));
        const Windows hints = f.desktop.property(uint32_t(f.panel.winId()), "WM_HINTS");
        QVERIFY((hints[0] & 1) != 0); // the hint about input is there
        QCOMPARE(hints[1], 0U);
    }

    void thePointerMovesAndResizesThePanel_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QRect>("result");
        QTest::newRow("by its background") << QPoint(400, 90) << QRect(340, 530, 820, 180);
        QTest::newRow("at its lower right corner") << QPoint(818, 178) << QRect(300, 500, 860, 210);
        QTest::newRow("at its left edge") << QPoint(2, 90) << QRect(340, 500, 780, 180);
        QTest::newRow("at its upper edge") << QPoint(400, 2) << QRect(300, 530, 820, 150);
    }
    void thePointerMovesAndResizesThePanel()
    {
        QFETCH(QPoint, from);
        QFETCH(QRect, result);
        Fixture f;
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
        const QPoint start = f.panel.geometry().topLeft() + from;
        m_display.control({"mousemove", QString::number(start.x()), QString::number(start.y()), "mousedown",
            "1", "mousemove_relative", "20", "10", "mousemove_relative", "20", "20", "mouseup", "1"});
        QVERIFY(waitUntil([&] { return f.panel.geometry() == result; }));
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
        // Once released it stays.
        m_display.control({"mousemove_relative", "--", "-60", "-60"});
        settle();
        QCOMPARE(f.panel.geometry(), result);
    }

    void thePointerTellsWhatADragWillDo()
    {
        Fixture f;
        QVERIFY(waitUntil([&] { return f.panelIsShown(); }));
        const auto pointAt = [&](const QPoint &position) {
            const QPoint point = f.panel.geometry().topLeft() + position;
            m_display.control({"mousemove", QString::number(point.x()), QString::number(point.y())});
        };
        pointAt({818, 90});
        QVERIFY(waitUntil([&] { return f.panel.cursor().shape() == Qt::SizeHorCursor; }));
        pointAt({400, 90});
        QVERIFY(waitUntil([&] { return f.panel.cursor().shape() == Qt::ArrowCursor; }));
    }

private:
    const PrivateDisplay &m_display;
};

int main(int argc, char *argv[])
{
    return runOnPrivateDisplay<FloatingCaptionPanelTest>(argc, argv);
}

#include "FloatingCaptionPanelTest.moc"
