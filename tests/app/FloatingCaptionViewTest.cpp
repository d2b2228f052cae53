#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/floating/FloatingCaptionReader.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/VirtualClock.h"
#include "support/VisibleItems.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace floatingcaptionviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The panel's content over settings of its own.
struct Fixture
{
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    ViewUnderTest view {"Floating", "FloatingCaptionView",
        QVariantMap {{"settings", QVariant::fromValue(&settings)}}, QSize(820, 180)};

    void show(const QString &source, const QString &translation)
    {
        view.window().rootObject()->setProperty("sourceText", source);
        view.window().rootObject()->setProperty("translationText", translation);
        settle();
    }
    double drawnSize(const char *line) const
    {
        const QQuickItem *drawn = view.find(line)->childItems().constFirst();
        return drawn->property("font").value<QFont>().pixelSize() * drawn->scale();
    }
    int pixelSize(const char *line) const
    {
        return view.find(line)->property("font").value<QFont>().pixelSize();
    }
    /// What a screen reader says of the panel.
    QString read()
    {
        drawFrame(view.window());
        return QAccessible::queryAccessibleInterface(view.window().rootObject())->text(QAccessible::Name);
    }
    /// What a photograph of the panel shows, once it has been drawn anew.
    QImage picture()
    {
        drawFrame(view.window());
        return view.window().grabWindow();
    }
    QRectF geometry(const char *line) const
    {
        const QQuickItem *item = view.find(line);
        return item->mapRectToScene({0, 0, item->width(), item->height()});
    }
};

/// The content of somebody's panel who reads that many lines, after three lines.
struct ReadingFixture : Fixture
{
    FloatingCaptionReader reader {settings, {}};

    explicit ReadingFixture(int lineCount)
    {
        settings.setCaptionLines(lineCount);
        view.window().resize(820, 400);
        std::vector<ReadingLine> said;
        for (int line = 1; line <= 3; ++line) {
            said.push_back({QUuid::createUuid(), QString("%1番目").arg(line), "japanese",
                QString("第%1句").arg(line), true});
        }
        reader.read(said);
        view.window().rootObject()->setProperty("reader", QVariant::fromValue(&reader));
        settle();
    }
    ~ReadingFixture()
    {
        view.window().rootObject()->setProperty(
            "reader", QVariant::fromValue<FloatingCaptionReader *>(nullptr));
    }
    /// From the top to the bottom.
    QList<QQuickItem *> lines()
    {
        drawFrame(view.window());
        QList<QQuickItem *> found;
        QQuickItem *shown = view.find("floatingCaption.line");
        for (QQuickItem *item :
            shown == nullptr ? QList<QQuickItem *>() : shown->parentItem()->childItems()) {
            if (item->objectName() == "floatingCaption.line") {
                found.append(item);
            }
        }
        std::sort(found.begin(), found.end(),
            [](const QQuickItem *one, const QQuickItem *other) { return one->y() < other->y(); });
        return found;
    }
};

/// The same colour but for rounding.
bool isLike(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) <= 2 && std::abs(one.green() - other.green()) <= 2
        && std::abs(one.blue() - other.blue()) <= 2;
}

/// How many pixels of `place` have that colour.
int pixelsLike(const QColor &color, const QImage &picture, const QRect &place)
{
    int found = 0;
    for (int y = place.top(); y < place.bottom(); ++y) {
        for (int x = place.left(); x < place.right(); ++x) {
            found += isLike(picture.pixelColor(x, y), color) ? 1 : 0;
        }
    }
    return found;
}

const char *const source = "floatingCaption.source";
const char *const translation = "floatingCaption.translation";

} // namespace

class FloatingCaptionViewTest : public QObject
{
    Q_OBJECT

private slots:
    void bothLinesAreCentredOneAboveTheOther()
    {
        Fixture f;
        f.show("ちょっと待って", "等一下");
        QCOMPARE(f.view.textOf(source), QString("ちょっと待って"));
        QCOMPARE(f.view.textOf(translation), QString("等一下"));
        QVERIFY(waitUntil([&] { return f.geometry(source).bottom() <= f.geometry(translation).top(); }));
        const QRectF above = f.geometry(source), below = f.geometry(translation);
        QCOMPARE(above.left(), 28.0);
        QCOMPARE(above.right(), 820.0 - 28);
        QVERIFY(std::abs((above.top() + below.bottom()) / 2 - 90) <= 1);
        QCOMPARE(f.pixelSize(source), 20);
        QCOMPARE(f.pixelSize(translation), 34);
    }

