#include "app/LibraryFixture.h"
#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QAccessible>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QTest>

#include <algorithm>

namespace transcriptlibraryviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The library workspace over a library, in a window.
struct Fixture : LibraryFixture
{
    std::unique_ptr<TranscriptLibraryWorkspaceModel> workspace;
    std::unique_ptr<ViewUnderTest> view;

    ViewUnderTest &open()
    {
        workspace = std::make_unique<TranscriptLibraryWorkspaceModel>(store, locale);
        view = std::make_unique<ViewUnderTest>("Library", "TranscriptLibraryWorkspace",
            QVariantMap {{"workspace", QVariant::fromValue(workspace.get())}});
        return *view;
    }
    /// The lines come to be edited, and the keyboard to the note before them.
    bool editFromTheNote()
    {
        const bool isEditing = view->click("library.edit")
            && waitUntil([this] { return view->isShown("transcriptLine.source"); });
        if (isEditing) {
            view->find("library.note.field")->forceActiveFocus();
        }
        return isEditing;
    }
    /// Three sessions, the newest of them with a note and terms.
    TranscriptRecordMetadata fill()
    {
        save("產品發表會", {"Good morning everyone", "Today we have three things to show you"});
        save("英文閱讀課", {"The quick brown fox jumps over the lazy dog"});
        const TranscriptRecordMetadata newest = save("設計週會：字幕面板與捷徑",
            {"ちょっと待って、今のアイデアめちゃくちゃ良くない？", "まず来月の予定から確認しましょう。",
                "新しい企画について、もう少し詳しく話します。"});
        TranscriptDocument document = store.loadRecord(newest.id);
        document.metadata.note = "下週前確認字級與不透明度的預設值。";
        document.metadata.sourceLanguage = AppleSystemSpeechLanguage::japanese;
        const QStringList translations {
            "等一下，剛剛那個點子也太可以了吧？", "我們先從下個月的行程開始確認吧。", ""};
        for (int i = 0; i < 3; ++i) {
            document.lines[i].translatedText = translations[i];
            document.lines[i].sourceLanguage = AppleSystemSpeechLanguage::japanese;
        }
        document.metadata.glossaryTerms
            = {{countedUuid(5), "Lumaphone", "Lumaphone", LumaphoneGlossaryTermMode::preserve},
                {countedUuid(6), "企画", "企劃", LumaphoneGlossaryTermMode::translate}};
        store.update(document);
        return store.loadRecord(newest.id).metadata;
    }
};

QStringList sentences(int count)
{
    QStringList sentences;
    for (int number = 0; number < count; ++number) {
        sentences << QStringLiteral("Sentence number %1 of a very long day").arg(number);
    }
    return sentences;
}

QString accessibleNameOfFocus(ViewUnderTest &view)
{
    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(view.window().activeFocusItem());
    return field == nullptr ? QString() : field->text(QAccessible::Name);
}

/// Whether some of the item lies within the view it is scrolled in.
bool isInView(const QQuickItem *item, const QQuickItem *view)
{
    if (item == nullptr) {
        return false;
    }
    const QRectF seen = view->mapRectToScene({0, 0, view->width(), view->height()});
    return seen.contains(item->mapRectToScene({0, 0, item->width(), item->height()}).center());
}

/// Whether the cursor can be seen in the transcript.
bool isFocusInView(ViewUnderTest &view)
{
    const QQuickItem *field = view.window().activeFocusItem();
    const QQuickItem *reader = view.find("library.reader");
    const QRectF cursor = field->mapRectToScene(field->property("cursorRectangle").toRectF());
    return reader->mapRectToScene({0, 0, reader->width(), reader->height()}).contains(cursor);
}

} // namespace

class TranscriptLibraryViewTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyLibrarySaysSo()
    {
        Fixture f;
        auto &view = f.open();
        QCOMPARE(view.textOf("library.empty"), QString("尚未儲存任何字幕紀錄。"));
        QCOMPARE(view.textOf("library.noSelection"), QString("選擇一筆字幕紀錄"));
        QVERIFY(!view.isShown("library.title"));
        view.photograph("library-empty");
    }

    void theFirstRecordIsOpen()
    {
        Fixture f;
        const auto newest = f.fill();
        auto &view = f.open();
        QCOMPARE(view.textOf("library.title"), newest.title);
        QCOMPARE(view.textOf("library.subtitle"), f.workspace->subtitle());
        QVERIFY(!view.isShown("library.empty") && !view.isShown("library.noSelection"));
        QVERIFY(!view.isShown("library.save") && !view.isShown("library.error"));
        view.photograph("library-selected");
        view.setDark(true);
        view.photograph("library-selected-dark");
    }

    void aSearchWithoutMatchSaysSo()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        view.press(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(view.focusedName(), QString("library.search.field"));
        QVERIFY(view.type("library.search", "fox"));
        QVERIFY(
            waitUntil([&] { return view.isShown("library.record.0") && !view.isShown("library.record.1"); }));
        QVERIFY(view.type("library.search", "nowhere"));
        QCOMPARE(view.textOf("library.empty"), QString("找不到符合的字幕紀錄。"));
        view.photograph("library-no-match");
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return view.isShown("library.record.2"); }));
    }

    void rowsAreChosenByPointerAndKeyboard()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(view.click("library.record.2"));
        QCOMPARE(view.textOf("library.title"), QString("產品發表會"));
        view.press(Qt::Key_Up);
        QCOMPARE(view.textOf("library.title"), QString("英文閱讀課"));
        view.press(Qt::Key_Down);
        QCOMPARE(view.textOf("library.title"), QString("產品發表會"));
    }

    void aTitleIsEditedAndSavedByKeyboard()
    {
        Fixture f;
        const auto newest = f.fill();
        auto &view = f.open();
        QVERIFY(view.type("library.title", "新標題"));
        QVERIFY(view.isShown("library.save") && view.isShown("library.revert"));
        view.press(Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!view.isShown("library.save"));
        QCOMPARE(f.store.loadRecord(newest.id).metadata.title, QString("新標題"));
        QVERIFY(view.type("library.title", "又一個"));
        QVERIFY(view.click("library.revert"));
        QCOMPARE(view.textOf("library.title"), QString("新標題"));
    }

    void linesAreEditedInTheirFields()
    {
        Fixture f;
        const auto newest = f.fill();
        auto &view = f.open();
        QVERIFY(!view.isShown("transcriptLine.source"));
        QVERIFY(view.click("library.edit"));
        QVERIFY(waitUntil([&] { return view.isShown("transcriptLine.translation"); }));
        QQuickItem *field = view.find("transcriptLine.translation.field");
        QVERIFY(field != nullptr);
        field->forceActiveFocus();
        view.press(Qt::Key_End, Qt::ControlModifier);
        view.press(Qt::Key_X);
        QVERIFY(f.workspace->hasUnsavedEdits());
        view.photograph("library-editing");
        QVERIFY(view.click("library.save"));
        bool isStored = false;
        for (const SavedTranscriptLine &line : f.store.loadRecord(newest.id).lines) {
            isStored = isStored || line.translatedText.endsWith('x');
        }
        QVERIFY(isStored);
    }

    void theNoteIsEdited()
    {
        Fixture f;
        const auto newest = f.fill();
        auto &view = f.open();
        QVERIFY(view.type("library.note", "abc"));
        QVERIFY(view.click("library.save"));
        QCOMPARE(f.store.loadRecord(newest.id).metadata.note, QString("abc"));
    }

    void deletingAsksAndCanBeCancelled()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(view.click("library.delete"));
        QVERIFY(waitUntil([&] { return view.isShown("library.deleteAlert.cancel"); }));
        view.photograph("library-deleting");
        QVERIFY(view.click("library.deleteAlert.cancel"));
        QVERIFY(waitUntil([&] { return !f.workspace->hasPendingDelete(); }));
        QCOMPARE(f.store.records().size(), 3);
        QVERIFY(view.click("library.delete"));
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !f.workspace->hasPendingDelete(); }));
        QCOMPARE(f.store.records().size(), 3);
    }

    void deletingRemovesTheRecord()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(view.click("library.delete"));
        QVERIFY(view.click("library.deleteAlert.confirm"));
        QVERIFY(waitUntil([&] { return f.store.records().size() == 2; }));
        QVERIFY(waitUntil([&] { return view.isShown("library.noSelection"); }));
    }

    void aBrokenRecordOffersWhatCanBeDone()
    {
        Fixture f;
        f.fill();
        const auto broken = f.save("壞掉的紀錄");
        f.damage(broken);
        auto &view = f.open();
        QCOMPARE(view.textOf("library.broken"), QString("無法開啟這筆字幕紀錄"));
        QVERIFY(view.isShown("library.error"));
        view.photograph("library-broken");
        QVERIFY(view.click("library.broken.reveal"));
        QCOMPARE(f.viewer.revealed.size(), 1);
        QVERIFY(view.click("library.broken.delete"));
        QVERIFY(view.click("library.deleteAlert.confirm"));
        QVERIFY(waitUntil([&] { return f.store.records().size() == 3; }));
    }

    void textsAreCopiedFromTheMenu()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(view.click("library.copy"));
        QVERIFY(view.click("library.copy.translation"));
        QVERIFY(waitUntil([&] { return QGuiApplication::clipboard()->text().startsWith("等一下"); }));
    }

    void everyFormatIsOfferedInTheMenu()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(view.click("library.export"));
        QVERIFY(waitUntil([&] { return view.isShown("library.export.json"); }));
        QCOMPARE(view.textOf("library.export.md"), QString("匯出 Markdown…"));
        QCOMPARE(view.textOf("library.export.txt"), QString("匯出雙語純文字…"));
        QCOMPARE(view.textOf("library.export.srt"), QString("匯出 SRT 字幕…"));
        QCOMPARE(view.textOf("library.export.vtt"), QString("匯出 WebVTT 字幕…"));
        QCOMPARE(view.textOf("library.export.json"), QString("匯出 JSON…"));
    }

    void everyControlCanBeReachedByTab()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        view.press(Qt::Key_F, Qt::ControlModifier);
        QStringList visited;
        for (int i = 0; i < 30; ++i) {
            view.press(Qt::Key_Tab);
            visited << view.focusedName();
        }
        for (const char *name :
            {"library.search.field", "library.record.0", "library.title.field", "library.edit",
                "library.copy", "library.export", "library.reveal", "library.delete", "library.note.field"}) {
            QVERIFY2(visited.contains(name), name);
        }
    }

    void aLongTitleBeginsAtItsBeginningUnlessItIsEdited()
    {
        Fixture f;
        f.save(QStringLiteral("Lumaphone Transcript ") + QString("very ").repeated(40) + "long");
        auto &view = f.open();
        QQuickItem *field = view.find("library.title.field");
        QVERIFY(field != nullptr);
        QQuickItem *elided = view.find("library.title.elided");
        QVERIFY(elided != nullptr);
        QVERIFY(elided->property("truncated").toBool());
        QCOMPARE(elided->property("text"), field->property("text"));
        QCOMPARE(field->property("color").value<QColor>().alpha(), 0);
        view.photograph("library-long-title");
        field->forceActiveFocus();
        QVERIFY(!view.isShown("library.title.elided"));
        QCOMPARE(field->property("color").value<QColor>().alpha(), 255);
        QCOMPARE(field->property("cursorPosition"), field->property("length"));
        view.find("library.search.field")->forceActiveFocus();
        QVERIFY(view.isShown("library.title.elided"));
        QCOMPARE(field->property("cursorPosition").toInt(), 0);
    }

    void aShortTitleIsNotDrawnTwice()
    {
        Fixture f;
        f.fill();
        auto &view = f.open();
        QVERIFY(!view.isShown("library.title.elided"));
    }

    void rowsHaveEditorsOnlyWhileTheyAreEdited()
    {
        Fixture f;
        f.save("兩百段", sentences(200));
        auto &view = f.open();
        const auto editors = [&] {
            const auto items = view.find("library.reader")->findChildren<QQuickItem *>();
            return std::count_if(items.begin(), items.end(),
                [](const QQuickItem *item) { return item->objectName() == "transcriptLine.source"; });
        };
        QCOMPARE(editors(), 0);
        QVERIFY(view.click("library.edit"));
        QVERIFY(waitUntil([&] { return view.isShown("transcriptLine.source"); }));
        QVERIFY(editors() < 20);
        QVERIFY(view.click("library.edit"));
        QVERIFY(waitUntil([&] { return editors() == 0; }));
    }

    void tabLeadsThroughTheLinesInTheirOrderAndTheViewFollows()
    {
        Fixture f;
        f.save("四十段", sentences(40));
        auto &view = f.open();
        QVERIFY(f.editFromTheNote());
        for (int line = 1; line <= 40; ++line) {
            for (const QString &name : {QStringLiteral("第 %1 段原文").arg(line),
                     QStringLiteral("第 %1 段台灣繁中譯文").arg(line)}) {
                view.press(Qt::Key_Tab);
                QCOMPARE(accessibleNameOfFocus(view), name);
                QVERIFY2(isFocusInView(view), qPrintable(name));
            }
        }
        view.press(Qt::Key_Tab);
        QVERIFY(!view.focusedName().startsWith("transcriptLine"));
        QVERIFY(view.focusedName() != QString("library.note.field"));
    }

    void tabLeadsBackToTheNoteAndOutOfTheTranscript()
    {
        Fixture f;
        f.save("三段", sentences(3));
        auto &view = f.open();
        QVERIFY(f.editFromTheNote());
        view.press(Qt::Key_Tab);
        view.press(Qt::Key_Tab);
        view.press(Qt::Key_Tab);
        QCOMPARE(accessibleNameOfFocus(view), QString("第 2 段原文"));
        for (const char *name : {"第 1 段台灣繁中譯文", "第 1 段原文", "備註"}) {
            view.press(Qt::Key_Backtab, Qt::ShiftModifier);
            QCOMPARE(accessibleNameOfFocus(view), QString(name));
        }
        view.press(Qt::Key_Backtab, Qt::ShiftModifier); // the transcript itself
        view.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(view.focusedName(), QString("library.delete"));
    }

    void anEditedLineKeepsTheKeyboardWhileTheViewIsElsewhere()
    {
        Fixture f;
        const auto record = f.save("兩百段", sentences(200));
        auto &view = f.open();
        QVERIFY(f.editFromTheNote());
        view.press(Qt::Key_Tab);
        auto *reader = view.find("library.reader");
        reader->setProperty("contentY", 9000);
        drawFrame(view.window());
        QVERIFY(!isFocusInView(view));
        view.press(Qt::Key_X);
        QVERIFY(isFocusInView(view));
        QVERIFY(view.click("library.save"));
        const auto lines = f.store.loadRecord(record.id).lines;
        QVERIFY(lines.first().sourceText.startsWith('x'));
        QCOMPARE(std::count_if(lines.begin(), lines.end(),
                     [](const SavedTranscriptLine &line) { return line.sourceText.startsWith('x'); }),
            1);
    }

    void escapeLeavesTheFieldForTheTranscript()
    {
        Fixture f;
        f.save("三段", sentences(3));
        auto &view = f.open();
        QVERIFY(f.editFromTheNote());
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), QString("transcriptLine.source.field"));
        view.press(Qt::Key_Escape);
        QVERIFY(view.focusedName().isEmpty());
        QVERIFY(view.find("library.reader")->hasActiveFocus());
        view.press(Qt::Key_Return);
        QCOMPARE(accessibleNameOfFocus(view), QString("第 1 段原文"));
    }

    void aGrowingNoteIsFollowed()
    {
        Fixture f;
        f.save("四十段", sentences(40));
        auto &view = f.open();
        auto *note = view.find("library.note.field");
        QVERIFY(note != nullptr);
        note->forceActiveFocus();
        const double top = note->mapToScene({}).y();
        for (int line = 0; line < 3; ++line) {
            view.press(Qt::Key_Return);
        }
        QCOMPARE(note->mapToScene({}).y(), top); // there is room: it grows downwards
        for (int line = 0; line < 60; ++line) {
            view.press(Qt::Key_Return);
            QVERIFY(isFocusInView(view));
        }
        view.press(Qt::Key_Home, Qt::ControlModifier);
        QVERIFY(isFocusInView(view));
    }

    void aRecordListThatGetsTheKeyboardShowsItsChosenRow()
    {
        Fixture f;
        for (int number = 0; number < 30; ++number) {
            f.save(QStringLiteral("第 %1 場").arg(number));
        }
        auto &view = f.open();
        auto *list = view.find("library.list");
        list->setProperty("contentY", 1000);
        drawFrame(view.window());
        QVERIFY(!isInView(view.find("library.record.0"), list));
        view.find("library.search.field")->forceActiveFocus();
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), QString("library.record.0"));
        QVERIFY(isInView(view.find("library.record.0"), list));
    }

    void aLongTranscriptKeepsFewRowsAlive()
    {
        Fixture f;
        f.save("五千段", sentences(5000));
        auto &view = f.open();
        QCOMPARE(f.workspace->draftLines()->count(), 5000);
        auto *reader = view.find("library.reader");
        QVERIFY(reader != nullptr);
        QVERIFY(reader->property("count").toInt() == 5000);
        QVERIFY(reader->findChildren<QQuickItem *>().size() < 2000);
        reader->forceActiveFocus();
        view.press(Qt::Key_End);
        QVERIFY(waitUntil([&] { return reader->property("atYEnd").toBool(); }));
    }
};

LUMAPHONE_OFFSCREEN_TEST(TranscriptLibraryViewTest)

} // namespace transcriptlibraryviewtest

#include "TranscriptLibraryViewTest.moc"
