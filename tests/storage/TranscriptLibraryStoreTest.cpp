#include "storage/TranscriptLibraryStore.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptFolder.h"
#include "storage/TranscriptLibraryError.h"
#include "storage/TranscriptStorageError.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/NotingFileViewer.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace transcriptlibrarystoretest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

/// A library in a folder of its own.
struct Fixture
{
    QTemporaryDir folder;
    VirtualClock clock;
    NotingFileViewer viewer;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    UuidGenerator uuids = [number = std::make_shared<uint>(0)] {
        return countedUuid(++*number);
    };
    std::unique_ptr<TranscriptLibraryStore> store;

    QString root() const { return folder.filePath(QStringLiteral("library")); }
    QString index() const { return root() + QStringLiteral("/index.json"); }
    QString session(const TranscriptRecordMetadata &record, const char *file = "") const
    {
        return root() + QStringLiteral("/sessions/") + record.folderName + QLatin1Char('/')
            + QString::fromLatin1(file);
    }

    TranscriptLibraryStore &open()
    {
        store = another();
        return *store;
    }
    std::unique_ptr<TranscriptLibraryStore> another()
    {
        return std::make_unique<TranscriptLibraryStore>(TranscriptLibraryStore::Environment {
            .layout = TranscriptLibraryLayout::at(root()),
            .areRevisions = [](const QString &, const QString &) { return false; },
            .clock = clock,
            .fileViewer = viewer,
            .makeUuid = uuids,
            .locale = QLocale(QLocale::English, QLocale::UnitedStates),
        });
    }
    /// A session of one line, saved a minute after the one before.
    TranscriptRecordMetadata saved(const char *text)
    {
        clock.advance(1min);
        return store->save(live(text), settings);
    }
    LiveTranscript live(const char *text) const
    {
        LiveTranscript live;
        live.lines = {{countedUuid(900), QString::fromUtf8(text), QStringLiteral("譯文"),
            AppleSystemSpeechLanguage::english, clock.now(), true}};
        live.startedAt = clock.now();
        return live;
    }
    /// What a newly opened store lists.
    QList<TranscriptRecordMetadata> onDisk() { return another()->records(); }
};

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString fileText(const QString &path)
{
    return QString::fromUtf8(readFile(path).value_or("(no file)"));
}

QStringList titles(const QList<TranscriptRecordMetadata> &records)
{
    QStringList texts;
    for (const TranscriptRecordMetadata &record : records) {
        texts.append(record.title);
    }
    return texts;
}

} // namespace

class TranscriptLibraryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aNewLibraryIsEmpty();
    void theUsersLibraryLiesInTheDataFolder();
    void withoutADataFolderTheLibraryLiesInTmp();
    void savingWritesEveryFileToTheByte();
    void savingFillsTheRecord();
    void theProviderIsNamed();
    void savingAgainKeepsRecordFolderTitleAndNote();
    void anUnknownSavedIdentityIsKept();
    void theDefaultTitleWithoutAStartIsTheCurrentTime();
    void nothingToSaveIsSaidAndWritesNothing();
    void recordsAreListedNewestFirst();
    void loadingCompactsTheLinesAgain();
    void loadingWhatIsNotThereSaysSo();
    void aRecordWithoutItsFolderSaysSo();
    void damagedFilesOfASessionSaySo_data();
    void damagedFilesOfASessionSaySo();
    void anUpdateReplacesFolderAndRecord();
    void anUpdateOfADeletedRecordBringsNothingBack();
    void lateTranslationsFillOnlyWhatIsEmpty();
    void lateTranslationsBringNoDeletedRecordBack();
    void deletingRemovesFolderAndRecord();
    void aFolderThatCannotBeRemovedKeepsItsRecord();
    void aRecordWhoseFolderIsGoneCanBeDeleted();
    void aLinkedFolderIsUnlinkedNotEmptied();
    void anInterruptedDeletionIsFinished();
    void theNextChangeFinishesAnInterruptedOne();
    void whatAnInterruptedWriteLeftIsTakenAway();
    void aDeletionThatDidNotHappenIsForgotten();
    void aDamagedIndexIsRebuiltFromTheFolders_data();
    void aDamagedIndexIsRebuiltFromTheFolders();
    void aRebuiltIndexTakesFoldersAsTheyAreNamed();
    void damageWhileRunningIsKeptAside();
    void anIndexThatDisappearsIsMadeOfMemoryAndFolders();
    void withoutAnIndexTheNextSaveFindsTheFolders();
    void whatIsBeingDeletedIsNotFoundAgain();
    void recordsOfAnotherStoreSurviveTheEndOfADeletion();
    void aSearchDuringTheNotificationFindsTheNewTexts();
    void aFailedWriteLeavesTheIndexUnchanged();
    void anUnwritableIndexIsSaid();
    void twoStoresSeeEachOthersRecords();
    void anyTextComesBackAsItWas_data();
    void anyTextComesBackAsItWas();
    void anUnpairedSurrogateIsRefused();
    void theFolderIsRevealed();
    void aFolderThatIsGoneIsNotRevealed();
    void aFailureToRevealIsSaid();
    void theNextSuccessClearsTheMessage();
    void readingDoesNotClearTheMessage();
    void changesAreNotified();
    void searchFollowsTheRecords();
    void aReadOnlyLibraryCanBeRead();
};

void TranscriptLibraryStoreTest::initTestCase()
{
    qputenv("TZ", "Asia/Taipei");
}