    void settingsActAtOnce()
    {
        Fixture f;
        f.show("a", "b");
        f.settings.setCaptionFontSize(20);
        QCOMPARE(f.pixelSize(translation), 20);
        QCOMPARE(f.pixelSize(source), 14);
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
        QVERIFY(!f.view.isShown(source) && f.view.isShown(translation));
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::sourceOnly);
        QVERIFY(f.view.isShown(source) && !f.view.isShown(translation));
        f.settings.setCaptionTheme(FloatingCaptionTheme::light);
        QCOMPARE(f.view.find(source)->property("color").value<QColor>().rgb(), QColor(Qt::black).rgb());
    }

    void anEmptyTranslationKeepsItsHeight()
    {
        Fixture f;
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
        f.show("a", "譯");
        const double height = f.geometry(translation).height();
        f.show("a", "");
        QCOMPARE(f.geometry(translation).height(), height);
        QVERIFY(!f.view.isShown(source));
    }

    void anEmptySourceLeavesNothingButTheBackground()
    {
        Fixture f;
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::sourceOnly);
        f.show("", "譯");
        QVERIFY(!f.view.isShown(source) && !f.view.isShown(translation));
    }

    void aLongTranslationShrinksBeforeItIsCutOff()
    {
        Fixture f;
        f.show("短", QString("這是一句很長的話").repeated(9));
        const int size = f.pixelSize(translation);
        QVERIFY2(size < 34 && size >= std::ceil(34 * 0.58), qPrintable(QString::number(size)));
        QVERIFY(f.view.find(translation)->property("lineCount").toInt() <= 3);
        QVERIFY(f.view.find(translation)->property("isWhole").toBool());
        QVERIFY(f.geometry(translation).bottom() <= 180);
        f.show("短", QString("這是一句很長的話").repeated(60));
        QCOMPARE(f.drawnSize(translation), 34 * 0.58);
        QVERIFY(!f.view.find(translation)->property("isWhole").toBool());
        QVERIFY(f.geometry(translation).bottom() <= 180);
    }

    void thePanelLooksRightInEveryThemeAndMode_data()
    {
        QTest::addColumn<FloatingCaptionTheme>("theme");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("text");
        // Four fifths of the theme's own colour over what lies behind the panel.
        QTest::newRow("dark") << FloatingCaptionTheme::dark << QColor(20, 20, 40) << QColor(Qt::white);
        QTest::newRow("light") << FloatingCaptionTheme::light << QColor(224, 224, 244) << QColor(Qt::black);
        QTest::newRow("glass") << FloatingCaptionTheme::glass << QColor(214, 214, 237) << QColor("#191a20");
    }
    void thePanelLooksRightInEveryThemeAndMode()
    {
        using enum FloatingCaptionDisplayMode;
        QFETCH(FloatingCaptionTheme, theme);
        QFETCH(QColor, background);
        QFETCH(QColor, text);
        Fixture f;
        f.show("ちょっと待って、今のアイデアめちゃくちゃ良くない？", "等一下，剛剛那個點子也太可以了吧？");
        f.view.window().setColor(QColor(100, 100, 200));
        f.settings.setCaptionTheme(theme);
        f.settings.setCaptionOpacity(0.8);
        for (const FloatingCaptionDisplayMode mode : {bilingual, translationOnly, sourceOnly}) {
            f.settings.setCaptionDisplayMode(mode);
            f.view.photograph("panel-" + rawValue(theme) + "-" + rawValue(mode));
            const QImage seen = f.picture();
            QVERIFY2(isLike(seen.pixelColor(410, 8), background), qPrintable(seen.pixelColor(410, 8).name()));
            QCOMPARE(f.view.isShown(source), mode != translationOnly);
            QCOMPARE(f.view.isShown(translation), mode != sourceOnly);
            if (mode != sourceOnly) {
                const int drawn = pixelsLike(text, seen, f.geometry(translation).toRect());
                QVERIFY2(drawn > 500, qPrintable(QString::number(drawn)));
            }
        }
    }

    void theOrderTheFontAndTheLinesFollowTheChoice()
    {
        Fixture f;
        f.show("ちょっと待って", "等一下，剛剛那個點子也太可以了吧？");
        const double height = f.geometry(translation).height();
        f.settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
        QVERIFY(f.geometry(translation).bottom() <= f.geometry(source).top());
        f.settings.setCaptionLineSpacing(1.5);
        QVERIFY(std::abs(f.geometry(translation).height() - 1.5 * height) < 1);
        f.settings.setCaptionLineWidth(0.5);
        QCOMPARE(f.geometry(translation).width(), (820.0 - 2 * 28) / 2);
        QCOMPARE(f.geometry(translation).center().x(), 410.0);
        const auto family = [&](const char *line) {
            return f.view.find(line)->property("font").value<QFont>().family();
        };
        f.view.window().rootObject()->setProperty("sourceLanguage", "japanese");
        QCOMPARE(family(source), QString("Noto Sans CJK JP"));
        QCOMPARE(family(translation), QString("Noto Sans CJK TC"));
        f.settings.setCaptionFont("DejaVu Serif");
        QCOMPARE(family(source), QString("DejaVu Serif"));
        QCOMPARE(family(translation), QString("DejaVu Serif"));
    }

    void linesAreReadFromTheBottom()
    {
        ReadingFixture f(3);
        QVERIFY(!f.view.isShown("floatingCaption.hold"));
        const QList<QQuickItem *> lines = f.lines();
        QCOMPARE(lines.size(), 3);
        double bottom = 0;
        for (const QQuickItem *line : lines) {
            const QRectF place = line->mapRectToScene({0, 0, line->width(), line->height()});
            QVERIFY(place.top() >= bottom);
            bottom = place.bottom();
        }
        QVERIFY(bottom <= 400 - 4 && bottom >= 400 - 30);
        QCOMPARE(lines.back()->property("translationText").toString(), QString("第3句"));
        QCOMPARE(lines.back()->property("sourceLanguage").toString(), QString("japanese"));
    }

    void whatHasNoRoomAsAWholeIsNotShown()
    {
        ReadingFixture f(3);
        for (int height = 96; height <= 420; height += 9) {
            f.view.window().resize(820, height);
            QTRY_COMPARE(f.view.window().height(), height);
            int shown = 0;
            for (const QQuickItem *line : f.lines()) {
                const QRectF place = line->mapRectToScene({0, 0, line->width(), line->height()});
                QVERIFY(line->opacity() == 0 || (place.top() >= 0 && place.bottom() <= height));
                shown += line->opacity() > 0 ? 1 : 0;
            }
            // The newest always.
            QVERIFY(shown >= 1 && f.lines().back()->opacity() == 1);
            QVERIFY(height < 420 || shown == 3);
        }
    }

    void aHeldPageLeadsBackToTheNewestLine()
    {
        ReadingFixture f(2);
        f.view.window().rootObject()->setProperty("isInteractive", true);
        QVERIFY(!f.view.isShown("floatingCaption.newest"));
        f.reader.turnWheel(120);
        QVERIFY(waitUntil([&] { return f.view.isShown("floatingCaption.newest"); }));
        QCOMPARE(f.view.textOf("floatingCaption.newest"), QString("最新 · 還有 1 句"));
        QCOMPARE(f.lines().back()->property("translationText").toString(), QString("第2句"));
        QVERIFY(f.view.click("floatingCaption.newest"));
        QVERIFY(!f.reader.isHeld());
        QCOMPARE(f.lines().back()->property("translationText").toString(), QString("第3句"));
    }

    void theWheelAndThePauseButtonWorkOnThePanel()
    {
        ReadingFixture f(2);
        f.view.window().rootObject()->setProperty("isInteractive", true);
        const QPointF middle(410, 200);
        QWheelEvent back(middle, f.view.window().mapToGlobal(middle), {}, {0, 120}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QGuiApplication::sendEvent(&f.view.window(), &back);
        QCOMPARE(f.reader.waiting(), 1);
        f.reader.follow();
        QTest::mouseMove(&f.view.window(), middle.toPoint());
        QVERIFY(waitUntil([&] { return f.view.isShown("floatingCaption.hold"); }));
        QVERIFY(f.view.click("floatingCaption.hold"));
        QVERIFY(f.reader.isHeld());
        QCOMPARE(f.reader.waiting(), 0);
        QVERIFY(waitUntil([&] { return f.view.isShown("floatingCaption.newest"); }));
        QCOMPARE(f.view.textOf("floatingCaption.newest"), QString("最新"));
    }

    void everyButtonSaysWhatItDoesUntilItIsPressed_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<int>("turned");
        QTest::addColumn<QString>("help");
        QTest::newRow("floatingCaption.hold") << QSize(820, 400) << 0 << "暫停浮動字幕";
        QTest::newRow("floatingCaption.newest") << QSize(820, 400) << 120 << "回到最新一句";
        QTest::newRow("floatingCaption.grow") << QSize(360, 96) << 0 << "放大面板，顯示整句字幕";
    }
    void everyButtonSaysWhatItDoesUntilItIsPressed()
    {
        QFETCH(const QSize, panel);
        QFETCH(const int, turned);
        QFETCH(const QString, help);
        ReadingFixture f(2);
        QQuickWindow &window = f.view.window();
        hurryTooltips(window);
        f.view.window().rootObject()->setProperty("isInteractive", true);
        window.resize(panel);
        QTRY_COMPARE(window.size(), panel);
        f.reader.turnWheel(turned);
        QTest::mouseMove(&window, {panel.width() / 2, panel.height() / 2});
        QVERIFY(waitUntil([&] { return f.view.isShown(QTest::currentDataTag()); }));
        QCOMPARE(shownTooltip(window), "");
        drawFrame(window);
        const QQuickItem *button = f.view.find(QTest::currentDataTag());
        const QPoint there = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
        QTest::mouseMove(&window, there);
        QVERIFY(waitUntil([&] { return shownTooltip(window) == help; }));
        QTest::mousePress(&window, Qt::LeftButton, {}, there);
        QVERIFY(waitUntil([&] { return shownTooltip(window).isEmpty(); }));
        QTest::mouseRelease(&window, Qt::LeftButton, {}, there);
        settle();
        drawFrame(window);
        QCOMPARE(shownTooltip(window), "");
    }

    void aScreenReaderReadsWhatIsShown()
    {
        Fixture f;
        f.show("原", "譯");
        QCOMPARE(f.read(), "原\n譯");
        f.settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
        QCOMPARE(f.read(), "譯\n原");
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::sourceOnly);
        QCOMPARE(f.read(), "原");
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
        f.show("原", "");
        QCOMPARE(f.read(), "");
    }

    void aScreenReaderReadsAllLinesOfAPage()
    {
        ReadingFixture f(2);
        QCOMPARE(f.read(), "2番目\n第2句\n3番目\n第3句");
        f.settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
        QCOMPARE(f.read(), "第2句\n2番目\n第3句\n3番目");
        f.settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
        QCOMPARE(f.read(), "第2句\n第3句");
        f.reader.turnWheel(120);
        QCOMPARE(f.read(), "第1句\n第2句");
        f.reader.follow();
        // The older line has no room any more.
        f.view.window().resize(820, 80);
        QTRY_COMPARE(f.view.window().height(), 80);
        QCOMPARE(f.read(), "第3句");
        f.settings.setCaptionLines(0);
        f.show("a", "b");
        QCOMPARE(f.read(), "b");
    }

    void inSilenceTheTextsLeaveAndTheCardStays()
    {
        Fixture f;
        auto clock = std::make_shared<VirtualClock>();
        FloatingCaptionReader reader(f.settings, clock);
        f.settings.setCaptionSilence(5);
        f.settings.setCaptionOpacity(1);
        f.view.window().rootObject()->setProperty("reader", QVariant::fromValue(&reader));
        reader.noteSaid("a", "b");
        f.show("原", "譯");
        QVERIFY(pixelsLike(Qt::white, f.picture(), QRect(300, 40, 220, 100)) > 50);
        QCOMPARE(f.read(), "原\n譯");
        clock->advance(std::chrono::seconds(5));
        QCOMPARE(f.read(), "");
        QVERIFY(waitUntil(
            [&] { return pixelsLike(Qt::black, f.picture(), QRect(300, 40, 221, 101)) == 220 * 100; }));
        reader.noteSaid("c", "d");
        QVERIFY(waitUntil([&] { return pixelsLike(Qt::white, f.picture(), QRect(300, 40, 220, 100)) > 50; }));
        f.view.window().rootObject()->setProperty(
            "reader", QVariant::fromValue<FloatingCaptionReader *>(nullptr));
    }

    void aSizeIsDrawnAsItWasChosen()
    {
        Fixture f;
        f.settings.setCaptionFontSize(40);
        f.show("字", "譯");
        QCOMPARE(f.drawnSize(source), 23.2);
        f.settings.setCaptionFontSize(31.4);
        QCOMPARE(f.drawnSize(translation), 31.4);
        f.settings.setCaptionFontSize(30);
        const double small = f.geometry(translation).height();
        f.settings.setCaptionFontSize(30.4);
        QVERIFY(f.geometry(translation).height() > small);
    }

    void largeCaptionsAreNeverCutThrough_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<bool>("showsSource");
        QTest::newRow("the smallest panel") << QSize(360, 96) << false;
        QTest::newRow("a low one") << QSize(820, 96) << false;
        QTest::newRow("the usual one") << QSize(820, 180) << true;
    }
    void largeCaptionsAreNeverCutThrough()
    {
        QFETCH(QSize, panel);
        Fixture f;
        f.view.window().resize(panel);
        f.settings.setCaptionFontSize(72);
        f.show(QString("ちょっと待って、今のアイデア").repeated(6),
            QString("等一下，剛剛那個點子").repeated(6) + "結尾");
        QTRY_COMPARE(f.view.window().size(), panel);
        QTEST(f.view.isShown(source), "showsSource");
        QVERIFY(f.view.find(translation)->property("shownText").toString().endsWith("結尾"));
        QVERIFY(QRectF(QPointF(), panel).contains(f.geometry(translation)));
        // Not even a shadow of a line is at the upper and lower edges.
        f.settings.setCaptionOpacity(1);
        f.settings.setCaptionTheme(FloatingCaptionTheme::dark);
        const QImage seen = f.picture();
        const int middle = panel.width() / 2;
        for (const int y : {1, 2, panel.height() - 3, panel.height() - 2}) {
            QCOMPARE(pixelsLike(Qt::black, seen, QRect(20, y, 2 * middle - 40, 2)), 2 * middle - 41);
        }
    }

    void aPanelThatIsTooSmallOffersToGrow()
    {
        Fixture f;
        QQuickItem *view = f.view.window().rootObject();
        f.view.window().resize(360, 96);
        f.settings.setCaptionFontSize(72);
        f.show("ちょっと待って", "等一下，剛剛那個點子也太可以了吧？");
        // Nobody could make it larger.
        QVERIFY(!f.view.isShown("floatingCaption.grow"));
        QSignalSpy wanted(view, SIGNAL(growWanted(double)));
        view->setProperty("isInteractive", true);
        QVERIFY(f.view.click("floatingCaption.grow"));
        QCOMPARE(wanted.count(), 1);
        const double height = wanted.first().first().toDouble();
        QVERIFY2(height > 200 && height <= 520, qPrintable(QString::number(height)));
        f.view.window().resize(360, int(std::ceil(height)));
        QVERIFY(waitUntil([&] { return !f.view.isShown("floatingCaption.grow"); }));
        QVERIFY(f.view.isShown(source));
        QVERIFY(f.view.find(translation)->property("isWhole").toBool());
    }
};

LUMAPHONE_OFFSCREEN_TEST(FloatingCaptionViewTest)

} // namespace floatingcaptionviewtest

#include "FloatingCaptionViewTest.moc"
