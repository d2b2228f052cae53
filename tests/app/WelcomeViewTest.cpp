#include "app/OffscreenTest.h"
#include "photographs/Studio.h"
#include "storage/SettingKeys.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QGuiApplication>
#include <QTest>

namespace welcomeviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The window of a user who may be a new one.
struct Window
{
    QTemporaryDir folder;
    Studio studio {folder.path()};

    explicit Window(bool isNewUser = true, QSize size = QSize(1280, 900))
    {
        studio.welcome = std::make_unique<WelcomeModel>(studio.session.settings, !isNewUser);
        studio.open(size);
    }
    bool isShown(const QString &name) const { return studio.find(name) != nullptr; }
    bool comes(const QString &name) const
    {
        return waitUntil([&] { return isShown(name); });
    }
    /// Once it has the keyboard it is open.
    bool isWelcoming() const
    {
        return waitUntil([&] { return focusedName() == "welcome.done"; });
    }
    bool goes(const QString &name) const
    {
        return waitUntil([&] { return !isShown(name); });
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(studio.window, key, modifiers);
        settle();
        drawFrame(*studio.window);
    }
    QString focusedName() const
    {
        const QQuickItem *item = studio.window->activeFocusItem();
        return item == nullptr ? QString() : item->objectName();
    }
    bool isKept() const { return studio.session.defaults.boolean(settingkeys::welcomeClosed).has_value(); }
};

} // namespace

class WelcomeViewTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewUserIsToldWhatThereIs()
    {
        const Window window;
        QVERIFY(window.isWelcoming());
        QVERIFY(window.comes("welcome.bundled.3.model.status"));
        QCOMPARE(window.studio.find("welcome.bundled.3.model.status")->property("text"),
            QVariant("Lumaphone 內建，可離線使用"));
        QVERIFY(!window.isShown("welcome.models.3"));
        QCOMPARE(window.studio.find("welcome.models.4.model.status")->property("text"),
            QVariant("尚未安裝，下載約 163 MB"));
        QVERIFY(window.studio.find("welcome.models.4.licence")->property("text").toString().contains("授權"));
    }

    void closingItIsForEver_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("its button") << false;
        QTest::newRow("Escape") << true;
    }

    void closingItIsForEver()
    {
        QFETCH(const bool, byEscape);
        const Window window;
        QVERIFY(window.isWelcoming());
        QVERIFY(!window.isKept());
        window.press(byEscape ? Qt::Key_Escape : Qt::Key_Space);
        QVERIFY(window.goes("welcome.done"));
        QVERIFY(window.isKept());
        window.studio.window->hide();
        window.studio.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.studio.window));
        settle();
        QVERIFY(!window.isShown("welcome.done"));
    }

    void whoKnowsTheProgramAsksForIt()
    {
        const Window window(false);
        QVERIFY(!window.isShown("welcome.done"));
        window.studio.click("moreSettings");
        window.studio.click("menu.welcome");
        QVERIFY(window.isWelcoming());
        window.studio.click("welcome.done");
        QVERIFY(window.goes("welcome.done"));
    }

    void whatIsChosenHoldsAtOnceAndNothingHasToBe()
    {
        const Window window;
        QVERIFY(window.isWelcoming());
        window.studio.click("welcome.source");
        window.studio.click("welcome.source.choices.microphone");
        QCOMPARE(window.studio.inspector->audioInputSource(), QString("microphone"));
        window.studio.click("welcome.language");
        window.studio.click("welcome.language.choices.english");
        QCOMPARE(window.studio.inspector->sourceLanguage(), QString("english"));
        QVERIFY(window.isShown("welcome.done"));
    }

    void noSessionBeginsBehindIt()
    {
        const Window window;
        QVERIFY(window.isWelcoming());
        window.press(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(!window.studio.session.controller->isRunning());
    }

    void inTheSmallestWindowTheKeyboardComesToEverythingAndItIsSeen()
    {
        const Window window(true, QSize(1040, 680));
        QVERIFY(window.isWelcoming());
        const QQuickItem *sheet = window.studio.find("welcome.flickable");
        QVERIFY(QRectF(0, 0, 1040, 680)
                    .contains(window.studio.find("welcome.done")->mapRectToScene({0, 0, 10, 36})));
        QStringList visited;
        for (int i = 0; i < 12; ++i) {
            window.press(Qt::Key_Tab);
            const QQuickItem *focused = window.studio.window->activeFocusItem();
            visited << focused->objectName();
            if (sheet->isAncestorOf(focused)) {
                const QRectF seen = sheet->mapRectToScene({0, 0, sheet->width(), sheet->height()});
                QVERIFY2(seen.contains(focused->mapRectToScene({0, 0, focused->width(), focused->height()})),
                    qPrintable(focused->objectName()));
            }
        }
        for (const char *name : {"welcome.source", "welcome.language", "welcome.models.0.model.install",
                 "welcome.models.4.model.install", "welcome.done"}) {
            QVERIFY2(visited.contains(name), name);
        }
    }
};

LUMAPHONE_OFFSCREEN_TEST(WelcomeViewTest)

} // namespace welcomeviewtest

#include "WelcomeViewTest.moc"