void TranscriptLibraryStoreTest::aNewLibraryIsEmpty()
{
    Fixture fixture;
    const TranscriptLibraryStore &store = fixture.open();
    QVERIFY(store.records().isEmpty());
    QVERIFY(!store.lastErrorMessage());
    QCOMPARE(namesIn(fixture.root()), QStringList {QStringLiteral("sessions")});
}

void TranscriptLibraryStoreTest::theUsersLibraryLiesInTheDataFolder()
{
    struct Folders final : PlatformFolders
    {
        std::optional<QString> applicationSupport() const override { return QStringLiteral("/data"); }
        std::optional<QString> configuration() const override { return std::nullopt; }
        std::optional<QString> cache() const override { return std::nullopt; }
    };
    const auto layout = TranscriptLibraryLayout::standard(Folders());
    QCOMPARE(layout.root.value_or(QString()), QStringLiteral("/data/Lumaphone/Transcripts"));
    QCOMPARE(layout.index, QStringLiteral("/data/Lumaphone/Transcripts/index.json"));
    QCOMPARE(layout.sessions, QStringLiteral("/data/Lumaphone/Transcripts/sessions"));
}

void TranscriptLibraryStoreTest::withoutADataFolderTheLibraryLiesInTmp()
{
    struct Folders final : PlatformFolders
    {
        std::optional<QString> applicationSupport() const override { return std::nullopt; }
        std::optional<QString> configuration() const override { return std::nullopt; }
        std::optional<QString> cache() const override { return std::nullopt; }
    };
    const auto layout = TranscriptLibraryLayout::standard(Folders());
    QVERIFY(!layout.root);
    QCOMPARE(layout.index, QStringLiteral("/tmp/lumaphone-transcripts-index.json"));
    QCOMPARE(layout.sessions, QStringLiteral("/tmp/lumaphone-transcripts"));
}

void TranscriptLibraryStoreTest::savingWritesEveryFileToTheByte()
{
    Fixture fixture;
    fixture.open();
    LiveTranscript live = fixture.live("Hello ");
    live.lines.append({countedUuid(901), QStringLiteral("Bye"), QStringLiteral("翻譯中..."),
        AppleSystemSpeechLanguage::english, fixture.clock.now().addMSecs(20999), false});
    fixture.clock.advance(9s + 999ms);
    const TranscriptRecordMetadata record = fixture.store->save(live, fixture.settings);

    QCOMPARE(record.folderName, QStringLiteral("2026-01-31T080009Z-00000000"));
    QCOMPARE(namesIn(fixture.session(record)),
        (QStringList {QStringLiteral("bilingual.txt"), QStringLiteral("lines.json"),
            QStringLiteral("metadata.json"), QStringLiteral("source.txt"),
            QStringLiteral("translation.txt")}));
    const QString metadata = QStringLiteral(R"({
  "createdAt": "2026-01-31T08:00:09Z",
  "folderName": "2026-01-31T080009Z-00000000",
  "glossaryTerms": [],
  "id": "00000000-0000-0000-0000-000000000001",
  "lineCount": 2,
  "note": "",
  "processingMode": "appleMode",
  "providerName": "Apple Translation",
  "searchText": "Lumaphone Transcript 1/31/26 4:00 PM\n\nHello\n譯文\nBye\n",
  "sourceLanguage": "automatic",
  "startedAt": "2026-01-31T08:00:00Z",
  "targetLanguage": "zh-TW",
  "title": "Lumaphone Transcript 1/31/26 4:00 PM"
})");
    QCOMPARE(fileText(fixture.session(record, "metadata.json")), metadata);
    QString indented = metadata;
    QCOMPARE(fileText(fixture.index()),
        QStringLiteral("[\n  ") + indented.replace(QLatin1Char('\n'), QStringLiteral("\n  "))
            + QStringLiteral("\n]"));
    QCOMPARE(fileText(fixture.session(record, "lines.json")), QStringLiteral(R"([
  {
    "createdAt": "2026-01-31T08:00:00Z",
    "id": "00000000-0000-0000-0000-000000000384",
    "isFinal": true,
    "sourceLanguage": "english",
    "sourceText": "Hello",
    "translatedText": "譯文"
  },
  {
    "createdAt": "2026-01-31T08:00:20Z",
    "id": "00000000-0000-0000-0000-000000000385",
    "isFinal": false,
    "sourceLanguage": "english",
    "sourceText": "Bye",
    "translatedText": ""
  }
])"));
    QCOMPARE(fileText(fixture.session(record, "source.txt")), QStringLiteral("Hello\n\nBye"));
    QCOMPARE(fileText(fixture.session(record, "translation.txt")), QStringLiteral("譯文\n\n"));
    QCOMPARE(fileText(fixture.session(record, "bilingual.txt")),
        QStringLiteral("原文：\nHello\n\n台灣繁中：\n譯文\n\n---\n\n原文：\nBye\n\n台灣繁中：\n"));
}

