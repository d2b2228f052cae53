#include "app/floating/FloatingCaptionStyle.h"

#include "app/floating/FloatingCaptionLook.h"
#include "storage/LumaphoneSettings.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace floatingcaptionstyletest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Mode = FloatingCaptionDisplayMode;
using Theme = FloatingCaptionTheme;

const DesktopColors desktop {QColor("#112233"), QColor("#445566"), QColor("#778899"), QColor("#aabbcc")};

FloatingCaptionContent content(Mode mode, const char *source, const char *translation)
{
    FloatingCaptionContent content;
    content.displayMode = mode;
    content.sourceText = QString::fromUtf8(source);
    content.translationText = QString::fromUtf8(translation);
    return content;
}

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

/// A look that follows settings of its own.
struct Fixture
{
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    FloatingCaptionLook look;

    Fixture() { look.setSettings(&settings); }
};

} // namespace

class FloatingCaptionStyleTest : public QObject
{
    Q_OBJECT

private slots:
    void displayModeAndTextsDecideWhichLinesAreShown_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("translation");
        QTest::addColumn<bool>("showsSource");
        QTest::addColumn<bool>("showsTranslation");
        QTest::addColumn<QString>("translationLine");
        const QString a = "原", b = "譯", none, blank = " ";
        QTest::newRow("bilingual") << Mode::bilingual << a << b << true << true << b;
        QTest::newRow("bilingual without source") << Mode::bilingual << none << b << false << true << b;
        QTest::newRow("bilingual without translation")
            << Mode::bilingual << a << none << true << true << blank;
        QTest::newRow("bilingual without texts") << Mode::bilingual << none << none << false << true << blank;
        QTest::newRow("translation only") << Mode::translationOnly << a << b << false << true << b;
        QTest::newRow("an empty translation keeps its line")
            << Mode::translationOnly << a << none << false << true << blank;
        QTest::newRow("source only") << Mode::sourceOnly << a << b << true << false << b;
        QTest::newRow("an empty source leaves the background alone")
            << Mode::sourceOnly << none << b << false << false << b;
    }
    void displayModeAndTextsDecideWhichLinesAreShown()
    {
        QFETCH(Mode, mode);
        QFETCH(QString, source);
        QFETCH(QString, translation);
        const FloatingCaptionStyle style(
            content(mode, source.toUtf8().constData(), translation.toUtf8().constData()), desktop);
        QTEST(style.showsSourceText, "showsSource");
        QTEST(style.showsTranslationText, "showsTranslation");
        QTEST(style.translationLine, "translationLine");
        QCOMPARE(style.sourceLine, source);
    }

    void fontSizesFollowTheChosenOne_data()
    {
        QTest::addColumn<double>("fontSize");
        QTest::addColumn<double>("source");
        QTest::newRow("11.6 is raised to 14") << 20.0 << 14.0;
        QTest::newRow("just below the limit") << 24.1 << 14.0;
        QTest::newRow("just above the limit") << 24.2 << 24.2 * 0.58;
        QTest::newRow("the default") << 34.0 << 19.72;
        QTest::newRow("large") << 40.0 << 23.2;
    }
    void fontSizesFollowTheChosenOne()
    {
        QFETCH(double, fontSize);
        QFETCH(double, source);
        FloatingCaptionContent chosen;
        chosen.fontSize = fontSize;
        const FloatingCaptionStyle style(chosen, desktop);
        QCOMPARE(style.translationFontSize, fontSize);
        QCOMPARE(style.sourceFontSize, source);
        QCOMPARE(style.minimumSourceFontSize, source * 0.66);
        QCOMPARE(style.minimumTranslationFontSize, fontSize * 0.58);
        QCOMPARE(style.maximumSourceLines, 2);
        QCOMPARE(style.maximumTranslationLines, 3);
    }

    void everyThemeHasItsColors_data()
    {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<QColor>("source");
        QTest::addColumn<QColor>("translation");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("border");
        const QColor white = Qt::white, black = Qt::black;
        QTest::newRow("dark") << Theme::dark << withAlpha(white, 0.72) << white << withAlpha(black, 0.3)
                              << withAlpha(white, 0.16);
        QTest::newRow("light") << Theme::light << withAlpha(black, 0.62) << black << withAlpha(white, 0.3)
                               << withAlpha(black, 0.14);
        QTest::newRow("glass") << Theme::glass << desktop.secondaryLabel << desktop.label
                               << withAlpha(desktop.windowBackground, 0.3) << withAlpha(desktop.accent, 0.22);
    }
    void everyThemeHasItsColors()
    {
        QFETCH(Theme, theme);
        FloatingCaptionContent chosen;
        chosen.theme = theme;
        const FloatingCaptionStyle style(chosen, desktop);
        QTEST(style.sourceColor, "source");
        QTEST(style.translationColor, "translation");
        QTEST(style.backgroundColor, "background");
        QTEST(style.borderColor, "border");
        QCOMPARE(style.shadowColor, withAlpha(Qt::black, 0.9));
        QCOMPARE(style.shadowRadius, 6.0);
        QCOMPARE(style.shadowOffset, 2.0);
        QCOMPARE(style.horizontalPadding, 28.0);
        QCOMPARE(style.verticalPadding, 18.0);
        QCOMPARE(style.cornerRadius, 14.0);
        QCOMPARE(style.borderWidth, 1.0);
    }

    void opacityIsThatOfTheBackground_data()
    {
        QTest::addColumn<double>("opacity");
        QTest::addColumn<double>("shown");
        QTest::newRow("invisible") << 0.0 << 0.0;
        QTest::newRow("half") << 0.5 << 0.5;
        QTest::newRow("solid") << 1.0 << 1.0;
        QTest::newRow("a stored value beyond the range") << 7.0 << 1.0;
        QTest::newRow("a stored value below the range") << -1.0 << 0.0;
    }
    void opacityIsThatOfTheBackground()
    {
        QFETCH(double, opacity);
        QFETCH(double, shown);
        FloatingCaptionContent chosen;
        chosen.opacity = opacity;
        const FloatingCaptionStyle style(chosen, desktop);
        QCOMPARE(style.backgroundColor, withAlpha(Qt::black, shown));
        QCOMPARE(style.translationColor, QColor(Qt::white));
    }

    void aLookFollowsTheSettingsAtOnce()
    {
        Fixture f;
        QSignalSpy changes(&f.look, &FloatingCaptionLook::styleChanged);
        f.settings.setCaptionFontSize(50);
        QCOMPARE(f.look.style().translationFontSize, 50.0);
        f.settings.setCaptionTheme(Theme::light);
        QCOMPARE(f.look.style().translationColor, QColor(Qt::black));
        f.settings.setCaptionOpacity(1);
        QCOMPARE(f.look.style().backgroundColor, QColor(Qt::white));
        f.look.setSourceText("a");
        f.settings.setCaptionDisplayMode(Mode::sourceOnly);
        QVERIFY(!f.look.style().showsTranslationText);
        QCOMPARE(changes.count(), 5);
    }

    void aLookFollowsTextsAndDesktopColors()
    {
        Fixture f;
        f.settings.setCaptionTheme(Theme::glass);
        f.look.setSourceText("原文");
        f.look.setTranslationText("譯文");
        QCOMPARE(f.look.style().sourceLine, QString("原文"));
        QCOMPARE(f.look.style().translationLine, QString("譯文"));
        f.look.setLabelColor(desktop.label);
        f.look.setSecondaryLabelColor(desktop.secondaryLabel);
        f.look.setWindowBackgroundColor(desktop.windowBackground);
        f.look.setAccentColor(desktop.accent);
        QCOMPARE(f.look.style().translationColor, desktop.label);
        QCOMPARE(f.look.style().sourceColor, desktop.secondaryLabel);
        QCOMPARE(f.look.style().backgroundColor, withAlpha(desktop.windowBackground, 0.3));
        QCOMPARE(f.look.style().borderColor, withAlpha(desktop.accent, 0.22));
    }

    void aChangeThatShowsNothingIsNotAnnounced()
    {
        Fixture f;
        QSignalSpy changes(&f.look, &FloatingCaptionLook::styleChanged);
        f.look.setAccentColor(Qt::red); // only glass shows it
        f.settings.setCaptionOpacity(f.settings.captionOpacity());
        QCOMPARE(changes.count(), 0);
    }

    void aLookWithoutSettingsShowsNothing()
    {
        FloatingCaptionLook look;
        look.setTranslationText("譯文");
        QCOMPARE(look.style(), FloatingCaptionStyle());
        auto f = std::make_unique<Fixture>();
        look.setSettings(&f->settings);
        QVERIFY(look.style().showsTranslationText);
        f.reset();
        QCOMPARE(look.settings(), nullptr);
    }
};

LUMAPHONE_TEST(FloatingCaptionStyleTest)

} // namespace floatingcaptionstyletest

#include "FloatingCaptionStyleTest.moc"
