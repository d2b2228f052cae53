#include "photographs/PanelPhotographs.h"

#include "photographs/Studio.h"
#include "support/VisibleItems.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <stdexcept>

namespace lumaphone::test {

namespace {

void keep(const QImage &picture, const QString &target, const QString &name)
{
    QDir().mkpath(target);
    const QString path = QStringLiteral("%1/panel-%2.png").arg(target, name);
    if (!picture.save(path)) {
        throw std::runtime_error("A photograph could not be written: " + path.toStdString());
    }
}

void photographPanelOf(Studio &studio, const QString &target, const QString &name)
{
    studio.settle();
    FloatingCaptionPanel &panel = *studio.floatingCaptions->panel();
    panel.setColor(QColor(QStringLiteral("#5c7390")));
    drawFrame(panel);
    QTest::qWait(600); // for what fades
    keep(panel.grabWindow(), target, name);
}

/// The same in the two themes that do not follow the desktop.
void photographThemes(Studio &studio, const QString &target, const QString &name)
{
    for (const FloatingCaptionTheme theme : {FloatingCaptionTheme::dark, FloatingCaptionTheme::light}) {
        studio.session.settings.setCaptionTheme(theme);
        studio.session.settings.setCaptionOpacity(theme == FloatingCaptionTheme::dark ? 0.5 : 0.8);
        photographPanelOf(studio, target, name + QLatin1Char('-') + rawValue(theme));
    }
}

void photographLargeTexts(const QString &target)
{
    QTemporaryDir user;
    Studio studio(user.path());
    studio.open();
    studio.session.settings.setCaptionFontSize(72);
    studio.floatingCaptions->showSpoken(QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？"),
        AppleSystemSpeechLanguage::japanese,
        QStringLiteral("等一下，剛剛那個點子也太可以了吧？我們下週就把它做出來給大家看。"));
    studio.floatingCaptions->panel()->setFrame({100, 1000, 360, 96});
    photographThemes(studio, target, QStringLiteral("large-smallest"));
    studio.floatingCaptions->panel()->setFrame({100, 1000, 820, 96});
    photographThemes(studio, target, QStringLiteral("large-low"));
    studio.floatingCaptions->panel()->setFrame({100, 1000, 820, 180});
    photographThemes(studio, target, QStringLiteral("large"));
    if (!clickOn(*studio.floatingCaptions->panel(), QStringLiteral("floatingCaption.grow"))) {
        throw std::runtime_error("The panel does not offer to grow.");
    }
    photographThemes(studio, target, QStringLiteral("large-grown"));
}

void photographLines(const QString &target)
{
    QTemporaryDir user;
    Studio studio(user.path());
    studio.open();
    LumaphoneSettings &settings = studio.session.settings;
    settings.setCaptionLines(3);
    settings.setCaptionFontSize(28);
    studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 600);
    studio.photograph(target, QStringLiteral("inspector-reading"));
    studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 1000);
    studio.photograph(target, QStringLiteral("inspector-reading-preview"));
    studio.floatingCaptions->toggle();
    studio.floatingCaptions->panel()->setFrame({100, 1000, 820, 260});
    photographThemes(studio, target, QStringLiteral("reading-ready"));
    studio.live->startOrStop();
    studio.settle();
    studio.converse();
    studio.floatingCaptions->showSpoken(studio.session.controller->transcript(),
        AppleSystemSpeechLanguage::japanese, studio.session.controller->translatedText());
    photographThemes(studio, target, QStringLiteral("reading"));
    settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
    photographThemes(studio, target, QStringLiteral("reading-translation-only"));
    settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::bilingual);
    settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
    settings.setCaptionLineSpacing(1.3);
    settings.setCaptionLineWidth(0.6);
    photographThemes(studio, target, QStringLiteral("reading-narrow"));
    settings.setCaptionOrder(FloatingCaptionOrder::sourceFirst);
    settings.setCaptionLineSpacing(1);
    settings.setCaptionLineWidth(1);
    studio.floatingCaptions->reader()->toggleHold();
    studio.say(QStringLiteral("それは来月に回しましょう。"), QStringLiteral("那就延到下個月吧。"),
        AppleSystemSpeechLanguage::japanese);
    studio.say(QStringLiteral("以上です。"), QStringLiteral("以上。"), AppleSystemSpeechLanguage::japanese);
    photographThemes(studio, target, QStringLiteral("reading-held"));
    studio.floatingCaptions->reader()->turnWheel(240);
    photographThemes(studio, target, QStringLiteral("reading-back"));
    studio.floatingCaptions->reader()->follow();
    settings.setCaptionSilence(5);
    studio.advance(std::chrono::seconds(10));
    photographThemes(studio, target, QStringLiteral("silence"));
}

void photographBesideDialog(const QString &target)
{
    QTemporaryDir user;
    Studio studio(user.path());
    studio.open();
    studio.floatingCaptions->toggle();
    QRect frame(QPoint(), QSize(820, 180));
    frame.moveCenter(studio.window->geometry().center());
    studio.floatingCaptions->panel()->setFrame(frame);
    QMetaObject::invokeMethod(&studio.object(QStringLiteral("clearConfirmation")), "open");
    studio.settle();
    QTest::qWait(500); // for the sheet, which fades in
    const QRect seen = studio.window->geometry().adjusted(-20, -20, 20, 20);
    keep(studio.window->screen()->grabWindow(0, seen.x(), seen.y(), seen.width(), seen.height()).toImage(),
        target, QStringLiteral("beside-dialog"));
}

} // namespace

void photographPanel(const QString &target)
{
    QTemporaryDir user;
    Studio studio(user.path());
    studio.open();
    LumaphoneSettings &settings = studio.session.settings;
    studio.floatingCaptions->showSpoken(QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？"),
        AppleSystemSpeechLanguage::japanese, QStringLiteral("等一下，剛剛那個點子也太可以了吧？"));
    studio.floatingCaptions->panel()->setColor(QColor(QStringLiteral("#5c7390")));
    for (const FloatingCaptionTheme theme : allFloatingCaptionThemes) {
        settings.setCaptionTheme(theme);
        settings.setCaptionOpacity(theme == FloatingCaptionTheme::dark ? 0.5 : 0.8);
        for (const FloatingCaptionDisplayMode mode : allFloatingCaptionDisplayModes) {
            settings.setCaptionDisplayMode(mode);
            studio.settle();
            keep(studio.floatingCaptions->panel()->grabWindow(), target,
                rawValue(theme) + QLatin1Char('-') + rawValue(mode));
        }
    }
}

void photographReading(const QString &target)
{
    photographLargeTexts(target);
    photographLines(target);
    photographBesideDialog(target);
}

} // namespace lumaphone::test