void TranscriptLibraryStoreTest::savingFillsTheRecord()
{
    Fixture fixture;
    fixture.open();
    LiveTranscript live = fixture.live("Hello");
    live.endedAt = fixture.clock.now().addMSecs(90500);
    live.sourceLanguage = AppleSystemSpeechLanguage::automatic;
    live.detectedLanguage = AppleSystemSpeechLanguage::english;
    live.matchedTerms = {{countedUuid(70), QStringLiteral("bus"), QStringLiteral("匯流排"),
        LumaphoneGlossaryTermMode::translate, QStringLiteral("a note"), true, true}};
    const TranscriptRecordMetadata record = fixture.store->save(live, fixture.settings);
    QCOMPARE(record.id, countedUuid(1));
    QCOMPARE(record.endedAt.value_or(QDateTime()), fixture.clock.now().addSecs(90));
    QVERIFY(record.detectedLanguage == AppleSystemSpeechLanguage::english);
    QCOMPARE(record.targetLanguage, QStringLiteral("zh-TW"));
    QVERIFY(record.glossaryTerms
        == (QList<SavedGlossaryTerm> {{countedUuid(70), QStringLiteral("bus"), QStringLiteral("匯流排"),
            LumaphoneGlossaryTermMode::translate}}));
    QVERIFY(record.searchText.endsWith(QStringLiteral("\nbus\n匯流排")));
    QVERIFY(fixture.store->records() == QList {record});
    QVERIFY(fixture.onDisk() == QList {record});
    QVERIFY(!record.folderName.contains(QLatin1Char(':')));
}

void TranscriptLibraryStoreTest::theProviderIsNamed()
{
    Fixture fixture;
    fixture.open();
    QCOMPARE(fixture.saved("a").providerName, QStringLiteral("Apple Translation"));
    fixture.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
    fixture.settings.setProviderModel(QStringLiteral("small model"));
    const TranscriptRecordMetadata record = fixture.saved("b");
    QCOMPARE(record.providerName, QStringLiteral("自定義 API：small model"));
    QCOMPARE(record.processingMode, LumaphoneProcessingMode::customAPI);
}

void TranscriptLibraryStoreTest::savingAgainKeepsRecordFolderTitleAndNote()
{
    Fixture fixture;
    fixture.open();
    const TranscriptRecordMetadata first = fixture.saved("Hello");
    TranscriptDocument document = fixture.store->loadRecord(first.id);
    document.metadata.title = QStringLiteral("My title");
    document.metadata.note = QStringLiteral("My note");
    fixture.store->update(document);

    fixture.clock.advance(1h);
    LiveTranscript live = fixture.live("Hello again");
    live.savedTranscriptID = first.id;
    const TranscriptRecordMetadata second = fixture.store->save(live, fixture.settings);
    QCOMPARE(second.id, first.id);
    QCOMPARE(second.folderName, first.folderName);
    QCOMPARE(second.createdAt, first.createdAt);
    QCOMPARE(second.title, QStringLiteral("My title"));
    QCOMPARE(second.note, QStringLiteral("My note"));
    QVERIFY(second.searchText.startsWith(QStringLiteral("My title\nMy note\nHello again\n")));
    QVERIFY(fixture.onDisk() == QList {second});
    QCOMPARE(namesIn(fixture.root() + QStringLiteral("/sessions")), QStringList {first.folderName});
}

void TranscriptLibraryStoreTest::anUnknownSavedIdentityIsKept()
{
    Fixture fixture;
    fixture.open();
    LiveTranscript live = fixture.live("Hello");
    live.savedTranscriptID = countedUuid(77);
    QCOMPARE(fixture.store->save(live, fixture.settings).id, countedUuid(77));
}

void TranscriptLibraryStoreTest::theDefaultTitleWithoutAStartIsTheCurrentTime()
{
    Fixture fixture;
    fixture.open();
    LiveTranscript live = fixture.live("Hello");
    live.startedAt.reset();
    fixture.clock.advance(2h);
    const TranscriptRecordMetadata record = fixture.store->save(live, fixture.settings);
    QCOMPARE(record.title, QStringLiteral("Lumaphone Transcript 1/31/26 6:00 PM"));
    QVERIFY(!record.startedAt);
}

void TranscriptLibraryStoreTest::nothingToSaveIsSaidAndWritesNothing()
{
    Fixture fixture;
    fixture.open();
    const auto error = thrownBy<TranscriptLibraryError>(
        [&] { fixture.store->save(fixture.live(" \n"), fixture.settings); });
    QVERIFY(error && error->errorCase() == TranscriptLibraryError::Case::emptyTranscript);
    QCOMPARE(fixture.store->lastErrorMessage().value_or(QString()), QStringLiteral("目前沒有可儲存的字幕。"));
    QVERIFY(!QFile::exists(fixture.index()));
    QVERIFY(namesIn(fixture.root() + QStringLiteral("/sessions")).isEmpty());
}

void TranscriptLibraryStoreTest::recordsAreListedNewestFirst()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    const auto b = fixture.saved("b");
    fixture.clock.stepWallClock(-1h);
    const auto older = fixture.saved("older");
    const QList wanted {b, a, older};
    QVERIFY(fixture.store->records() == wanted);
    QVERIFY(fixture.onDisk() == wanted);
}

void TranscriptLibraryStoreTest::loadingCompactsTheLinesAgain()
{
    Fixture fixture;
    fixture.open();
    const TranscriptRecordMetadata record = fixture.saved("Hello");
    TranscriptDocument document = fixture.store->loadRecord(record.id);
    SavedTranscriptLine grown = document.lines.first();
    grown.sourceText = QStringLiteral(" Hello there ");
    SavedTranscriptLine blank = grown;
    blank.sourceText = QStringLiteral(" ");
    document.lines << grown << blank;
    fixture.store->update(document);
    const TranscriptDocument loaded = fixture.store->loadRecord(record.id);
    QCOMPARE(loaded.lines.size(), 1);
    QCOMPARE(loaded.lines.first().sourceText, QStringLiteral("Hello there"));
}

