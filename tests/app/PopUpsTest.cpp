#include "app/OffscreenTest.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/GlossaryTerms.h"
#include "support/VisibleItems.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

namespace popupstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The whole window, used by pointer and keyboard as a user does.
struct Window
{
    QTemporaryDir folder;
    Studio studio {folder.path()};

    Window() { studio.open(QSize(1280, 1000)); }

    bool isShown(const QString &name) const { return studio.find(name) != nullptr; }
    bool comes(const QString &name) const
    {
        return waitUntil([&] { return isShown(name); });
    }
    bool goes(const QString &name) const
    {
        return waitUntil([&] { return !isShown(name); });
    }
    void press(Qt::Key key) const
    {
        QTest::keyClick(studio.window, key);
        settle();
        drawFrame(*studio.window);
    }
    bool focus(const QString &name) const { return studio.focus(name); }
    bool opens(const QString &sheet) const
    {
        return waitUntil([&] { return studio.object(sheet).property("opened").toBool(); });
    }
    /// Opens a sheet from the menu, by keyboard.
    bool openFromMenu(const QString &entry, const QString &sheet) const
    {
        if (!focus("moreSettings")) {
            return false;
        }
        press(Qt::Key_Space);
        if (!comes(entry)) {
            return false;
        }
        for (int step = 0; step < 12 && !studio.find(entry)->property("highlighted").toBool(); ++step) {
            press(Qt::Key_Down);
        }
        press(Qt::Key_Return);
        return opens(sheet);
    }
    /// Opens the sheet with that control, if it is in one.
    bool reach(const QString &control) const
    {
        if (control.startsWith("welcome")) {
            return openFromMenu("menu.welcome", "welcome");
        }
        if (!control.startsWith("glossary")) {
            return true;
        }
        studio.glossaryStore->add(translated("tea", "茶"));
        if (!openFromMenu("menu.glossary", "glossary")) {
            return false;
        }
        if (!control.startsWith("glossaryEditor")) {
            return true;
        }
        if (!focus("glossary.list")) {
            return false;
        }
        press(Qt::Key_Return);
        return opens("glossaryEditor");
    }
    QString tooltip() const { return shownTooltip(*studio.window); }
    AppleSystemSpeechLanguage language() const { return studio.session.controller->sourceLanguage(); }
};

} // namespace

/// Menus and the lists of pickers.
class PopUpsTest : public QObject
{
    Q_OBJECT

private slots:
    void aTooltipGoesWhenItsControlIsUsed_data()
    {
        QTest::addColumn<QString>("help");
        QTest::newRow("moreSettings") << "更多設定";
        QTest::newRow("startStop") << "開始即時字幕（Ctrl+Enter）";
        QTest::newRow("languageMenu") << "選擇常用原文語言；不確定時用自動辨識";
        QTest::newRow("workspace.live") << "切換即時字幕與字幕紀錄庫";
    }
    void aTooltipGoesWhenItsControlIsUsed()
    {
        QFETCH(const QString, help);
        const Window window;
        hurryTooltips(*window.studio.window);
        QQuickItem *control = window.studio.find(QTest::currentDataTag());
        const QPoint there = control->mapToScene({control->width() / 2, control->height() / 2}).toPoint();
        const QPoint elsewhere(300, 600);
        const auto rest = [&](const QPoint &where) {
            QTest::mouseMove(window.studio.window, where);
            settle();
        };
        rest(elsewhere);
        rest(there);
        QVERIFY(waitUntil([&] { return window.tooltip() == help; }));
        QTest::mousePress(window.studio.window, Qt::LeftButton, {}, there);
        QVERIFY(waitUntil([&] { return window.tooltip().isEmpty(); }));
        QTest::mouseRelease(window.studio.window, Qt::LeftButton, {}, there);
        settle();
        drawFrame(*window.studio.window);
        QCOMPARE(window.tooltip(), "");
    }

    void thePointerShowsWhatAPillHasNoRoomFor()
    {
        Studio studio("/dev/null/" + QString("a-folder-with-a-long-name-").repeated(8));
        studio.open(QSize(1040, 680));
        studio.holdSession();
        studio.live->saveTranscript();
        studio.settle();
        drawFrame(*studio.window);
        const QQuickItem *pill = studio.find("workspace.saveError");
        QVERIFY(pill != nullptr);
        const QRectF place = pill->mapRectToScene({0, 0, pill->width(), pill->height()});
        QVERIFY(place.width() > 100 && place.right() <= studio.find("card.status")->mapToScene({}).x());
        QTest::mouseMove(studio.window, QPoint(300, 100));
        QTest::mouseMove(studio.window, place.center().toPoint());
        QVERIFY(waitUntil([&] { return shownTooltip(*studio.window) == studio.live->saveErrorMessage(); }));
    }

