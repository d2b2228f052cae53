#include "app/OffscreenTest.h"
#include "app/keys/KeySequences.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QKeySequence>
#include <QQmlComponent>
#include <QTest>

namespace keystest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The window, with a user who has nothing but a keyboard.
struct Window
{
    QTemporaryDir folder;
    Studio studio {folder.path()};

    Window() { studio.open(); }

    void press(const char *keys) const
    {
        const QKeyCombination pressed = QKeySequence(keys)[0];
        QTest::keyClick(studio.window, pressed.key(), pressed.keyboardModifiers());
        settle();
        drawFrame(*studio.window);
    }
    /// The space bar is held down: that often it comes again.
    void hold(int times) const
    {
        QTest::keyPress(studio.window, Qt::Key_Space);
        for (int i = 0; i < times; ++i) {
            QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
            QCoreApplication::sendEvent(studio.window, &again);
        }
        QTest::keyRelease(studio.window, Qt::Key_Space);
        settle();
    }
    bool focus(const QString &name) const { return studio.focus(name); }
    bool isRunning() const { return studio.live->isRunning(); }
    QString focused() const
    {
        const QQuickItem *item = studio.window->activeFocusItem();
        return item ? item->objectName() : QString();
    }
    void say(int lines)
    {
        for (int line = 0; line < lines; ++line) {
            studio.session.speech(QStringLiteral("これは%1番目の文です。").arg(line), true);
            studio.session.clock->advance(std::chrono::seconds(15));
        }
        studio.settle();
        drawFrame(*studio.window);
    }
    bool isAtNewest() const { return studio.object("card.lines").property("atYEnd").toBool(); }
};

/// The table, as the views see it.
class Table
{
public:
    explicit Table(QQmlEngine &engine)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQml\nimport Lumaphone.Keys\n"
                          "QtObject { function groups() { return KeyTable.groups }\n"
                          "function labels(row) { return KeyTable.labelsOf(row) } }",
            QUrl());
        m_holder.reset(component.create());
    }
    QVariantList groups() const { return call("groups").toList(); }
    QStringList labels(const QVariant &row) const
    {
        QVariant said;
        QMetaObject::invokeMethod(
            m_holder.get(), "labels", Q_RETURN_ARG(QVariant, said), Q_ARG(QVariant, row));
        return said.toStringList();
    }
    QStringList commands() const
    {
        QStringList commands;
        for (const QVariant &group : groups()) {
            for (const QVariant &row : group.toMap()["rows"].toList()) {
                for (const QVariant &command : row.toMap()["commands"].toList()) {
                    commands += command.toMap()["name"].toString();
                }
            }
        }
        return commands;
    }

private:
    QVariant call(const char *function) const
    {
        QVariant said;
        QMetaObject::invokeMethod(m_holder.get(), function, Q_RETURN_ARG(QVariant, said));
        return said;
    }

    std::unique_ptr<QObject> m_holder;
};

/// What a screen reader reads in an item.
QStringList namesIn(QQuickItem *item)
{
    QStringList names;
    if (QAccessibleInterface *read = QAccessible::queryAccessibleInterface(item)) {
        names.append(read->text(QAccessible::Name));
    }
    for (QQuickItem *child : item->childItems()) {
        names += namesIn(child);
    }
    return names;
}

} // namespace