void TranscriptLibraryStoreTest::loadingWhatIsNotThereSaysSo()
{
    Fixture fixture;
    fixture.open();
    const auto error = thrownBy<TranscriptLibraryError>([&] { fixture.store->loadRecord(countedUuid(5)); });
    QVERIFY(error && error->errorCase() == TranscriptLibraryError::Case::recordNotFound);
    QCOMPARE(
        fixture.store->lastErrorMessage().value_or(QString()), QStringLiteral("找不到指定的 transcript。"));
}

void TranscriptLibraryStoreTest::aRecordWithoutItsFolderSaysSo()
{
    Fixture fixture;
    fixture.open();
    const TranscriptRecordMetadata record = fixture.saved("Hello");
    QVERIFY(QDir(fixture.session(record)).removeRecursively());
    QVERIFY(thrownBy<TranscriptStorageError>([&] { fixture.store->loadRecord(record.id); }));
    QCOMPARE(fixture.store->lastErrorMessage().value_or(QString()),
        QStringLiteral("Transcript Library 錯誤：找不到 session 資料夾「%1」。")
            .arg(fixture.root() + QStringLiteral("/sessions/") + record.folderName));
    QCOMPARE(fixture.store->records().size(), 1);
}

void TranscriptLibraryStoreTest::damagedFilesOfASessionSaySo_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isMissing");
    QTest::newRow("no metadata") << QStringLiteral("metadata.json") << true;
    QTest::newRow("no lines") << QStringLiteral("lines.json") << true;
    QTest::newRow("damaged metadata") << QStringLiteral("metadata.json") << false;
    QTest::newRow("damaged lines") << QStringLiteral("lines.json") << false;
}

void TranscriptLibraryStoreTest::damagedFilesOfASessionSaySo()
{
    QFETCH(const QString, file);
    QFETCH(const bool, isMissing);
    Fixture fixture;
    fixture.open();
    const TranscriptRecordMetadata record = fixture.saved("Hello");
    const QString path = fixture.session(record) + file;
    isMissing ? removeFile(path) : replaceFile(path, "[{\"id\": 1", Durability::renamed);
    const auto error = thrownBy<LocalizedError>([&] { fixture.store->loadRecord(record.id); });
    QVERIFY(error);
    const QString message = fixture.store->lastErrorMessage().value_or(QString());
    QCOMPARE(message, QStringLiteral("Transcript Library 錯誤：") + error->errorDescription());
    const QString said = isMissing
        ? QStringLiteral("Transcript Library 錯誤：找不到檔案「%1」。")
        : QStringLiteral("Transcript Library 錯誤：檔案「%1」已損壞或不完整，無法讀取。");
    QVERIFY2(message.startsWith(said.arg(path)), qPrintable(message));
}

void TranscriptLibraryStoreTest::anUpdateReplacesFolderAndRecord()
{
    Fixture fixture;
    fixture.open();
    const auto other = fixture.saved("other");
    const auto record = fixture.saved("Hello");
    TranscriptDocument document = fixture.store->loadRecord(record.id);
    document.metadata.title = QStringLiteral("New/title: \"?\"");
    document.metadata.note = QStringLiteral("note");
    document.metadata.folderName = QStringLiteral("elsewhere");
    document.lines.first().translatedText = QStringLiteral("新譯文");
    fixture.store->update(document);

    const TranscriptRecordMetadata updated = fixture.store->records().first();
    QCOMPARE(updated.folderName, record.folderName);
    QCOMPARE(updated.title, QStringLiteral("New/title: \"?\""));
    QCOMPARE(updated.searchText, QStringLiteral("New/title: \"?\"\nnote\nHello\n新譯文"));
    QCOMPARE(updated.createdAt, record.createdAt);
    QVERIFY(fixture.onDisk() == (QList {updated, other}));
    QCOMPARE(fileText(fixture.session(record, "translation.txt")), QStringLiteral("新譯文"));
    const TranscriptDocument loaded = fixture.store->loadRecord(record.id);
    QVERIFY(loaded.metadata == updated);
    QVERIFY(loaded.lines == document.lines);
}

void TranscriptLibraryStoreTest::lateTranslationsFillOnlyWhatIsEmpty()
{
    Fixture fixture;
    fixture.open();
    LiveTranscript live = fixture.live("first");
    live.lines.append({countedUuid(901), QStringLiteral("second"), QStringLiteral("翻譯中..."),
        AppleSystemSpeechLanguage::english, fixture.clock.now().addSecs(60), true});
    const QUuid id = fixture.store->save(live, fixture.settings).id;
    TranscriptDocument edited = fixture.store->loadRecord(id);
    edited.metadata.note = QStringLiteral("a note");
    fixture.store->update(edited);

    fixture.store->addTranslations(id,
        {{QStringLiteral("first"), QStringLiteral("一")}, {QStringLiteral("second"), QStringLiteral("二")},
            {QStringLiteral("third"), QStringLiteral("三")}});
    const TranscriptDocument filled = fixture.store->loadRecord(id);
    QCOMPARE(filled.lines[0].translatedText, QStringLiteral("譯文"));
    QCOMPARE(filled.lines[1].translatedText, QStringLiteral("二"));
    QCOMPARE(filled.metadata.note, QStringLiteral("a note"));
    QVERIFY(fixture.onDisk().first().searchText.contains(QStringLiteral("二")));
}

void TranscriptLibraryStoreTest::lateTranslationsBringNoDeletedRecordBack()
{
    Fixture fixture;
    fixture.open();
    const TranscriptRecordMetadata record = fixture.saved("first");
    fixture.store->remove(record);
    fixture.store->addTranslations(record.id, {{QStringLiteral("first"), QStringLiteral("一")}});
    QVERIFY(fixture.store->records().isEmpty());
    QVERIFY(fixture.onDisk().isEmpty());
    QVERIFY(!fixture.store->lastErrorMessage());
}