    void aPickerIsOpenedAndAnsweredByPointer()
    {
        const Window window;
        QVERIFY(!window.isShown("languageMenu.choices.korean"));
        window.studio.click("languageMenu");
        for (const char *choice : {"automatic", "japanese", "english", "korean", "mandarin"}) {
            QVERIFY2(window.comes(QString("languageMenu.choices.") + choice), choice);
        }
        QCOMPARE(window.studio.find("languageMenu.choices.mandarin")->property("modelData").toMap()["title"],
            "中文");
        window.studio.click("languageMenu.choices.english");
        QVERIFY(window.goes("languageMenu.choices.english"));
        QCOMPARE(window.language(), AppleSystemSpeechLanguage::english);
        QCOMPARE(window.studio.find("languageMenu")->property("displayText"), "英文");
    }

    void choicesShowTheirSymbols()
    {
        const Window window;
        window.studio.click("inspector.source.picker");
        QVERIFY(window.comes("inspector.source.picker.choices.microphone"));
        const auto symbolOf = [&](const char *choice) {
            return window.studio.find(QString("inspector.source.picker.choices.%1.label").arg(choice))
                ->property("systemImage");
        };
        QCOMPARE(symbolOf("systemAudio"), QVariant("speaker.wave.2.fill"));
        QCOMPARE(symbolOf("microphone"), QVariant("mic.fill"));
    }

    void theProvidersNoticeStaysBesideTheResultOfATest()
    {
        const Window window;
        window.studio.content().setProperty("isProviderSettingsPresented", true);
        QVERIFY(window.comes("provider.hint"));
        drawFrame(*window.studio.window);
        const QPointF place = window.studio.find("provider.test")->mapToScene({});
        QVERIFY(!window.isShown("provider.testStatus"));
        window.studio.provider->clearKey(); // its result stands where that of a test does
        QVERIFY(window.comes("provider.testStatus"));
        drawFrame(*window.studio.window);
        QVERIFY(window.isShown("provider.hint"));
        QCOMPARE(window.studio.find("provider.test")->mapToScene({}), place);
    }

    void aPickerIsLeftByAClickBesideIt()
    {
        const Window window;
        window.studio.click("inspector.source.picker");
        QVERIFY(window.comes("inspector.source.picker.choices.microphone"));
        QTest::mouseClick(window.studio.window, Qt::LeftButton, {}, QPoint(300, 400));
        QVERIFY(window.goes("inspector.source.picker.choices.microphone"));
        QCOMPARE(window.studio.inspector->audioInputSource(), "systemAudio");
    }