/// What the keys do, and the table that says so.
class KeysTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKeyIsNamedOnce()
    {
        const Window window;
        const Table table(*window.studio.engine);
        QVERIFY(table.groups().size() >= 4);
        const QStringList commands = table.commands();
        for (const QVariant &group : table.groups()) {
            QStringList keys;
            for (const QVariant &row : group.toMap()["rows"].toList()) {
                QVERIFY(!row.toMap()["text"].toString().isEmpty());
                for (const QVariant &command : row.toMap()["commands"].toList()) {
                    keys += command.toMap()["keys"].toStringList();
                }
            }
            for (const QString &key : keys) {
                QCOMPARE(keys.count(key), 1);
                const QKeySequence sequence = QKeySequence::fromString(key);
                QVERIFY2(sequence.count() == 1 && sequence[0].key() != Qt::Key_unknown, qPrintable(key));
            }
        }
        for (const QString &command : commands) {
            QCOMPARE(commands.count(command), 1);
        }
    }

    void everyShortcutOfTheWindowIsOfTheTable()
    {
        const Window window;
        const QStringList commands = Table(*window.studio.engine).commands();
        int shortcuts = 0;
        for (const QObject *object : window.studio.window->findChildren<QObject *>()) {
            if (object->inherits("QQuickShortcut")) {
                ++shortcuts;
                QVERIFY(commands.contains(object->property("command").toString()));
                QVERIFY(!object->property("sequences").toList().isEmpty());
            }
        }
        QVERIFY(shortcuts >= 8);
    }

    void theListSaysEveryRowOfTheTable()
    {
        const Window window;
        window.press("F1");
        QVERIFY(window.studio.find("keys.close"));
        const QStringList names = namesIn(window.studio.find("keys.flickable"));
        const Table table(*window.studio.engine);
        for (const QVariant &group : table.groups()) {
            QVERIFY(names.contains(group.toMap()["title"].toString()));
            for (const QVariant &row : group.toMap()["rows"].toList()) {
                const QString said = row.toMap()["text"].toString() + QStringLiteral("：")
                    + table.labels(row).join(QStringLiteral("，"));
                QVERIFY2(names.contains(said), qPrintable(said));
            }
        }
        window.press("Escape");
        QVERIFY(waitUntil([&] { return !window.studio.find("keys.close"); }));
        window.press("Ctrl+?");
        QVERIFY(window.studio.find("keys.close"));
        window.studio.click("keys.close");
        QVERIFY(waitUntil([&] { return !window.studio.find("keys.close"); }));
        window.studio.click("moreSettings");
        window.studio.click("menu.keys");
        QVERIFY(waitUntil([&] { return window.studio.find("keys.close") != nullptr; }));
    }

    void keysAreShownAsTheyStandOnTheKeyboard()
    {
        QCOMPARE(KeySequences::labels({"Ctrl+Return", "Ctrl+Enter"}), QStringList({"Ctrl+Enter"}));
        QCOMPARE(KeySequences::labels({"Space", "PgUp", "Shift+Down", "Ctrl+,", "F1"}),
            QStringList({"空白鍵", "Page Up", "Shift+↓", "Ctrl+,", "F1"}));
        QVERIFY(KeySequences::contains({"PgUp"}, Qt::Key_PageUp, Qt::KeypadModifier));
        QVERIFY(!KeySequences::contains({"PgUp"}, Qt::Key_PageUp, Qt::ShiftModifier));
        QVERIFY(!KeySequences::contains({}, Qt::Key_PageUp, 0));
    }

    void theSpaceBarStartsWhereNothingElseWantsIt()
    {
        const Window window;
        QCOMPARE(window.focused(), "rest");
        window.press("Space");
        QVERIFY(window.isRunning());
        window.press("Space");
        QVERIFY(!window.isRunning());
    }

    void theSpaceBarDoesNothingElsewhere_data()
    {
        QTest::addColumn<QString>("item");
        QTest::addRow("slider") << "inspector.fontSize.slider";
        QTest::addRow("transcript") << "card.lines";
        QTest::addRow("button") << "inspector";
        QTest::addRow("picker") << "languageMenu";
        QTest::addRow("switcher") << "workspace.live";
    }
    void theSpaceBarDoesNothingElsewhere()
    {
        QFETCH(const QString, item);
        const Window window;
        QVERIFY(window.focus(item));
        window.press("Space");
        QVERIFY(!window.isRunning() && !window.studio.live->isStarting());
    }

    void aSpaceBarThatIsHeldDownStartsOnce()
    {
        const Window window;
        window.hold(5);
        QVERIFY(window.isRunning());
        window.press("Escape"); // is no answer to a session that runs
        QVERIFY(window.isRunning());
    }

    void escapeFreesTheSpaceBar()
    {
        const Window window;
        QVERIFY(window.focus("card.lines"));
        window.press("Escape");
        QCOMPARE(window.focused(), "rest");
        window.press("Space");
        QVERIFY(window.isRunning());
    }

    void theTranscriptIsScrolledFromAnywhere()
    {
        Window window;
        window.press("Space");
        window.say(40);
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        for (const char *item : {"rest", "inspector", "card.lines"}) {
            QVERIFY(window.focus(item));
            window.press("PgUp");
            QVERIFY(!window.isAtNewest());
            window.press("PgDown");
            QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
            window.press("Home");
            QVERIFY(window.studio.object("card.lines").property("atYBeginning").toBool());
            window.press("End");
            QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        }
    }

    void theSettingsAreShownAndGetTheKeyboard()
    {
        const Window window;
        window.studio.content().setProperty("isInspectorVisible", false);
        settle();
        window.press("Ctrl+,");
        QVERIFY(window.studio.content().property("isInspectorVisible").toBool());
        const QQuickItem *item = window.studio.window->activeFocusItem();
        QVERIFY(item != nullptr);
        QVERIFY(qobject_cast<QQuickItem *>(&window.studio.object("inspectorPanel"))->isAncestorOf(item));
    }

    void theWindowClosesAsByItsButton_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addRow("W") << "Ctrl+W";
        QTest::addRow("Q") << "Ctrl+Q";
    }
    void theWindowClosesAsByItsButton()
    {
        QFETCH(const QString, keys);
        Window window;
        window.press("Ctrl+Return");
        window.say(1);
        QVERIFY(window.isRunning());
        window.press(keys.toLatin1());
        QVERIFY(waitUntil([&] { return !window.studio.window->isVisible(); }));
        QVERIFY(!window.isRunning());
        QVERIFY(QDir(window.folder.filePath("Drafts")).exists()); // nothing said is lost
    }

    void aQuestionKeepsTheWindowOpen()
    {
        Window window;
        window.press("Ctrl+Return");
        window.say(1);
        window.press("Ctrl+Return");
        window.studio.click("clear");
        QVERIFY(waitUntil([&] { return window.studio.find("clearConfirmation.cancel") != nullptr; }));
        window.press("Ctrl+W");
        QVERIFY(window.studio.window->isVisible());
    }
};

LUMAPHONE_OFFSCREEN_TEST(KeysTest)

} // namespace keystest

#include "KeysTest.moc"