void TranscriptLibraryStoreTest::anUpdateOfADeletedRecordBringsNothingBack()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    const TranscriptDocument document = fixture.store->loadRecord(record.id);
    fixture.store->remove(record);
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.store->update(document); }));
    QVERIFY(fixture.onDisk().isEmpty());
    QVERIFY(namesIn(fixture.root() + QStringLiteral("/sessions")).isEmpty());
}

void TranscriptLibraryStoreTest::deletingRemovesFolderAndRecord()
{
    Fixture fixture;
    fixture.open();
    const auto kept = fixture.saved("kept");
    const auto record = fixture.saved("Hello");
    replaceFile(fixture.session(record, "my own notes.txt"), "x", Durability::renamed);
    fixture.store->remove(record);
    QVERIFY(fixture.store->records() == QList {kept});
    QVERIFY(fixture.onDisk() == QList {kept});
    QCOMPARE(namesIn(fixture.root() + QStringLiteral("/sessions")), QStringList {kept.folderName});
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.store->remove(record); }));
    QVERIFY(!namesIn(fixture.root()).contains(QStringLiteral("index.json.transition")));
}

void TranscriptLibraryStoreTest::aFolderThatCannotBeRemovedKeepsItsRecord()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    // The sessions folder turns into a file: nothing below it can be reached, or removed.
    const QString sessions = fixture.root() + QStringLiteral("/sessions");
    QVERIFY(QDir().rename(sessions, fixture.root() + QStringLiteral("/elsewhere")));
    replaceFile(sessions, "", Durability::renamed);
    QVERIFY(thrownBy<FileError>([&] { fixture.store->remove(record); }));
    QVERIFY(fixture.store->lastErrorMessage().value_or(QString()).startsWith(
        QStringLiteral("Transcript Library 錯誤：")));
    QVERIFY(fixture.store->records() == QList {record});
    removeFile(sessions);
    QVERIFY(QDir().rename(fixture.root() + QStringLiteral("/elsewhere"), sessions));
    QVERIFY(fixture.onDisk() == QList {record});
    QCOMPARE(fixture.another()->loadRecord(record.id).lines.size(), 1);
}

void TranscriptLibraryStoreTest::aRecordWhoseFolderIsGoneCanBeDeleted()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    QVERIFY(QDir(fixture.session(record)).removeRecursively());
    fixture.store->remove(record);
    QVERIFY(fixture.onDisk().isEmpty());
}

void TranscriptLibraryStoreTest::aLinkedFolderIsUnlinkedNotEmptied()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    const QString elsewhere = fixture.folder.filePath(QStringLiteral("elsewhere"));
    QVERIFY(QDir().rename(fixture.session(record), elsewhere));
    QVERIFY(QFile::link(elsewhere, fixture.root() + QStringLiteral("/sessions/") + record.folderName));
    QCOMPARE(fixture.store->loadRecord(record.id).lines.size(), 1);
    fixture.store->remove(record);
    QCOMPARE(namesIn(elsewhere).size(), 5);
}

void TranscriptLibraryStoreTest::anInterruptedDeletionIsFinished()
{
    Fixture fixture;
    fixture.open();
    const auto kept = fixture.saved("kept");
    const auto record = fixture.saved("Hello");
    TranscriptIndex index(TranscriptLibraryLayout::at(fixture.root()));
    index.noteTransition(record.folderName, {});
    index.write({kept});
    // Here the process ended.
    QVERIFY(fixture.onDisk() == QList {kept});
    QCOMPARE(namesIn(fixture.root() + QStringLiteral("/sessions")), QStringList {kept.folderName});
    QVERIFY(!namesIn(fixture.root()).contains(QStringLiteral("index.json.transition")));
}

void TranscriptLibraryStoreTest::theNextChangeFinishesAnInterruptedOne()
{
    Fixture fixture;
    fixture.open();
    const auto kept = fixture.saved("kept");
    // Another process begins to save a session and ends.
    const TranscriptIndex other(TranscriptLibraryLayout::at(fixture.root()));
    other.noteTransition(QStringLiteral("unfinished"), {kept});
    createFolder(fixture.root() + QStringLiteral("/sessions/unfinished"));
    const auto next = fixture.saved("next");
    QCOMPARE(namesIn(fixture.root() + QStringLiteral("/sessions")).size(), 2);
    QCOMPARE(fixture.onDisk().size(), 2);
    QVERIFY(!namesIn(fixture.root()).contains(QStringLiteral("index.json.transition")));
}

void TranscriptLibraryStoreTest::whatAnInterruptedWriteLeftIsTakenAway()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    replaceFile(fixture.index() + QStringLiteral(".new-Ab3dE9"), "x", Durability::renamed);
    replaceFile(fixture.session(record, "lines.json.new-Ab3dE9"), "x", Durability::renamed);
    fixture.store->update(fixture.store->loadRecord(record.id));
    QVERIFY(!namesIn(fixture.root()).contains(QStringLiteral("index.json.new-Ab3dE9")));
    QCOMPARE(namesIn(fixture.session(record)).size(), 5);
}

