#include "app/floating/FloatingCaptionWindowController.h"

#include "app/floating/FloatingCaptionPlacement.h"
#include "base/RectangleText.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/PrivateRuntimeFolder.h"
#include "support/VirtualClock.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const auto frameKey = QStringLiteral("lumaphone.caption.frame");

/// A desktop on which the panel lies within an output, or where the desktop itself puts it.
class StubPanelSurface final : public PanelSurface
{
public:
    StubPanelSurface(QQuickWindow &panel, PanelPlacing placing)
        : m_panel(panel)
        , m_placing(placing)
    {
    }
    PanelPlacing placing() const override { return m_placing; }
    QRect frame() const override { return m_panel.geometry(); }
    void setFrame(const QRect &frame) override { m_panel.setGeometry(frame); }
    std::optional<QRect> bounds() const override { return std::nullopt; }
    std::optional<QPoint> beginDrag(const QMouseEvent &, Qt::Edges) override { return std::nullopt; }
    std::optional<QPoint> pointer(const QMouseEvent &) override { return std::nullopt; }
    QPoint endDrag(const QMouseEvent &) override { return {}; }

private:
    QQuickWindow &m_panel;
    PanelPlacing m_placing;
};

/// A controller whose panels show an item that holds the two texts.
struct Fixture
{
    QTemporaryDir folder;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    QQmlEngine engine;
    int panelsMade = 0;
    PanelPlacing placing = PanelPlacing::anywhere;
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    FloatingCaptionWindowController controller {
        settings, clock, [this] {
            ++panelsMade;
            return std::make_unique<FloatingCaptionPanel>(engine, view(), QVariantMap(),
                [this](QQuickWindow &panel) { return std::make_unique<StubPanelSurface>(panel, placing); });
        }};

    QUrl view() const
    {
        QFile file(folder.filePath("View.qml"));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(
                "import QtQuick\nItem { property string sourceText; property string translationText }");
        }
        return QUrl::fromLocalFile(file.fileName());
    }
    QString shown(const char *property) const
    {
        return controller.panel()->rootObject()->property(property).toString();
    }
    std::optional<QString> storedFrame() const { return defaults.string(frameKey); }
    QRectF frame() const
    {
        return floatingcaption::upwards(
            controller.panel()->geometry(), QGuiApplication::primaryScreen()->geometry());
    }
};

} // namespace

class FloatingCaptionWindowControllerTest : public QObject
{
    Q_OBJECT

private slots:
    void aClosedPanelHasNoTexts()
    {
        const Fixture f;
        QVERIFY(!f.controller.isOpen());
        QCOMPARE(f.controller.currentSourceText(), QString());
        QCOMPARE(f.controller.currentTranslationText(), QString());
        QCOMPARE(f.panelsMade, 0);
    }

    void theFirstTextsOpenThePanel()
    {
        Fixture f;
        QSignalSpy opened(&f.controller, &FloatingCaptionWindowController::isOpenChanged);
        f.controller.show("原文", "譯文");
        QVERIFY(f.controller.isOpen());
        QCOMPARE(opened.count(), 1);
        QVERIFY(f.controller.panel()->isVisible());
        QCOMPARE(f.shown("sourceText"), QString("原文"));
        QCOMPARE(f.shown("translationText"), QString("譯文"));
        QCOMPARE(f.controller.currentSourceText(), QString("原文"));
        QCOMPARE(f.controller.currentTranslationText(), QString("譯文"));
    }

    void whatWasSaidGetsTheGlyphsOfItsLanguage()
    {
        Fixture f;
        f.controller.showSpoken("直ちに", AppleSystemSpeechLanguage::japanese, "立刻");
        QCOMPARE(f.shown("sourceText"), QString("直ちに"));
        QCOMPARE(f.shown("sourceLanguage"), QString("japanese"));
        f.controller.show("Apple Translation 無法完成", "請再試一次");
        QCOMPARE(f.shown("sourceLanguage"), QString());
    }

    void laterTextsGoIntoTheSameContent()
    {
        Fixture f;
        f.controller.show("a", "b");
        const QQuickItem *content = f.controller.panel()->rootObject();
        const FloatingCaptionPanel *panel = f.controller.panel();
        QSignalSpy opened(&f.controller, &FloatingCaptionWindowController::isOpenChanged);
        f.controller.show("c", "d");
        QCOMPARE(f.controller.panel(), panel);
        QCOMPARE(panel->rootObject(), content);
        QCOMPARE(f.shown("translationText"), QString("d"));
        QCOMPARE(f.panelsMade, 1);
        QCOMPARE(opened.count(), 0);
    }

