#include "app/LibraryFixture.h"
#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "support/Coroutines.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

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

    void aLongTranscriptKeepsFewRowsAlive()
    {
        Fixture f;
        QStringList sources;
        for (int i = 0; i < 5000; ++i) {
            sources << QString("Sentence number %1 of a very long day").arg(i);
        }
        f.save("五千段", sources);
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