void TranscriptLibraryStoreTest::aDeletionThatDidNotHappenIsForgotten()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    const TranscriptIndex index(TranscriptLibraryLayout::at(fixture.root()));
    for (const QString &name : {record.folderName, QStringLiteral(".."), QString(), QStringLiteral("/")}) {
        index.noteTransition(name, {record});
        QVERIFY(fixture.onDisk() == QList {record});
        QVERIFY(!namesIn(fixture.root()).contains(QStringLiteral("index.json.transition")));
        QCOMPARE(fixture.store->loadRecord(record.id).lines.size(), 1);
    }
}

void TranscriptLibraryStoreTest::aDamagedIndexIsRebuiltFromTheFolders_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << QByteArray("[\n  {\n    \"createdAt\"");
    QTest::newRow("an object") << QByteArray("{}");
    QTest::newRow("a record without its keys") << QByteArray("[{}]");
    QTest::newRow("zeros") << QByteArray(512, '\0');
    QTest::newRow("not UTF-8") << QByteArray("[\"\xff\"]");
}

void TranscriptLibraryStoreTest::aDamagedIndexIsRebuiltFromTheFolders()
{
    QFETCH(const QByteArray, bytes);
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    const auto b = fixture.saved("b");
    replaceFile(fixture.index(), bytes, Durability::renamed);
    const TranscriptLibraryStore &store = fixture.open();
    QVERIFY(store.records() == (QList {b, a}));
    const QString message = store.lastErrorMessage().value_or(QString());
    QVERIFY2(
        message.startsWith(QStringLiteral("Transcript Library 錯誤：索引無法讀取")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral("index.damaged.json")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral("已從 2 個 session 資料夾重建索引")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral("檔案「%1」已損壞或不完整，無法讀取。").arg(fixture.index())),
        qPrintable(message));
    QCOMPARE(readFile(fixture.root() + QStringLiteral("/index.damaged.json")).value_or("(gone)"), bytes);
    const auto next = fixture.another();
    QVERIFY(next->records() == (QList {b, a}));
    QVERIFY(!next->lastErrorMessage());
}

void TranscriptLibraryStoreTest::aRebuiltIndexTakesFoldersAsTheyAreNamed()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("a");
    const QString sessions = fixture.root() + QStringLiteral("/sessions/");
    QVERIFY(QDir().rename(fixture.session(record), sessions + QStringLiteral("renamed")));
    createFolder(sessions + QStringLiteral("empty"));
    createFolder(sessions + QStringLiteral("broken"));
    replaceFile(sessions + QStringLiteral("broken/metadata.json"), "{", Durability::renamed);
    replaceFile(sessions + QStringLiteral("a file"), "", Durability::renamed);
    createFolder(sessions + QStringLiteral("twin"));
    for (const char *name : {"metadata.json", "lines.json"}) {
        QVERIFY(QFile::copy(sessions + QStringLiteral("renamed/") + QString::fromLatin1(name),
            sessions + QStringLiteral("twin/") + QString::fromLatin1(name)));
    }
    replaceFile(fixture.index(), "", Durability::renamed);
    TranscriptLibraryStore &store = fixture.open();
    QCOMPARE(store.records().size(), 1);
    QCOMPARE(store.records().first().folderName, QStringLiteral("renamed"));
    QVERIFY(store.lastErrorMessage().value_or(QString()).contains(QStringLiteral("另有 2 個資料夾無法讀取")));
    QCOMPARE(store.loadRecord(record.id).metadata.folderName, QStringLiteral("renamed"));
}

void TranscriptLibraryStoreTest::damageWhileRunningIsKeptAside()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    replaceFile(fixture.index(), "damage", Durability::renamed);
    const auto b = fixture.saved("b");
    QVERIFY(fixture.onDisk() == (QList {b, a}));
    QCOMPARE(readFile(fixture.root() + QStringLiteral("/index.damaged.json")).value_or("(gone)"),
        QByteArray("damage"));
}

void TranscriptLibraryStoreTest::anIndexThatDisappearsIsMadeOfMemoryAndFolders()
{
    Fixture fixture;
    fixture.open();
    const auto other = fixture.another();
    const auto a = fixture.saved("a");
    const auto b = fixture.saved("b");
    removeFile(fixture.index());
    QVERIFY(QDir(fixture.session(a)).removeRecursively());
    // This store knows a, whose folder has gone, and b; the other one knows neither.
    const auto c = fixture.saved("c");
    QVERIFY(fixture.onDisk() == (QList {c, b, a}));
    removeFile(fixture.index());
    fixture.clock.advance(1min);
    const auto d = other->save(fixture.live("d"), fixture.settings);
    QVERIFY(other->records() == (QList {d, c, b}));
    QVERIFY(!other->lastErrorMessage());
}

void TranscriptLibraryStoreTest::withoutAnIndexTheNextSaveFindsTheFolders()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    removeFile(fixture.index());
    QVERIFY(fixture.open().records().isEmpty());
    const auto b = fixture.saved("b");
    QVERIFY(fixture.onDisk() == (QList {b, a}));
}

void TranscriptLibraryStoreTest::whatIsBeingDeletedIsNotFoundAgain()
{
    Fixture fixture;
    fixture.open();
    const auto deleted = fixture.saved("deleted");
    const QByteArray metadata = readFile(fixture.session(deleted, "metadata.json")).value_or(QByteArray());
    fixture.store->remove(deleted);
    // As if the process had been ended before it removed the folder, and the index had gone since.
    createFolder(fixture.session(deleted));
    replaceFile(fixture.session(deleted, "metadata.json"), metadata, Durability::renamed);
    TranscriptIndex(TranscriptLibraryLayout::at(fixture.root())).noteTransition(deleted.folderName, {});
    removeFile(fixture.index());
    const auto kept = fixture.saved("kept");
    QVERIFY(fixture.store->records() == QList {kept});
}