    void thePanelIsWhatItHasToBe()
    {
        Fixture f;
        f.controller.show("a", "b");
        const FloatingCaptionPanel &panel = *f.controller.panel();
        QCOMPARE(panel.title(), QString("Lumaphone Floating Captions"));
        QCOMPARE(panel.size(), QSize(820, 180));
        QCOMPARE(panel.minimumSize(), QSize(360, 96));
        QCOMPARE(panel.maximumSize(), QSize(1280, 520));
        QCOMPARE(panel.color(), QColor(Qt::transparent));
        for (const auto flag : {Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint,
                 Qt::WindowDoesNotAcceptFocus, Qt::NoDropShadowWindowHint, Qt::BypassWindowManagerHint}) {
            QVERIFY(panel.flags().testFlag(flag));
        }
    }

    void closingEmptiesTheTexts()
    {
        Fixture f;
        f.controller.show("a", "b");
        QSignalSpy changes(&f.controller, &FloatingCaptionWindowController::isOpenChanged);
        f.controller.close();
        QVERIFY(!f.controller.isOpen());
        QCOMPARE(f.controller.currentSourceText(), QString());
        QCOMPARE(f.controller.currentTranslationText(), QString());
        QCOMPARE(changes.count(), 1);
        f.controller.close();
        QCOMPARE(changes.count(), 1);
    }

