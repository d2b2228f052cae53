#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/glossary/GlossarySettingsModel.h"
#include "base/AtomicFile.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "support/Coroutines.h"
#include "support/GlossaryTerms.h"

#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

namespace glossarysettingsviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The glossary sheet over a store, in a window.
struct Fixture
{
    QTemporaryDir folder;
    LumaphoneGlossaryStore store {folder.filePath("glossary"), {}};
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    GlossarySettingsModel model {store, mainQueue, &QUuid::createUuid, std::chrono::hours(1)};
    std::unique_ptr<ViewUnderTest> view;

    ~Fixture()
    {
        view.reset();
        mainQueue->close();
    }
    ViewUnderTest &open()
    {
        view = std::make_unique<ViewUnderTest>("Glossary", "GlossarySettingsSheet",
            QVariantMap {{"settings", QVariant::fromValue(&model)}}, QSize(1040, 720));
        return *view;
    }
    void fill()
    {
        store.add(preserved("Lumaphone"));
        store.add(translated("latency", "延遲時間"));
        store.add(caseSensitive(preserved("Qt")));
        store.add(disabled(translated("caption", "字幕")));
    }
};

} // namespace

class GlossarySettingsViewTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyGlossarySaysWhatItIsFor()
    {
        Fixture f;
        auto &view = f.open();
        QCOMPARE(view.textOf("glossary.empty"), QString("先加 Lumaphone、Codex、專案代號，翻譯就比較聽話。"));
        QVERIFY(!view.find("glossary.new.add")->isEnabled());
        QVERIFY(!view.find("glossary.export")->isEnabled());
        QVERIFY(waitUntil([&] { return view.focusedName() == "glossary.new.source.field"; }));
        view.photograph("glossary-empty");
    }

    void aRowShowsItsTargetEvenIfItIsTheSource()
    {
        Fixture f;
        f.store.add(translated("Qt", "Qt"));
        f.store.add(preserved("Lumaphone"));
        auto &view = f.open();
        QVERIFY(waitUntil([&] { return view.isShown("glossary.term.1.text"); }));
        QCOMPARE(view.textOf("glossary.term.0.text"), QString("Qt → Qt"));
        QCOMPARE(view.textOf("glossary.term.1.text"), QString("Lumaphone"));
    }

    void aDeletedTermComesBackByPointer()
    {
        Fixture f;
        f.fill();
        const auto before = f.store.terms();
        auto &view = f.open();
        QVERIFY(!view.isShown("glossary.deletion"));
        QVERIFY(view.click("glossary.term.1.delete"));
        QCOMPARE(view.textOf("glossary.deletion"), QString("已刪除「latency」。"));
        view.photograph("glossary-deleted");
        view.setDark(true);
        view.photograph("glossary-deleted-dark");
        view.setDark(false);
        QVERIFY(view.click("glossary.deletion.action"));
        QCOMPARE(f.store.terms(), before);
        QVERIFY(!view.isShown("glossary.deletion"));
    }

    void aDeletedTermComesBackByKeyboard()
    {
        Fixture f;
        f.fill();
        const auto before = f.store.terms();
        auto &view = f.open();
        QVERIFY(waitUntil([&] { return view.focusedName() == "glossary.new.source.field"; }));
        view.find("glossary.list")->forceActiveFocus();
        view.press(Qt::Key_Down);
        view.press(Qt::Key_Delete);
        QCOMPARE(f.store.terms().size(), before.size() - 1);
        view.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.store.terms(), before);
        QCOMPARE(view.find("glossary.list")->property("currentIndex").toInt(), 1);

        view.press(Qt::Key_Delete);
        for (int i = 0; i < 20 && view.focusedName() != "glossary.deletion.action"; ++i) {
            view.press(Qt::Key_Tab);
        }
        QCOMPARE(view.focusedName(), QString("glossary.deletion.action"));
        view.press(Qt::Key_Space);
        QCOMPARE(f.store.terms(), before);
        QVERIFY(view.find("glossary.list")->hasActiveFocus());
    }

    void aTermIsAddedByKeyboard()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(waitUntil([&] { return view.focusedName() == "glossary.new.source.field"; }));
        QVERIFY(view.type("glossary.new.source", "Qt"));
        QVERIFY(view.find("glossary.new.add")->isEnabled());
        QVERIFY(view.type("glossary.new.target", "Qt"));
        view.press(Qt::Key_Return);
        QCOMPARE(lines(f.store.terms()), QStringList("Qt|Qt|preserve||true|false"));
        QVERIFY(!view.isShown("glossary.empty"));
        QCOMPARE(view.textOf("glossary.new.source"), QString());
        QCOMPARE(view.focusedName(), QString("glossary.new.source.field"));
    }

    void aTermIsAddedByPointer()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.type("glossary.new.source", "fox"));
        QVERIFY(view.click("glossary.new.caseSensitive"));
        QVERIFY(view.click("glossary.new.add"));
        QCOMPARE(lines(f.store.terms()), QStringList("fox||preserve||true|true"));
    }

    void rowsAreToggledEditedAndDeleted()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        view.photograph("glossary-filled");
        view.setDark(true);
        view.photograph("glossary-filled-dark");
        view.setDark(false);
        QVERIFY(view.click("glossary.term.1.toggle"));
        QVERIFY(!f.store.terms()[1].isEnabled);
        QVERIFY(view.click("glossary.term.2.delete"));
        QCOMPARE(sources(f.store.terms()), QStringList({"Lumaphone", "latency", "caption"}));
        QVERIFY(view.click("glossary.term.1.edit"));
        QVERIFY(waitUntil([&] { return view.isShown("glossaryEditor.source"); }));
        view.photograph("glossary-editing");
        QVERIFY(view.type("glossaryEditor.target", "delay"));
        QVERIFY(view.type("glossaryEditor.note", "note"));
        QVERIFY(view.click("glossaryEditor.save"));
        QCOMPARE(line(f.store.terms()[1]), QString("latency|delay|translate|note|false|false"));
        QVERIFY(waitUntil([&] { return !view.isShown("glossaryEditor.source"); }));
    }

    void theListIsUsedByKeyboard()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        // The sheet gives the keyboard to its first field once it is open.
        QVERIFY(waitUntil([&] { return view.focusedName() == "glossary.new.source.field"; }));
        view.find("glossary.list")->forceActiveFocus();
        view.press(Qt::Key_Down);
        view.press(Qt::Key_Space);
        QVERIFY(!f.store.terms()[1].isEnabled);
        view.press(Qt::Key_Delete);
        QCOMPARE(f.store.terms().size(), 3);
        view.press(Qt::Key_Return);
        QVERIFY(waitUntil([&] { return view.focusedName() == "glossaryEditor.source.field"; }));
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !f.model.isEditing(); }));
        QVERIFY(view.isShown("glossary.list"));
    }

    void aFailedImportIsShownUntilItIsDismissed()
    {
        Fixture f;
        auto &view = f.open();
        replaceFile(f.folder.filePath("notes.txt"), "x", Durability::renamed);
        f.model.importFiles({QUrl::fromLocalFile(f.folder.filePath("notes.txt"))});
        QVERIFY(waitUntil([&] { return view.isShown("glossary.importError"); }));
        QCOMPARE(view.textOf("glossary.importError"), QString("Glossary 只支援 JSON、YAML 或 CSV。"));
        view.photograph("glossary-import-error");
        QVERIFY(view.click("glossary.importError.dismiss"));
        QVERIFY(!view.isShown("glossary.importError"));
    }

    void aFileIsDroppedOntoTheSheet()
    {
        Fixture f;
        auto &view = f.open();
        replaceFile(f.folder.filePath("terms.csv"), "fox,狐狸", Durability::renamed);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(f.folder.filePath("terms.csv"))});
        const QQuickItem *list = view.find("glossary.list");
        const QPoint middle = list->mapToScene({list->width() / 2, list->height() / 2}).toPoint();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view.window(), &enter);
        settle();
        view.photograph("glossary-dropping");
        QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view.window(), &drop);
        QVERIFY(drop.isAccepted());
        QVERIFY(waitUntil([&] { return f.store.terms().size() == 1; }));
        QVERIFY(waitUntil([&] { return view.textOf("glossary.notice") == "已加入 1 個術語。"; }));
    }

    void escapeClosesTheSheet()
    {
        Fixture f;
        auto &view = f.open();
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !view.isShown("glossary.list"); }));
    }

    void everyControlCanBeReachedByTab()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QStringList visited;
        for (int i = 0; i < 20; ++i) {
            view.press(Qt::Key_Tab);
            visited << view.focusedName();
        }
        for (const char *name : {"glossary.new.source.field", "glossary.new.target.field",
                 "glossary.new.mode", "glossary.new.caseSensitive", "glossary.term.0", "glossary.import",
                 "glossary.export", "glossary.reveal", "glossary.done"}) {
            QVERIFY2(visited.contains(name), name);
        }
    }
};

LUMAPHONE_OFFSCREEN_TEST(GlossarySettingsViewTest)

} // namespace glossarysettingsviewtest

#include "GlossarySettingsViewTest.moc"