void TranscriptLibraryStoreTest::recordsOfAnotherStoreSurviveTheEndOfADeletion()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    TranscriptIndex here(TranscriptLibraryLayout::at(fixture.root()));
    QVERIFY(here.read() == QList {a});
    const auto b = fixture.saved("b");
    here.noteTransition(QStringLiteral("gone"), {a, b});
    here.endInterruptedTransition();
    // b is still news for whoever has read a only.
    QVERIFY(here.hasChanged());
    QVERIFY(here.read() == (QList {b, a}));
}

void TranscriptLibraryStoreTest::aSearchDuringTheNotificationFindsTheNewTexts()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Apple");
    const auto other = fixture.another();
    QCOMPARE(other->filteredRecords(QStringLiteral("apple")).size(), 1);
    TranscriptDocument document = fixture.store->loadRecord(record.id);
    document.lines.first().sourceText = QStringLiteral("Banana");
    fixture.store->update(document);
    qsizetype found = -1;
    connect(other.get(), &TranscriptLibraryStore::recordsChanged, this, [&] {
        if (found < 0) {
            found = other->filteredRecords(QStringLiteral("banana")).size();
        }
    });
    fixture.clock.advance(1min);
    other->save(fixture.live("Cherry"), fixture.settings);
    QCOMPARE(found, 1);
}

void TranscriptLibraryStoreTest::aFailedWriteLeavesTheIndexUnchanged()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    const QString index = fileText(fixture.index());
    TranscriptDocument document = fixture.store->loadRecord(record.id);
    document.metadata.title = QStringLiteral("New");
    // A folder where the third file should be.
    removeFile(fixture.session(record, "source.txt"));
    createFolder(fixture.session(record, "source.txt"));
    QVERIFY(thrownBy<FileError>([&] { fixture.store->update(document); }));
    QVERIFY(
        fileText(fixture.session(record, "metadata.json")).contains(QStringLiteral("\"title\": \"New\"")));
    QCOMPARE(fileText(fixture.index()), index);
    QVERIFY(fixture.store->records() == QList {record});
    const QString message = fixture.store->lastErrorMessage().value_or(QString());
    QVERIFY2(message.startsWith(QStringLiteral("Transcript Library 錯誤："))
            && message.contains(QStringLiteral("source.txt")),
        qPrintable(message));
}

void TranscriptLibraryStoreTest::anUnwritableIndexIsSaid()
{
    Fixture fixture;
    createFolder(fixture.folder.path());
    replaceFile(fixture.root(), "a file in the library's place", Durability::renamed);
    const TranscriptLibraryStore &store = fixture.open();
    QVERIFY(store.records().isEmpty());
    QVERIFY(
        store.lastErrorMessage().value_or(QString()).startsWith(QStringLiteral("Transcript Library 錯誤：")));
    QVERIFY(thrownBy<FileError>([&] { fixture.saved("Hello"); }));
    QVERIFY(store.records().isEmpty());
}

void TranscriptLibraryStoreTest::twoStoresSeeEachOthersRecords()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("a");
    const auto other = fixture.another();
    other->filteredRecords(QStringLiteral("x"));
    const auto b = fixture.saved("b");
    fixture.clock.advance(1min);
    const auto c = other->save(fixture.live("c"), fixture.settings);
    QVERIFY(other->records() == (QList {c, b, a}));
    fixture.store->remove(a);
    QVERIFY(fixture.store->records() == (QList {c, b}));
    QVERIFY(fixture.onDisk() == (QList {c, b}));
}

void TranscriptLibraryStoreTest::anyTextComesBackAsItWas_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes and slashes") << QStringLiteral("\"a\" \\b\\ /c/ 'd'");
    QTest::newRow("line breaks") << QStringLiteral("a\r\nb\rc\u2028d");
    QTest::newRow("beyond the basic plane") << QStringLiteral("😀𠮷👩‍👩‍👧");
    QTest::newRow("decomposed") << QStringLiteral("e\u0301 か\u3099");
    QTest::newRow("zeros") << QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
    QTest::newRow("control characters")
        << QString(QStringLiteral("a") + QChar(1) + QChar(0x1f) + QChar(0x7f) + QStringLiteral("b"));
    QTest::newRow("noncharacters") << QString(
        QStringLiteral("a") + QChar(0xffff) + QChar(0xfffe) + QStringLiteral("b"));
    QTest::newRow("megabytes") << QStringLiteral("很長的備註。").repeated(100000);
}

void TranscriptLibraryStoreTest::anyTextComesBackAsItWas()
{
    QFETCH(const QString, text);
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    TranscriptDocument document = fixture.store->loadRecord(record.id);
    document.metadata.title = text;
    document.metadata.note = text;
    document.lines.first().sourceText = text;
    document.lines.first().translatedText = text;
    fixture.store->update(document);
    const auto next = fixture.another();
    QVERIFY(next->records() == fixture.store->records());
    const TranscriptDocument loaded = next->loadRecord(record.id);
    QVERIFY(loaded.metadata.title == text);
    QVERIFY(loaded.metadata.note == text);
    QVERIFY(loaded.lines == document.lines);
    QVERIFY(readFile(fixture.session(record, "source.txt")).value_or(QByteArray()) == text.toUtf8());
}

