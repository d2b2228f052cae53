#include "app/library/TranscriptLibraryWorkspaceModel.h"

#include "app/LibraryFixture.h"
#include "app/OffscreenTest.h"
#include "support/Coroutines.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace transcriptlibraryworkspacemodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Fixture : LibraryFixture
{
    std::unique_ptr<TranscriptLibraryWorkspaceModel> workspace;

    TranscriptLibraryWorkspaceModel &open()
    {
        workspace = std::make_unique<TranscriptLibraryWorkspaceModel>(store, locale);
        return *workspace;
    }
    QString storedTitle(const TranscriptRecordMetadata &record)
    {
        return store.loadRecord(record.id).metadata.title;
    }
};

QString clipboard()
{
    return QGuiApplication::clipboard()->text();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

QString firstSource(const TranscriptLibraryWorkspaceModel &workspace)
{
    return const_cast<TranscriptLibraryWorkspaceModel &>(workspace)
        .draftLines()
        ->index(0)
        .data(TranscriptLinesModel::SourceTextRole)
        .toString();
}

void editFirst(TranscriptLibraryWorkspaceModel &workspace, const QString &source)
{
    TranscriptLinesModel &lines = *workspace.draftLines();
    QVERIFY(lines.setData(lines.index(0), source, TranscriptLinesModel::SourceTextRole));
}

} // namespace

class TranscriptLibraryWorkspaceModelTest : public QObject
{
    Q_OBJECT

private slots:
    void theEmptyListSaysWhy()
    {
        Fixture f;
        auto &workspace = f.open();
        QSignalSpy changes(&workspace, &TranscriptLibraryWorkspaceModel::emptyListTextChanged);
        QCOMPARE(workspace.emptyListText(), QString("尚未儲存任何字幕紀錄。"));
        workspace.setSearchText("x");
        QCOMPARE(workspace.emptyListText(), QString("找不到符合的字幕紀錄。"));
        workspace.setSearchText(" ");
        QCOMPARE(workspace.emptyListText(), QString("尚未儲存任何字幕紀錄。"));
        f.save("one");
        QCOMPARE(workspace.emptyListText(), QString());
        workspace.setSearchText("nowhere to be found");
        QCOMPARE(workspace.emptyListText(), QString("找不到符合的字幕紀錄。"));
        QCOMPARE(changes.count(), 4);
    }

    void theSearchFiltersTheList()
    {
        Fixture f;
        f.save("Alpha", {"the quick fox"});
        f.save("Beta", {"the lazy dog"});
        auto &workspace = f.open();
        const QAbstractItemModelTester tester(workspace.records());
        QCOMPARE(workspace.records()->count(), 2);
        workspace.setSearchText("LAZY");
        QCOMPARE(workspace.records()->count(), 1);
        QCOMPARE(workspace.records()->records().front().title, QString("Beta"));
        f.save("Gamma", {"lazy, too"});
        QCOMPARE(workspace.records()->count(), 2);
        workspace.setSearchText({});
        QCOMPARE(workspace.records()->count(), 3);
    }

    void withoutASelectionTheFirstRecordIsSelected()
    {
        Fixture f;
        auto &workspace = f.open();
        workspace.selectInitialRecordIfNeeded();
        QCOMPARE(workspace.selectedID(), QString());
        const auto older = f.save("older");
        const auto newer = f.save("newer");
        workspace.selectInitialRecordIfNeeded();
        QCOMPARE(workspace.selectedID(), f.idText(newer));
        QCOMPARE(workspace.title(), QString("newer"));
        workspace.select(f.idText(older));
        workspace.selectInitialRecordIfNeeded();
        QCOMPARE(workspace.selectedID(), f.idText(older));
    }

    void selectingFillsEveryField()
    {
        Fixture f;
        TranscriptRecordMetadata record = f.save("title", {"one", "two"});
        TranscriptDocument document = f.store.loadRecord(record.id);
        document.metadata.note = "a note";
        document.metadata.glossaryTerms = {{countedUuid(5), "Qt", "Qt", LumaphoneGlossaryTermMode::preserve},
            {countedUuid(6), "fox", "狐狸", LumaphoneGlossaryTermMode::translate},
            {countedUuid(7), "KDE", "", LumaphoneGlossaryTermMode::preserve}};
        f.store.update(document);
        auto &workspace = f.open();
        QSignalSpy selections(&workspace, &TranscriptLibraryWorkspaceModel::selectedIDChanged);
        QVERIFY(!workspace.isLoaded());
        workspace.select(f.idText(record));
        QVERIFY(workspace.isLoaded());
        QCOMPARE(selections.count(), 1);
        QCOMPARE(workspace.selectedRow(), 0);
        QCOMPARE(workspace.title(), QString("title"));
        QCOMPARE(workspace.note(), QString("a note"));
        QCOMPARE(workspace.draftLines()->count(), 2);
        QCOMPARE(workspace.loadedMetadata()->id, record.id);
        QVERIFY(workspace.subtitle().endsWith(" · 英文 → 台灣繁中 · Apple Translation · 2 段"));
        QCOMPARE(workspace.glossaryTerms(), QStringList({"Qt", "fox → 狐狸", "KDE"}));
        QVERIFY(!workspace.hasUnsavedEdits());
    }