    void thePanelClosedByTheUserIsForgotten()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->close();
        QVERIFY(!f.controller.isOpen());
        QCOMPARE(f.controller.currentTranslationText(), QString());
        f.controller.show("c", "d");
        QCOMPARE(f.panelsMade, 2);
        QCOMPARE(f.shown("sourceText"), QString("c"));
    }

    void togglingTwiceOpensAndCloses()
    {
        Fixture f;
        f.controller.toggle();
        QVERIFY(f.controller.isOpen());
        QCOMPARE(f.controller.currentSourceText(), QString("Lumaphone 已經準備好浮在畫面上。"));
        QCOMPARE(
            f.controller.currentTranslationText(), QString("播放影片或會議聲音後，字幕會在這裡即時更新。"));
        f.controller.toggle();
        QVERIFY(!f.controller.isOpen());
    }

    void withoutAStoredFrameThePanelIsCentredLow()
    {
        Fixture f;
        f.controller.show("a", "b");
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRectF visible
            = floatingcaption::upwards(QGuiApplication::primaryScreen()->availableGeometry(), screen);
        const QRectF expected(floatingcaption::initialOrigin(visible, {820, 180}), QSizeF(820, 180));
        QCOMPARE(f.controller.panel()->geometry(), floatingcaption::downwards(expected, screen));
    }

    void aStoredFrameIsRestoredExactly_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("on the screen") << "{{40, 60}, {700, 200}}";
        QTest::newRow("off every screen") << "{{-9000, 12000}, {700, 200}}";
        QTest::newRow("a spelling of another program") << "{{ 40,60 },{ 700,200 }}";
    }
    void aStoredFrameIsRestoredExactly()
    {
        QFETCH(QString, stored);
        Fixture f;
        f.defaults.values[frameKey] = stored;
        f.controller.show("a", "b");
        QCOMPARE(f.frame(), rectangleFromText(stored));
    }

    void aStoredTextThatIsNoFrameCountsAsNone_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("empty") << "";
        QTest::newRow("no numbers") << "somewhere";
        QTest::newRow("without size") << "{{40, 60}, {0, 0}}";
        QTest::newRow("turned inside out") << "{{40, 60}, {-700, 200}}";
    }
    void aStoredTextThatIsNoFrameCountsAsNone()
    {
        QFETCH(QString, stored);
        Fixture f;
        f.controller.show("a", "b");
        const QRect expected = f.controller.panel()->geometry();
        f.controller.close();
        f.defaults.values[frameKey] = stored;
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->geometry(), expected);
    }

    void openingStoresNoFrame()
    {
        Fixture f;
        f.controller.show("a", "b");
        settle();
        f.controller.close();
        QVERIFY(!f.storedFrame());
    }

    void movingAndResizingStoreTheFrame()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->setGeometry(30, 40, 500, 120);
        QVERIFY(waitUntil([&] { return f.storedFrame().has_value(); }));
        const int screenHeight = QGuiApplication::primaryScreen()->geometry().height();
        QCOMPARE(*f.storedFrame(), QString("{{30, %1}, {500, 120}}").arg(screenHeight - 40 - 120));
        QCOMPARE(f.defaults.writes, QStringList(frameKey));
        f.controller.panel()->resize(510, 130);
        QVERIFY(waitUntil([&] { return f.storedFrame()->endsWith("{510, 130}}"); }));
    }

    void aMoveJustBeforeTheEndIsStored()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->setPosition(77, 88);
        settle();
        f.controller.close();
        QVERIFY(f.storedFrame() && f.storedFrame()->startsWith("{{77, "));
    }

    void theNextPanelLiesWhereTheLastOneWas()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->setGeometry(30, 40, 500, 120);
        settle();
        f.controller.close();
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->geometry(), QRect(30, 40, 500, 120));
    }

    void whereTheDesktopPlacesThePanelOnlyItsSizeIsStored()
    {
        Fixture f;
        f.placing = PanelPlacing::byDesktop;
        f.defaults.values[frameKey] = QString("{{40, 60}, {700, 200}}");
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->size(), QSize(700, 200));
        f.controller.panel()->setGeometry(0, 0, 600, 150);
        settle();
        f.controller.close();
        QCOMPARE(*f.storedFrame(), QString("{{40, 60}, {600, 150}}"));
    }

    void whereThePanelIsBoundToAnOutputEachHasAPlaceForIt()
    {
        Fixture f;
        f.placing = PanelPlacing::withinOutput;
        const QScreen &first = *QGuiApplication::screens().at(0);
        QScreen &second = *QGuiApplication::screens().at(1);
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->screen(), &first);
        f.controller.panel()->setGeometry(30, 40, 500, 120);
        QVERIFY(waitUntil([&] { return f.defaults.string("lumaphone.caption.output") == first.name(); }));
        QCOMPARE(f.defaults.string(frameKey + "." + first.name()), QString("{{30, 440}, {500, 120}}"));

        // Dropped over the edge of the second one, it goes there and lies within.
        emit f.controller.panel()->droppedElsewhere(&second, QRect(1100, -20, 500, 120));
        QCOMPARE(f.panelsMade, 2);
        QCOMPARE(f.controller.panel()->screen(), &second);
        QCOMPARE(f.controller.panel()->geometry(), QRect(1100, 0, 500, 120));
        QCOMPARE(f.shown("sourceText"), QString("a"));
        QCOMPARE(f.shown("translationText"), QString("b"));
        QVERIFY(f.controller.panel()->isVisible());
        QCOMPARE(f.defaults.string("lumaphone.caption.output"), second.name());
        QCOMPARE(f.defaults.string(frameKey + "." + second.name()), QString("{{300, 380}, {500, 120}}"));
        QVERIFY(!f.storedFrame());

        // The next one opens there; on the first output there is still the place of old.
        f.controller.close();
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->geometry(), QRect(1100, 0, 500, 120));
        f.controller.close();
        f.defaults.values["lumaphone.caption.output"] = first.name();
        f.controller.show("a", "b");
        QCOMPARE(f.controller.panel()->geometry(), QRect(30, 40, 500, 120));
    }

    void anOutputThatIsNotThereIsReplaced()
    {
        Fixture f;
        f.placing = PanelPlacing::withinOutput;
        f.defaults.values["lumaphone.caption.output"] = QString("gone");
        f.defaults.values[frameKey + ".gone"] = QString("{{1, 2}, {500, 120}}");
        f.controller.show("a", "b");
        const QScreen &screen = *QGuiApplication::primaryScreen();
        QCOMPARE(f.controller.panel()->screen(), &screen);
        QVERIFY(screen.geometry().contains(f.controller.panel()->geometry()));
        f.controller.close();
        QCOMPARE(f.defaults.string("lumaphone.caption.output"), QString("gone"));
    }

    void anotherWindowNeverChangesTheStoredFrame()
    {
        Fixture f;
        f.controller.show("a", "b");
        QWindow other;
        other.setGeometry(1, 2, 300, 200);
        other.show();
        other.setPosition(50, 60);
        settle();
        f.controller.close();
        QVERIFY(!f.storedFrame());
    }

    void thePanelMakesRoomForADialogAndComesBack()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->setGeometry(100, 400, 500, 120);
        QVERIFY(waitUntil([&] { return f.storedFrame().has_value(); }));
        const QString stored = *f.storedFrame();
        f.controller.setDialogs({QRectF(200, 300, 300, 200)});
        QCOMPARE(f.controller.panel()->geometry(), QRect(100, 172, 500, 120));
        f.controller.setDialogs({QRectF(0, 0, 250, 200), QRectF(200, 300, 300, 190)});
        QCOMPARE(f.controller.panel()->geometry(), QRect(258, 172, 500, 120));
        f.controller.setDialogs({});
        QCOMPARE(f.controller.panel()->geometry(), QRect(100, 400, 500, 120));
        settle();
        f.controller.close();
        QCOMPARE(*f.storedFrame(), stored);
    }

    void withoutRoomThePanelIsHiddenWhileADialogIsOpen_data()
    {
        QTest::addColumn<PanelPlacing>("placing");
        QTest::addColumn<QRectF>("dialog");
        QTest::newRow("nowhere beside it") << PanelPlacing::anywhere << QRectF(90, 90, 620, 420);
        QTest::newRow("a dialog that lies anywhere") << PanelPlacing::anywhere << QRectF();
        QTest::newRow("windows that lie anywhere") << PanelPlacing::withinOutput << QRectF(0, 0, 10, 10);
    }
    void withoutRoomThePanelIsHiddenWhileADialogIsOpen()
    {
        QFETCH(PanelPlacing, placing);
        QFETCH(QRectF, dialog);
        Fixture f;
        f.placing = placing;
        f.controller.show("a", "b");
        f.controller.panel()->setFrame({100, 200, 500, 120});
        f.controller.setDialogs({dialog});
        QVERIFY(!f.controller.panel()->isVisible());
        // Captions go on behind it.
        f.controller.show("c", "d");
        QVERIFY(f.controller.isOpen());
        QVERIFY(!f.controller.panel()->isVisible());
        f.controller.setDialogs({});
        QVERIFY(f.controller.panel()->isVisible());
        QCOMPARE(f.controller.panel()->geometry(), QRect(100, 200, 500, 120));
        QCOMPARE(f.shown("sourceText"), QString("c"));
    }

    void aPanelOpenedBesideADialogIsHiddenFromTheBeginning()
    {
        Fixture f;
        f.controller.setDialogs({QRectF()});
        f.controller.show("a", "b");
        QVERIFY(!f.controller.panel()->isVisible());
        f.controller.close();
        QVERIFY(!f.controller.isOpen());
        f.controller.show("a", "b");
        f.controller.setDialogs({});
        QVERIFY(f.controller.panel()->isVisible());
    }

    void wherePutByTheUserBesideADialogThePanelStays()
    {
        Fixture f;
        f.controller.show("a", "b");
        f.controller.panel()->setGeometry(100, 400, 500, 120);
        f.controller.setDialogs({QRectF(200, 300, 300, 200)});
        f.controller.panel()->setGeometry(290, 10, 500, 120);
        settle();
        f.controller.setDialogs({});
        QCOMPARE(f.controller.panel()->geometry(), QRect(290, 10, 500, 120));
        QVERIFY(waitUntil([&] { return f.storedFrame() && f.storedFrame()->startsWith("{{290, "); }));
    }

    void whereTheDesktopPlacesThePanelItStays()
    {
        Fixture f;
        f.placing = PanelPlacing::byDesktop;
        f.controller.show("a", "b");
        f.controller.setDialogs({QRectF()});
        QVERIFY(f.controller.panel()->isVisible());
    }

    void anEndedProgramHasStoredTheLastMove()
    {
        Fixture f;
        auto controller = std::make_unique<FloatingCaptionWindowController>(f.settings, f.clock,
            [&] { return std::make_unique<FloatingCaptionPanel>(f.engine, f.view(), QVariantMap()); });
        controller->show("a", "b");
        controller->panel()->setPosition(77, 88);
        settle();
        controller.reset();
        QVERIFY(f.storedFrame() && f.storedFrame()->startsWith("{{77, "));
    }
};

int main(int argc, char *argv[])
{
    const PrivateRuntimeFolder runtimeFolder;
    const QString screens = runtimeFolder.path() + "/screens.json";
    QFile file(screens);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(R"({"screens": [
            {"name": "first", "x": 0, "y": 0, "width": 800, "height": 600, "logicalDpi": 96, "dpr": 1},
            {"name": "second", "x": 800, "y": 0, "width": 1000, "height": 500, "logicalDpi": 96, "dpr": 1}
        ]})")
            < 0) {
        return 1;
    }
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.toUtf8());
    const QGuiApplication application(argc, argv);
    FloatingCaptionWindowControllerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FloatingCaptionWindowControllerTest.moc"