void TranscriptLibraryStoreTest::anUnpairedSurrogateIsRefused()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    const QString broken = QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("b");
    const TranscriptDocument good = fixture.store->loadRecord(record.id);
    TranscriptDocument title = good;
    title.metadata.title = broken;
    TranscriptDocument line = good;
    line.lines.first().translatedText = broken;
    for (const auto &[document, where] :
        {std::pair(title, QStringLiteral("標題")), std::pair(line, QStringLiteral("第 1 段譯文"))}) {
        const auto error
            = thrownBy<TranscriptStorageError>([&, &edited = document] { fixture.store->update(edited); });
        QVERIFY(error && error->errorCase() == TranscriptStorageError::Case::unpairedSurrogate);
        QVERIFY2(error->errorDescription().startsWith(where), error->what());
    }
    LiveTranscript live = fixture.live("x");
    live.lines.first().sourceText = broken;
    QVERIFY(thrownBy<TranscriptStorageError>([&] { fixture.store->save(live, fixture.settings); }));
    QVERIFY(fixture.onDisk() == QList {record});
    QVERIFY(fixture.store->loadRecord(record.id) == good);
}

void TranscriptLibraryStoreTest::theFolderIsRevealed()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    test::waitFor(fixture.store->openFolder(record));
    QCOMPARE(fixture.viewer.revealed,
        QStringList {fixture.root() + QStringLiteral("/sessions/") + record.folderName});
    QVERIFY(!fixture.store->lastErrorMessage());
}

void TranscriptLibraryStoreTest::aFolderThatIsGoneIsNotRevealed()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    QVERIFY(QDir(fixture.session(record)).removeRecursively());
    QVERIFY(thrownBy<TranscriptStorageError>([&] { test::waitFor(fixture.store->openFolder(record)); }));
    QVERIFY(fixture.viewer.revealed.isEmpty());
    QVERIFY(fixture.store->lastErrorMessage().value_or(QString()).contains(
        QStringLiteral("找不到 session 資料夾")));
}

void TranscriptLibraryStoreTest::aFailureToRevealIsSaid()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    fixture.viewer.failure = QStringLiteral("no viewer");
    QVERIFY(thrownBy<FileViewerError>([&] { test::waitFor(fixture.store->openFolder(record)); }));
    QCOMPARE(fixture.store->lastErrorMessage().value_or(QString()),
        QStringLiteral("Transcript Library 錯誤：no viewer"));
}

void TranscriptLibraryStoreTest::theNextSuccessClearsTheMessage()
{
    Fixture fixture;
    fixture.open();
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.saved(" "); }));
    QVERIFY(fixture.store->lastErrorMessage());
    fixture.saved("Hello");
    QVERIFY(!fixture.store->lastErrorMessage());
}

void TranscriptLibraryStoreTest::readingDoesNotClearTheMessage()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.saved(" "); }));
    fixture.store->loadRecord(record.id);
    QVERIFY(fixture.store->lastErrorMessage());
}

void TranscriptLibraryStoreTest::changesAreNotified()
{
    Fixture fixture;
    fixture.open();
    QSignalSpy records(fixture.store.get(), &TranscriptLibraryStore::recordsChanged);
    QSignalSpy messages(fixture.store.get(), &TranscriptLibraryStore::lastErrorMessageChanged);
    const auto record = fixture.saved("Hello");
    QCOMPARE(records.count(), 1);
    fixture.store->update(fixture.store->loadRecord(record.id));
    QCOMPARE(records.count(), 1); // nothing is different
    fixture.store->remove(record);
    QCOMPARE(records.count(), 2);
    QCOMPARE(messages.count(), 0);
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.saved(" "); }));
    QVERIFY(thrownBy<TranscriptLibraryError>([&] { fixture.saved(" "); }));
    QCOMPARE(messages.count(), 1);
}

void TranscriptLibraryStoreTest::searchFollowsTheRecords()
{
    Fixture fixture;
    fixture.open();
    const auto a = fixture.saved("Apple");
    const auto b = fixture.saved("Banana");
    QVERIFY(fixture.store->filteredRecords(QString()) == (QList {b, a}));
    QVERIFY(fixture.store->filteredRecords(QStringLiteral(" APPLE")) == QList {a});
    TranscriptDocument document = fixture.store->loadRecord(b.id);
    document.metadata.note = QStringLiteral("not an apple");
    fixture.store->update(document);
    QCOMPARE(fixture.store->filteredRecords(QStringLiteral("apple")).size(), 2);
    fixture.store->remove(a);
    QCOMPARE(titles(fixture.store->filteredRecords(QStringLiteral("apple"))), titles({b}));
    QVERIFY(fixture.store->filteredRecords(QStringLiteral("cherry")).isEmpty());
}

void TranscriptLibraryStoreTest::aReadOnlyLibraryCanBeRead()
{
    Fixture fixture;
    fixture.open();
    const auto record = fixture.saved("Hello");
    // No lock can be taken where a folder lies in its place.
    removeFile(fixture.index() + QStringLiteral(".lock"));
    createFolder(fixture.index() + QStringLiteral(".lock"));
    TranscriptLibraryStore &store = fixture.open();
    QVERIFY(!store.lastErrorMessage());
    QVERIFY(store.records() == QList {record});
    QCOMPARE(store.loadRecord(record.id).lines.size(), 1);
    QVERIFY(thrownBy<FileError>([&] { fixture.saved("no"); }));
    QVERIFY(store.records() == QList {record});
}

LUMAPHONE_TEST(TranscriptLibraryStoreTest)

} // namespace transcriptlibrarystoretest

#include "TranscriptLibraryStoreTest.moc"