    void selectingByRowStaysInTheList()
    {
        Fixture f;
        const auto second = f.save("second");
        const auto first = f.save("first");
        auto &workspace = f.open();
        workspace.selectRow(1);
        QCOMPARE(workspace.selectedID(), f.idText(second));
        workspace.selectRow(2);
        workspace.selectRow(-1);
        QCOMPARE(workspace.selectedID(), f.idText(second));
        workspace.selectRow(0);
        QCOMPARE(workspace.selectedID(), f.idText(first));
        workspace.select("no identity");
        QCOMPARE(workspace.selectedID(), f.idText(first));
    }

    void aSelectionOutsideTheSearchHasNoRow()
    {
        Fixture f;
        const auto record = f.save("Alpha");
        f.save("Beta");
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        QCOMPARE(workspace.selectedRow(), 1);
        workspace.setSearchText("Alpha");
        QCOMPARE(workspace.selectedRow(), 0);
        workspace.setSearchText("Beta");
        QCOMPARE(workspace.selectedRow(), -1);
        QCOMPARE(workspace.title(), QString("Alpha"));
    }

    void aBrokenRecordIsSelectedButNotLoaded()
    {
        Fixture f;
        const auto broken = f.save("broken");
        const auto whole = f.save("whole");
        f.damage(broken);
        auto &workspace = f.open();
        workspace.select(f.idText(whole));
        workspace.select(f.idText(broken));
        QCOMPARE(workspace.selectedID(), f.idText(broken));
        QVERIFY(!workspace.isLoaded());
        QVERIFY2(workspace.errorMessage().startsWith("Transcript Library 錯誤："),
            qPrintable(workspace.errorMessage()));
        QCOMPARE(workspace.title(), QString());
        QCOMPARE(workspace.draftLines()->count(), 0);
        workspace.setEditingTranscript(true);
        QVERIFY(!workspace.isEditingTranscript());
        workspace.select(f.idText(whole));
        QCOMPARE(workspace.errorMessage(), QString());
        QVERIFY(workspace.isLoaded());
    }

    void aRepairedRecordOpensWhenItIsSelectedAgain()
    {
        Fixture f;
        const auto record = f.save("broken");
        const QByteArray lines = contents(f.file(record, "lines.json"));
        f.damage(record);
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        replaceFile(f.file(record, "lines.json"), lines, Durability::renamed);
        workspace.select(f.idText(record));
        QVERIFY(workspace.isLoaded());
        QCOMPARE(workspace.errorMessage(), QString());
    }

    void whatWentWrongAtTheStartStaysUntilTheUserHasSeenIt()
    {
        Fixture f;
        f.save("one");
        replaceFile(f.folder.filePath("library/index.json"), "{", Durability::renamed);
        TranscriptLibraryStore reopened({
            .layout = TranscriptLibraryLayout::at(f.folder.filePath("library")),
            .areRevisions = [](const QString &, const QString &) { return false; },
            .clock = f.clock,
            .fileViewer = f.viewer,
            .makeUuid = countedUuids(),
            .locale = f.locale,
        });
        TranscriptLibraryWorkspaceModel workspace(reopened, f.locale);
        workspace.selectInitialRecordIfNeeded();
        QVERIFY(workspace.isLoaded());
        QVERIFY(workspace.errorMessage().contains("已從 1 個 session 資料夾重建索引"));
        workspace.dismissError();
        QCOMPARE(workspace.errorMessage(), QString());
    }

