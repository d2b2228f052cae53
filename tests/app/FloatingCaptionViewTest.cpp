#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/floating/CaptionLineFit.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/VisibleItems.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

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
    int pixelSize(const char *line) const
    {
        return view.find(line)->property("font").value<QFont>().pixelSize();
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
        QVERIFY(!f.view.find(translation)->property("truncated").toBool());
        QVERIFY(f.geometry(translation).bottom() <= 180);
        f.show("短", QString("這是一句很長的話").repeated(60));
        QCOMPARE(f.pixelSize(translation), int(std::ceil(34 * 0.58)));
        QVERIFY(f.view.find(translation)->property("truncated").toBool());
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

    void aTextFitsItsBounds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QSizeF>("available");
        QTest::addColumn<int>("atLeast");
        QTest::addColumn<int>("atMost");
        const QString word = "字";
        QTest::newRow("plenty of room") << word << 1 << QSizeF(500, 500) << 40 << 40;
        QTest::newRow("empty") << "" << 1 << QSizeF(500, 500) << 40 << 40;
        QTest::newRow("two lines' worth in one") << word.repeated(15) << 1 << QSizeF(500, 500) << 32 << 34;
        QTest::newRow("never too small") << word.repeated(900) << 1 << QSizeF(500, 500) << 24 << 24;
        QTest::newRow("too low") << word << 3 << QSizeF(500, 42) << 24 << 30;
        QTest::newRow("own line breaks count") << "字\n字\n字" << 2 << QSizeF(500, 500) << 24 << 24;
        QTest::newRow("no room at all") << word << 1 << QSizeF(0, 0) << 24 << 24;
    }
    void aTextFitsItsBounds()
    {
        QFETCH(QString, text);
        QFETCH(int, lines);
        QFETCH(QSizeF, available);
        QFETCH(int, atLeast);
        QFETCH(int, atMost);
        const int size = fittingPixelSize(text, QFont("Noto Sans CJK TC"),
            {.fontSize = 40, .minimumFontSize = 23.2, .maximumLines = lines, .available = available});
        QVERIFY2(size >= atLeast && size <= atMost, qPrintable(QString::number(size)));
    }
};

LUMAPHONE_OFFSCREEN_TEST(FloatingCaptionViewTest)

} // namespace floatingcaptionviewtest

#include "FloatingCaptionViewTest.moc"
