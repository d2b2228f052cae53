#include "app/OffscreenTest.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>
#include <QTest>

namespace transcriptviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The window with a session of some lines, whose translations are numbered as they are.
struct Window
{
    QTemporaryDir folder;
    Studio studio {folder.path()};
    QQuickItem *list = nullptr;

    explicit Window(int lines = 3)
    {
        studio.open();
        studio.live->startOrStop();
        studio.settle();
        say(1, lines);
        list = studio.find("card.lines");
        QGuiApplication::clipboard()->setText("before");
    }

    void say(int first, int last)
    {
        for (int number = first; number <= last; ++number) {
            const QString source = QStringLiteral("Sentence %1 of the talk.").arg(number);
            studio.session.translator->translations[source] = QStringLiteral("演講的第%1句。").arg(number);
            studio.session.speech(source, true, AppleSystemSpeechLanguage::english);
            studio.session.clock->advance(std::chrono::seconds(15));
        }
        studio.settle();
        drawFrame(*studio.window);
    }
    void press(const char *keys) const
    {
        const QKeyCombination pressed = QKeySequence(keys)[0];
        QTest::keyClick(studio.window, pressed.key(), pressed.keyboardModifiers());
        settle();
        drawFrame(*studio.window);
    }
    void type(const QString &text) const
    {
        for (const QChar character : text) {
            QTest::sendKeyEvent(
                QTest::Click, studio.window, Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
        settle();
    }
    QQuickItem *row(int number) const
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, number));
        return item;
    }
    /// Where a part of a row's width lies, in its first line of text.
    QPoint at(int number, double share) const
    {
        const QQuickItem &item = *row(number);
        return item.mapToScene({item.width() * share, 12}).toPoint();
    }
    void drag(QPoint from, QPoint to) const
    {
        QTest::mousePress(studio.window, Qt::LeftButton, {}, from);
        QTest::mouseMove(studio.window, (from + to) / 2);
        QTest::mouseMove(studio.window, to);
        QTest::mouseRelease(studio.window, Qt::LeftButton, {}, to);
        settle();
        drawFrame(*studio.window);
    }
    TranscriptModel &transcript() const { return *studio.live->transcript(); }
    static QString copied() { return QGuiApplication::clipboard()->text(); }
    double position() const { return list->property("contentY").toDouble(); }
    QString countText() const { return studio.find("find.count")->property("text").toString(); }
};

} // namespace

/// The transcript of the live session under the hands of its reader.
class TranscriptViewTest : public QObject
{
    Q_OBJECT

private slots:
    void thePointerSelectsTextOfOneColumnAcrossLines()
    {
        const Window window;
        // From behind the last character of the first line to before the first of the third.
        window.drag(window.at(0, 0.45), window.at(2, 0));
        window.press("Ctrl+C");
        QCOMPARE(Window::copied(), "Sentence 2 of the talk.");
        window.drag(window.at(1, 0.99), window.at(0, 0.53));
        window.press("Ctrl+C");
        QVERIFY2(Window::copied().endsWith("\n演講的第2句。"), qPrintable(Window::copied()));
        QVERIFY(window.list->hasActiveFocus());
        QTest::mouseClick(window.studio.window, Qt::LeftButton, {}, window.at(1, 0.1));
        QVERIFY(!window.transcript().hasSelection());
    }

    void aSelectionIsLengthenedWithShift()
    {
        const Window window;
        QTest::mouseClick(window.studio.window, Qt::LeftButton, {}, window.at(0, 0));
        QTest::mouseClick(window.studio.window, Qt::LeftButton, Qt::ShiftModifier, window.at(1, 0.45));
        window.press("Ctrl+C");
        QCOMPARE(Window::copied(), "Sentence 1 of the talk.\nSentence 2 of the talk.");
    }

    void aWordIsSelectedByADoubleClick()
    {
        const Window window;
        const QPoint place = window.at(1, 0.01);
        QTest::mouseClick(window.studio.window, Qt::LeftButton, {}, place);
        QTest::mouseDClick(window.studio.window, Qt::LeftButton, {}, place);
        window.press("Ctrl+C");
        QCOMPARE(Window::copied(), "Sentence");
    }

    void theKeyboardSelectsLinesWithTheirTranslations()
    {
        const Window window;
        window.list->forceActiveFocus(Qt::TabFocusReason);
        window.press("Up");
        QCOMPARE(window.transcript().currentRow(), 2);
        window.press("Shift+Up");
        window.press("Ctrl+C");
        QCOMPARE(Window::copied(),
            "Sentence 2 of the talk.\n演講的第2句。\n\nSentence 3 of the talk.\n演講的第3句。");
        window.press("Up");
        QVERIFY(!window.transcript().hasSelection());
        window.press("Ctrl+Shift+C");
        QCOMPARE(Window::copied(), "Sentence 1 of the talk.\n演講的第1句。");
        window.press("Ctrl+A");
        window.press("Ctrl+C");
        QCOMPARE(Window::copied().count("Sentence"), 3);
        window.press("Escape");
        QVERIFY(!window.transcript().hasSelection());
        QVERIFY(window.list->hasActiveFocus());
        window.press("Escape");
        QVERIFY(!window.list->hasActiveFocus());
    }