    void editsAreSavedTogether()
    {
        Fixture f;
        const auto record = f.save("old", {"one", "two"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        QSignalSpy unsaved(&workspace, &TranscriptLibraryWorkspaceModel::hasUnsavedEditsChanged);
        workspace.setEditingTranscript(true);
        workspace.setTitle("new");
        workspace.setNote("note");
        editFirst(workspace, "uno");
        QVERIFY(workspace.hasUnsavedEdits());
        QVERIFY(workspace.saveEdits());
        QVERIFY(!workspace.hasUnsavedEdits());
        QCOMPARE(unsaved.count(), 2);
        QVERIFY(workspace.isEditingTranscript());
        const TranscriptDocument stored = f.store.loadRecord(record.id);
        QCOMPARE(stored.metadata.title, QString("new"));
        QCOMPARE(stored.metadata.note, QString("note"));
        QCOMPARE(stored.lines.front().sourceText, QString("uno"));
        QCOMPARE(stored.lines.back().sourceText, QString("two"));
        QCOMPARE(workspace.records()->records().front().title, QString("new"));
        QCOMPARE(workspace.loadedMetadata()->title, QString("new"));
    }

    void takingBackATitleIsNoEdit()
    {
        Fixture f;
        const auto record = f.save("old");
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        workspace.setTitle("new");
        QVERIFY(workspace.hasUnsavedEdits());
        workspace.setTitle("old");
        QVERIFY(!workspace.hasUnsavedEdits());
    }

    void revertingShowsWhatIsStored()
    {
        Fixture f;
        const auto record = f.save("old", {"one"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        workspace.setEditingTranscript(true);
        workspace.setTitle("new");
        workspace.setNote("note");
        editFirst(workspace, "uno");
        workspace.revertEdits();
        QCOMPARE(workspace.title(), QString("old"));
        QCOMPARE(workspace.note(), QString());
        QCOMPARE(firstSource(workspace), QString("one"));
        QVERIFY(!workspace.hasUnsavedEdits());
        QVERIFY(!workspace.isEditingTranscript());
    }

    void anotherSelectionSavesTheEditsFirst()
    {
        Fixture f;
        const auto first = f.save("first");
        const auto second = f.save("second");
        auto &workspace = f.open();
        workspace.select(f.idText(first));
        workspace.setTitle("renamed");
        workspace.select(f.idText(second));
        QCOMPARE(workspace.title(), QString("second"));
        QCOMPARE(f.storedTitle(first), QString("renamed"));
    }

    void editsThatCannotBeSavedStay()
    {
        Fixture f;
        const auto first = f.save("first");
        const auto second = f.save("second");
        auto &workspace = f.open();
        workspace.select(f.idText(first));
        workspace.setTitle(QString("half a character ") + QChar(0xD800));
        workspace.select(f.idText(second));
        QCOMPARE(workspace.selectedID(), f.idText(first));
        QVERIFY(!workspace.errorMessage().isEmpty());
        QVERIFY(workspace.hasUnsavedEdits());
        QVERIFY(!workspace.finishEditing());
        workspace.setTitle("whole");
        QVERIFY(workspace.finishEditing());
        QCOMPARE(workspace.errorMessage(), QString());
        QCOMPARE(f.storedTitle(first), QString("whole"));
    }

    void theEndOfTheProgramSavesTheEdits()
    {
        Fixture f;
        const auto record = f.save("old");
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        workspace.setTitle("new");
        QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit");
        QCOMPARE(f.storedTitle(record), QString("new"));
    }

    void aRecordSavedAgainElsewhereIsShownAnew()
    {
        Fixture f;
        const auto record = f.save("title", {"one"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        LiveTranscript longer = f.live({"one", "two", "three"});
        longer.savedTranscriptID = record.id;
        f.store.save(longer, f.settings);
        QCOMPARE(workspace.draftLines()->count(), 3);
        QVERIFY(workspace.subtitle().endsWith("3 段"));
    }

    void whatTheUserHasChangedSurvivesASaveElsewhere()
    {
        Fixture f;
        const auto record = f.save("title", {"one"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        workspace.setNote("mine");
        LiveTranscript longer = f.live({"one", "two"});
        longer.savedTranscriptID = record.id;
        f.store.save(longer, f.settings);
        QCOMPARE(workspace.note(), QString("mine"));
        QVERIFY(workspace.hasUnsavedEdits());
        QCOMPARE(workspace.draftLines()->count(), 2);
        QVERIFY(workspace.saveEdits());
        QCOMPARE(f.store.loadRecord(record.id).lines.size(), 2);
        QCOMPARE(f.store.loadRecord(record.id).metadata.note, QString("mine"));
    }

    void editedLinesSurviveASaveElsewhere()
    {
        Fixture f;
        const auto record = f.save("title", {"one"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        editFirst(workspace, "uno");
        LiveTranscript longer = f.live({"one", "two"});
        longer.savedTranscriptID = record.id;
        f.store.save(longer, f.settings);
        QCOMPARE(workspace.draftLines()->count(), 1);
        QCOMPARE(firstSource(workspace), QString("uno"));
    }

    void deletingAsksFirst()
    {
        Fixture f;
        const auto keep = f.save("keep");
        const auto unwanted = f.save("unwanted");
        auto &workspace = f.open();
        workspace.requestDelete();
        QVERIFY(!workspace.hasPendingDelete());
        workspace.select(f.idText(unwanted));
        workspace.requestDelete();
        QVERIFY(workspace.hasPendingDelete());
        QCOMPARE(workspace.pendingDeleteTitle(), QString("unwanted"));
        workspace.cancelDelete();
        workspace.deletePendingRecord();
        QCOMPARE(f.store.records().size(), 2);
        workspace.requestDelete();
        workspace.setTitle("an edit that goes with it");
        workspace.deletePendingRecord();
        QVERIFY(!workspace.hasPendingDelete());
        QCOMPARE(f.store.records().size(), 1);
        QCOMPARE(f.store.records().front().id, keep.id);
        QVERIFY(!QFile::exists(f.file(unwanted, "")));
        QCOMPARE(workspace.selectedID(), QString());
        QVERIFY(!workspace.isLoaded());
        QVERIFY(!workspace.hasUnsavedEdits());
        QCOMPARE(workspace.title(), QString());
    }

    void aBrokenRecordCanBeDeleted()
    {
        Fixture f;
        const auto broken = f.save("broken");
        f.damage(broken);
        auto &workspace = f.open();
        workspace.select(f.idText(broken));
        workspace.requestDelete();
        workspace.deletePendingRecord();
        QCOMPARE(f.store.records().size(), 0);
        QCOMPARE(workspace.errorMessage(), QString());
    }

    void textsGoToTheClipboardAsTheyAreShown()
    {
        Fixture f;
        const auto record = f.save("title", {"one", "two"});
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        workspace.copyText("anything");
        QCOMPARE(clipboard(), QString("anything"));
        workspace.copySourceText();
        QCOMPARE(clipboard(), QString("one\n\ntwo"));
        workspace.copyTranslationText();
        QCOMPARE(clipboard(), QString("譯：one\n\n譯：two"));
        editFirst(workspace, "uno");
        workspace.copyBilingualText();
        QCOMPARE(clipboard(),
            QString("原文：\nuno\n\n台灣繁中：\n譯：one\n\n---\n\n原文：\ntwo\n\n台灣繁中：\n譯：two"));
    }

    void anExportIsWrittenWhereTheUserSays()
    {
        Fixture f;
        const auto record = f.save("a/b: c");
        auto &workspace = f.open();
        QVERIFY(!workspace.exportRecord("md", QUrl::fromLocalFile(f.folder.filePath("x"))));
        workspace.select(f.idText(record));
        QCOMPARE(workspace.exportFile("md").fileName(), QString("a-b- c.md"));
        QCOMPARE(workspace.exportNameFilter("srt"), QString("SRT 字幕 (*.srt)"));
        QCOMPARE(workspace.exportNameFilter("exe"), QString());
        QVERIFY(!workspace.exportRecord("exe", QUrl::fromLocalFile(f.folder.filePath("x"))));
        const QString path = f.folder.filePath("匯出 1.md");
        QVERIFY(workspace.exportRecord("md", QUrl::fromLocalFile(path)));
        QCOMPARE(contents(path), f.store.loadRecord(record.id).markdownText(f.locale).toUtf8());
    }

    void anExportThatFailsSaysWhy()
    {
        Fixture f;
        const auto record = f.save("title");
        auto &workspace = f.open();
        workspace.select(f.idText(record));
        const QString path = f.folder.filePath("no such folder/x.md");
        QVERIFY(!workspace.exportRecord("md", QUrl::fromLocalFile(path)));
        QVERIFY2(workspace.errorMessage().contains(path), qPrintable(workspace.errorMessage()));
        QVERIFY(workspace.exportRecord("md", QUrl::fromLocalFile(f.folder.filePath("x.md"))));
        QCOMPARE(workspace.errorMessage(), QString());
    }

    void theFolderIsShownInTheFileViewer()
    {
        Fixture f;
        const auto record = f.save("title");
        auto &workspace = f.open();
        workspace.openFolder();
        QVERIFY(f.viewer.revealed.isEmpty());
        workspace.select(f.idText(record));
        workspace.openFolder();
        QCOMPARE(f.viewer.revealed.size(), 1);
        QVERIFY(f.viewer.revealed.front().endsWith(record.folderName));
        f.viewer.failure = "no file manager";
        workspace.openFolder();
        settle();
        QVERIFY(workspace.errorMessage().contains("no file manager"));
    }
};

LUMAPHONE_OFFSCREEN_TEST(TranscriptLibraryWorkspaceModelTest)

} // namespace transcriptlibraryworkspacemodeltest

#include "TranscriptLibraryWorkspaceModelTest.moc"