    void aPickerIsOpenedAndAnsweredByKeyboard()
    {
        const Window window;
        QVERIFY(window.focus("inspector.mode.picker"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("inspector.mode.picker.choices.customAPI"));
        window.press(Qt::Key_Down);
        QCOMPARE(window.studio.inspector->processingMode(), "appleMode"); // nothing is chosen yet
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes("inspector.mode.picker.choices.customAPI"));
        QCOMPARE(window.studio.inspector->processingMode(), "appleMode");
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("inspector.mode.picker.choices.customAPI"));
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Return);
        QVERIFY(window.goes("inspector.mode.picker.choices.customAPI"));
        QCOMPARE(window.studio.inspector->processingMode(), "customAPI");
    }

    void aMenuIsOpenedAndAnsweredByPointer()
    {
        const Window window;
        QVERIFY(!window.isShown("menu.glossary"));
        window.studio.click("moreSettings");
        for (const char *entry :
            {"menu.provider", "menu.glossary", "menu.openFloating", "menu.closeFloating", "menu.diagnosis"}) {
            QVERIFY2(window.comes(entry), entry);
        }
        QVERIFY(!window.studio.find("menu.closeFloating")->isEnabled());
        QVERIFY(!window.studio.find("menu.diagnosis")->isEnabled());
        window.studio.click("menu.glossary");
        QVERIFY(window.comes("glossary.done"));
        QVERIFY(window.goes("menu.glossary"));
        window.studio.click("glossary.done");
        QVERIFY(window.goes("glossary.done"));
    }

    void aMenuIsOpenedAndAnsweredByKeyboard()
    {
        const Window window;
        QVERIFY(window.focus("moreSettings"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("menu.provider"));
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes("menu.provider"));
        QVERIFY(!window.isShown("provider.save"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("menu.provider"));
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Return);
        QVERIFY(window.comes("provider.save"));
        QVERIFY(window.goes("menu.provider"));
    }

    void everyPickerIsOpenedAndAnsweredByKeyboard_data()
    {
        QTest::addColumn<QString>("picker");
        for (const char *picker :
            {"languageMenu", "inspector.source.picker", "inspector.language.picker", "inspector.mode.picker",
                "inspector.theme.picker", "inspector.display.picker", "inspector.order.picker",
                "inspector.font.picker", "inspector.lines.picker", "inspector.silence.picker",
                "glossary.new.mode", "glossaryEditor.mode", "welcome.source", "welcome.language"}) {
            QTest::newRow(picker) << QString(picker);
        }
    }
    void everyPickerIsOpenedAndAnsweredByKeyboard()
    {
        QFETCH(const QString, picker);
        const Window window;
        QVERIFY(window.reach(picker));
        QVERIFY(window.focus(picker));
        const QQuickItem &item = *window.studio.find(picker);
        const QString before = item.property("displayText").toString();
        const bool isLast = item.property("currentIndex").toInt() == item.property("count").toInt() - 1;
        window.press(Qt::Key_Space);
        QVERIFY(window.comes(picker + ".choices"));
        window.press(isLast ? Qt::Key_Up : Qt::Key_Down);
        QCOMPARE(item.property("displayText").toString(), before); // nothing is chosen yet
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes(picker + ".choices"));
        QVERIFY(window.isShown(picker)); // nor has a sheet gone with the choices
        QCOMPARE(item.property("displayText").toString(), before);
        window.press(Qt::Key_Space);
        QVERIFY(window.comes(picker + ".choices"));
        window.press(isLast ? Qt::Key_Up : Qt::Key_Down);
        window.press(Qt::Key_Return);
        QVERIFY(window.goes(picker + ".choices"));
        QVERIFY(item.property("displayText").toString() != before);
        QVERIFY(!window.studio.live->isRunning()); // the space bar was the picker's
    }

    void theMenusOfARecordAreOpenedAndAnsweredByKeyboard()
    {
        Window window;
        Studio &studio = window.studio;
        studio.holdSession();
        studio.live->saveTranscript();
        studio.content().setProperty("workspaceMode", "library");
        QVERIFY(window.comes("library.copy"));
        QVERIFY(window.focus("library.copy"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("library.copy.translation"));
        for (int step = 0; step < 3; ++step) {
            window.press(Qt::Key_Down);
        }
        window.press(Qt::Key_Return);
        QVERIFY(window.goes("library.copy.translation"));
        QVERIFY(QGuiApplication::clipboard()->text().startsWith("早安。"));
        QVERIFY(window.focus("library.export"));
        window.press(Qt::Key_Return); // opens nothing: it is the space bar that presses a button
        QVERIFY(!window.isShown("library.export.srt"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("library.export.srt"));
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes("library.export.srt"));
        QVERIFY(waitUntil([&] { return studio.find("library.export")->hasActiveFocus(); }));
    }

    void theLastEntryOfAMenuIsReachedByKeyboard()
    {
        const Window window;
        QVERIFY(window.focus("moreSettings"));
        window.press(Qt::Key_Space);
        QVERIFY(window.comes("menu.keys"));
        // Upwards from none to the last; what cannot be used is passed over.
        window.press(Qt::Key_Up);
        for (int step = 0; step < 12 && !window.studio.find("menu.keys")->property("highlighted").toBool();
             ++step) {
            window.press(Qt::Key_Down);
        }
        window.press(Qt::Key_Return);
        QVERIFY(window.comes("keys.close"));
        QVERIFY(window.goes("menu.keys"));
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes("keys.close"));
    }

    void aMenuIsLeftByEscapeAndByAClickBesideIt()
    {
        const Window window;
        window.studio.click("moreSettings");
        QVERIFY(window.comes("menu.provider"));
        window.press(Qt::Key_Escape);
        QVERIFY(window.goes("menu.provider"));
        window.studio.click("moreSettings");
        QVERIFY(window.comes("menu.provider"));
        QTest::mouseClick(window.studio.window, Qt::LeftButton, {}, QPoint(300, 400));
        QVERIFY(window.goes("menu.provider"));
    }
};

LUMAPHONE_OFFSCREEN_TEST(PopUpsTest)

} // namespace popupstest

#include "PopUpsTest.moc"