    void aLineHasAMenuByPointerAndByKeyboard()
    {
        const Window window;
        QTest::mouseClick(window.studio.window, Qt::RightButton, {}, window.at(1, 0.2));
        QVERIFY(waitUntil([&] { return window.studio.find("line.copy") != nullptr; }));
        window.studio.click("line.copy");
        QCOMPARE(Window::copied(), "Sentence 2 of the talk.\n演講的第2句。");
        QVERIFY(waitUntil([&] { return window.studio.find("line.copy") == nullptr; }));
        for (const char *keys : {"Menu", "Shift+F10"}) {
            window.list->forceActiveFocus(Qt::TabFocusReason);
            window.transcript().goTo(0);
            window.press(keys);
            QVERIFY(waitUntil([&] { return window.studio.find("line.copySource") != nullptr; }));
            QVERIFY(!window.studio.find("line.copySelection")->isEnabled());
            window.press("Down");
            window.press("Down");
            window.press("Return");
            QVERIFY(waitUntil([&] { return window.studio.find("line.copySource") == nullptr; }));
            QCOMPARE(Window::copied(), "Sentence 1 of the talk.");
            QVERIFY(waitUntil([&] { return window.list->hasActiveFocus(); }));
            QGuiApplication::clipboard()->setText("before");
        }
    }

    void whatIsLookedForIsFoundInBothColumns()
    {
        const Window window(60);
        window.press("Ctrl+F");
        QCOMPARE(window.studio.window->activeFocusItem()->objectName(), "find.field");
        window.type("第7句");
        QCOMPARE(window.countText(), "第 1 處，共 1 處");
        QCOMPARE(window.transcript().foundRow(), 6);
        drawFrame(*window.studio.window);
        QVERIFY(window.row(6) != nullptr); // it is in view
        const double y = window.row(6)->y() - window.position();
        QVERIFY(y >= 0 && y < window.list->height());
        window.press("Ctrl+A");
        window.type("sentence 1");
        QCOMPARE(window.transcript().foundCount(), 11);
        window.type("水");
        QCOMPARE(window.countText(), "找不到");
        QVERIFY(!window.studio.find("find.next")->isEnabled());
        window.press("Escape");
        QVERIFY(window.studio.find("find.field") == nullptr);
        QCOMPARE(window.transcript().searchText(), "");
        QVERIFY(window.list->hasActiveFocus());
    }

    void itGoesFromOnePlaceToTheNext()
    {
        const Window window(60);
        window.press("Ctrl+F");
        window.type("talk");
        const int first = window.transcript().foundNumber();
        QVERIFY(first > 1); // it begins with what is in view
        window.press("Return");
        QCOMPARE(window.transcript().foundNumber(), first + 1);
        window.press("Shift+Return");
        window.press("Shift+F3");
        QCOMPARE(window.transcript().foundNumber(), first - 1);
        window.press("F3");
        window.studio.click("find.previous");
        QCOMPARE(window.transcript().foundNumber(), first - 1);
        window.studio.click("find.close");
        QVERIFY(window.studio.find("find.field") == nullptr);
    }

    void nothingJumpsWhileLinesAreFoundAndCome()
    {
        Window window(60);
        window.press("Ctrl+F");
        window.type("Sentence 3 ");
        QVERIFY(window.studio.find("card.toNewest") != nullptr);
        const double position = window.position();
        const QString count = window.countText();
        window.say(61, 70);
        QCOMPARE(window.position(), position);
        QCOMPARE(window.countText(), count);
        window.press("Ctrl+A");
        window.type("Sentence 6");
        QCOMPARE(window.transcript().foundCount(), 11);
        window.say(600, 600);
        QCOMPARE(window.transcript().foundCount(), 12);
    }

    void selectingStopsFollowing()
    {
        Window window(60);
        QVERIFY(waitUntil([&] { return window.list->property("atYEnd").toBool(); }));
        window.drag(window.at(57, 0), window.at(58, 0.4));
        const double position = window.position();
        window.say(61, 62);
        QCOMPARE(window.position(), position);
        QVERIFY(window.studio.find("card.toNewest") != nullptr);
    }

    void thereIsNothingToFindWithoutLines()
    {
        const Window window(0);
        window.press("Ctrl+F");
        QVERIFY(window.studio.find("find.field") == nullptr);
        QVERIFY(window.studio.find("card.find") == nullptr);
    }
};

LUMAPHONE_OFFSCREEN_TEST(TranscriptViewTest)

} // namespace transcriptviewtest

#include "TranscriptViewTest.moc"
