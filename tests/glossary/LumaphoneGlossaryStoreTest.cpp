#include "glossary/LumaphoneGlossaryStore.h"

#include "base/AtomicFile.h"
#include "glossary/LumaphoneGlossaryDocument.h"
#include "glossary/LumaphoneGlossaryError.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace lumaphoneglossarystoretest {

using namespace lumaphone;
using test::preserved;
using test::translated;

class LumaphoneGlossaryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aMissingFileIsAnEmptyGlossary();
    void aMissingFileLeavesTheMessageAsItWas();
    void theFolderIsCreatedWithItsParents();
    void whatIsAddedIsCleanedAndOnDisk();
    void aTermWithoutSourceIsKept();
    void theListIsReadBackInOrder();
    void loadReadsTheFileAgain();
    void anUpdateReplacesTheTermOfTheSameIdentity();
    void anUpdateOfAnUnknownTermWritesNothing();
    void aRemovedTermIsGone();
    void ofTermsOfOneIdentityTheEqualOneIsRemoved();
    void removingAnUnknownTermWritesNothing();
    void ofTermsOfOneIdentityTheOneMeantIsReplaced();
    void termsOfOneIdentityGetTheirOwnWhenTheyAreRead();
    void aTermChangedElsewhereIsFoundByItsIdentity();

    void changesOfAnotherStoreAreKept();
    void whatAnotherStoreChangedIsShown();
    void aRefreshIsNoLoadOfADamagedOrMissingFile();
    void aListWhoseFileHasGoneIsWrittenAgain();
    void whatCouldNotBeSavedGoesWithTheNextChange();
    void enabledTermsAreThoseThatCanBeUsed();

    void aFileThatCannotBeDecodedIsReported_data();
    void aFileThatCannotBeDecodedIsReported();
    void aFolderInPlaceOfTheFileIsReportedAndKept();
    void aDamagedFileIsKeptAsideBeforeItIsOverwritten();
    void everyDamagedFileIsKeptAside();
    void aFileThatWasLoadedIsNotKeptAside();
    void aDamagedFileThatWasMendedIsNotKeptAside();
    void aFolderThatCannotBeCreatedIsReported();
    void aFailedSaveKeepsTheList();
    void aSuccessfulSaveClearsTheMessage();

    void importedTermsAreAppendedInFileOrder();
    void importedSourcesAreComparedWithoutCase_data();
    void importedSourcesAreComparedWithoutCase();
    void importedTermsAreNotComparedWithEachOther();
    void theStoredSourceIsComparedAsItIs();
    void importedTermsAreCleanedAndKeepTheirIdentity();
    void aFailedImportChangesNothing();
    void anExportIsImportedWithTheSameTerms();
    void anExportThatCannotBeWrittenThrows();

    void propertiesNotifyOnlyOfChanges();
    void theGlossaryFileIsShownWhetherItExistsOrNot();
    void showingTheFileReportsNoError();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    QString glossaryFile() const { return path("glossary/glossary.json"); }
    QByteArray glossaryBytes() const { return readFile(glossaryFile()).value_or("missing"); }
    QStringList glossaryFolder() const
    {
        return QDir(path("glossary")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    void write(const QString &file, const QByteArray &bytes) const;
    std::unique_ptr<LumaphoneGlossaryStore> open();

    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_revealed;
};

void LumaphoneGlossaryStoreTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_revealed.clear();
}

void LumaphoneGlossaryStoreTest::write(const QString &file, const QByteArray &bytes) const
{
    createFolder(path("glossary"));
    replaceFile(file, bytes, Durability::renamed);
}

std::unique_ptr<LumaphoneGlossaryStore> LumaphoneGlossaryStoreTest::open()
{
    return std::make_unique<LumaphoneGlossaryStore>(
        path("glossary"),
        [this](const QString &file) -> QCoro::Task<> {
            m_revealed.append(file);
            co_return;
        },
        test::countedUuids());
}

void LumaphoneGlossaryStoreTest::aMissingFileIsAnEmptyGlossary()
{
    const auto store = open();
    QVERIFY(store->terms().isEmpty());
    QVERIFY(!store->lastErrorMessage());
    QVERIFY(glossaryFolder().isEmpty());
}

void LumaphoneGlossaryStoreTest::aMissingFileLeavesTheMessageAsItWas()
{
    write(glossaryFile(), "damaged");
    const auto store = open();
    const auto message = store->lastErrorMessage();
    QVERIFY(message);
    removeFile(glossaryFile());
    store->load();
    QCOMPARE(store->lastErrorMessage(), message);
}

void LumaphoneGlossaryStoreTest::theFolderIsCreatedWithItsParents()
{
    const QString root = path("a/b/Lumaphone/Glossary");
    const LumaphoneGlossaryStore store(root, {});
    QVERIFY(QDir(root).exists());
    QCOMPARE(store.glossaryPath(), root + QStringLiteral("/glossary.json"));
}

void LumaphoneGlossaryStoreTest::whatIsAddedIsCleanedAndOnDisk()
{
    const auto store = open();
    LumaphoneGlossaryTerm term = translated(QStringLiteral("  Codex\n"), QStringLiteral("\t程式碼 "));
    term.note = QStringLiteral(" n ");
    store->add(term);
    QCOMPARE(test::lines(store->terms()), test::strings({"Codex|程式碼|translate|n|true|false"}));
    QCOMPARE(store->terms().front().id, term.id);
    QCOMPARE(glossaryBytes(), LumaphoneGlossaryDocument {store->terms()}.encoded());
    QCOMPARE(glossaryFolder(), test::strings({"glossary.json"}));
}

void LumaphoneGlossaryStoreTest::aTermWithoutSourceIsKept()
{
    const auto store = open();
    store->add(preserved(QStringLiteral(" ")));
    QCOMPARE(test::sources(store->terms()), test::strings({""}));
    QVERIFY(store->enabledTerms().isEmpty());
}

void LumaphoneGlossaryStoreTest::theListIsReadBackInOrder()
{
    const QList<LumaphoneGlossaryTerm> terms {
        preserved(QStringLiteral("c")),
        test::disabled(translated(QStringLiteral("a"), QStringLiteral("甲"))),
        test::caseSensitive(preserved(QStringLiteral("b"), QStringLiteral("\"B\""))),
    };
    const auto store = open();
    for (const LumaphoneGlossaryTerm &term : terms) {
        store->add(term);
    }
    QCOMPARE(open()->terms(), terms);
}

void LumaphoneGlossaryStoreTest::loadReadsTheFileAgain()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    write(glossaryFile(), LumaphoneGlossaryDocument {{preserved(QStringLiteral("b"))}}.encoded());
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    store->load();
    QCOMPARE(test::sources(store->terms()), test::strings({"b"}));
}

void LumaphoneGlossaryStoreTest::anUpdateReplacesTheTermOfTheSameIdentity()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    store->add(preserved(QStringLiteral("b")));
    store->add(preserved(QStringLiteral("c")));
    LumaphoneGlossaryTerm edited = test::disabled(translated(QStringLiteral(" B "), QStringLiteral(" 乙")));
    edited.id = store->terms()[1].id;
    store->update(edited);
    QCOMPARE(test::lines(store->terms()),
        test::strings({"a||preserve||true|false", "B|乙|translate||false|false", "c||preserve||true|false"}));
    QCOMPARE(open()->terms(), store->terms());
}

void LumaphoneGlossaryStoreTest::anUpdateOfAnUnknownTermWritesNothing()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    write(glossaryFile(), "untouched");
    store->update(preserved(QStringLiteral("b")));
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    QCOMPARE(glossaryBytes(), QByteArray("untouched"));
}

void LumaphoneGlossaryStoreTest::aRemovedTermIsGone()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    store->add(preserved(QStringLiteral("b")));
    store->remove(store->terms().front());
    QCOMPARE(test::sources(store->terms()), test::strings({"b"}));
    QCOMPARE(open()->terms(), store->terms());
}

void LumaphoneGlossaryStoreTest::ofTermsOfOneIdentityTheEqualOneIsRemoved()
{
    const LumaphoneGlossaryTerm first = preserved(QStringLiteral("a"));
    LumaphoneGlossaryTerm second = first;
    second.source = QStringLiteral("b");
    const auto store = open();
    store->add(first);
    store->add(second);
    store->remove(second);
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
}

void LumaphoneGlossaryStoreTest::removingAnUnknownTermWritesNothing()
{
    const auto store = open();
    store->remove(preserved(QStringLiteral("a")));
    QVERIFY(glossaryFolder().isEmpty());
}

void LumaphoneGlossaryStoreTest::ofTermsOfOneIdentityTheOneMeantIsReplaced()
{
    const LumaphoneGlossaryTerm first = preserved(QStringLiteral("a"));
    LumaphoneGlossaryTerm second = first;
    second.source = QStringLiteral("b");
    const auto store = open();
    store->add(first);
    store->add(second);
    store->replace(second, test::disabled(second));
    QCOMPARE(test::sources(store->enabledTerms()), test::strings({"a"}));
    QCOMPARE(test::sources(store->terms()), test::strings({"a", "b"}));
    // The same in a store that has read them.
    const auto again = open();
    again->replace(again->terms().back(), second);
    QCOMPARE(test::sources(again->enabledTerms()), test::strings({"a", "b"}));
}

void LumaphoneGlossaryStoreTest::termsOfOneIdentityGetTheirOwnWhenTheyAreRead()
{
    const LumaphoneGlossaryTerm first = preserved(QStringLiteral("a"));
    LumaphoneGlossaryTerm second = first;
    second.source = QStringLiteral("b");
    LumaphoneGlossaryTerm third = first;
    third.source = QStringLiteral("c");
    write(glossaryFile(), LumaphoneGlossaryDocument {{first, second, third}}.encoded());
    const auto store = open();
    QCOMPARE(test::sources(store->terms()), test::strings({"a", "b", "c"}));
    QCOMPARE(store->terms()[0].id, first.id);
    QVERIFY(store->terms()[1].id != first.id);
    QVERIFY(store->terms()[2].id != first.id);
    QVERIFY(store->terms()[1].id != store->terms()[2].id);
    // Whoever reads them gives them the same.
    QCOMPARE(open()->terms(), store->terms());
}

void LumaphoneGlossaryStoreTest::aTermChangedElsewhereIsFoundByItsIdentity()
{
    open()->add(preserved(QStringLiteral("a")));
    const auto here = open();
    const auto there = open();
    const LumaphoneGlossaryTerm seen = here->terms().front();
    LumaphoneGlossaryTerm renamed = seen;
    renamed.note = QStringLiteral("a note of the other");
    there->replace(seen, renamed);
    here->remove(seen);
    QVERIFY(here->terms().isEmpty());
    QVERIFY(open()->terms().isEmpty());
}

void LumaphoneGlossaryStoreTest::changesOfAnotherStoreAreKept()
{
    const auto here = open();
    const auto there = open();
    here->add(preserved(QStringLiteral("a")));
    there->add(preserved(QStringLiteral("b")));
    here->replace(here->terms().front(), test::disabled(here->terms().front()));
    QCOMPARE(test::sources(here->terms()), test::strings({"a", "b"}));
    there->remove(here->terms().front());
    here->importTerms(QList {preserved(QStringLiteral("B")), preserved(QStringLiteral("c"))});
    QCOMPARE(test::sources(open()->terms()), test::strings({"b", "c"}));
}

void LumaphoneGlossaryStoreTest::whatAnotherStoreChangedIsShown()
{
    const auto here = open();
    const auto there = open();
    QSignalSpy changes(here.get(), &LumaphoneGlossaryStore::termsChanged);
    here->refresh();
    QCOMPARE(changes.size(), 0);
    there->add(preserved(QStringLiteral("a")));
    here->refresh();
    QCOMPARE(test::sources(here->terms()), test::strings({"a"}));
    QCOMPARE(changes.size(), 1);
}

void LumaphoneGlossaryStoreTest::aRefreshIsNoLoadOfADamagedOrMissingFile()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    write(glossaryFile(), "damaged");
    store->refresh();
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    removeFile(glossaryFile());
    store->refresh();
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    QVERIFY(!store->lastErrorMessage());
}

void LumaphoneGlossaryStoreTest::aListWhoseFileHasGoneIsWrittenAgain()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    QVERIFY(QDir(path("glossary")).removeRecursively());
    store->add(preserved(QStringLiteral("b")));
    QCOMPARE(test::sources(open()->terms()), test::strings({"a", "b"}));
}

void LumaphoneGlossaryStoreTest::whatCouldNotBeSavedGoesWithTheNextChange()
{
    const auto here = open();
    const auto there = open();
    there->add(preserved(QStringLiteral("a")));
    QVERIFY(QDir().rename(path("glossary"), path("aside")));
    replaceFile(path("glossary"), "a file", Durability::renamed);
    here->add(preserved(QStringLiteral("b")));
    QVERIFY(here->lastErrorMessage());
    removeFile(path("glossary"));
    QVERIFY(QDir().rename(path("aside"), path("glossary")));
    here->refresh();
    QCOMPARE(test::sources(here->terms()), test::strings({"b"}));
    here->add(preserved(QStringLiteral("c")));
    QCOMPARE(test::sources(open()->terms()), test::strings({"a", "b", "c"}));
}

void LumaphoneGlossaryStoreTest::enabledTermsAreThoseThatCanBeUsed()
{
    LumaphoneGlossaryTerm blank = preserved(QString());
    blank.source = QStringLiteral(" \u3000\n");
    write(glossaryFile(),
        LumaphoneGlossaryDocument {
            {preserved(QStringLiteral("c")), blank, test::disabled(preserved(QStringLiteral("b"))),
                preserved(QStringLiteral("a"))}}
            .encoded());
    const auto store = open();
    QCOMPARE(store->terms().size(), 4);
    QCOMPARE(test::sources(store->enabledTerms()), test::strings({"c", "a"}));
}

void LumaphoneGlossaryStoreTest::aFileThatCannotBeDecodedIsReported_data()
{
    const QByteArray good = LumaphoneGlossaryDocument {{preserved(QStringLiteral("a"))}}.encoded();
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("named");
    QTest::newRow("a term without caseSensitive")
        << QByteArray(good).replace("caseSensitive", "other") << "caseSensitive";
    QTest::newRow("an unknown mode") << QByteArray(good).replace("\"preserve\"", "\"keep\"") << "keep";
    QTest::newRow("a bare array") << QByteArray("[]") << "terms";
    QTest::newRow("empty") << QByteArray() << "JSON";
    QTest::newRow("cut off") << good.chopped(1) << "JSON";
    QTest::newRow("zeros, as after a power cut") << QByteArray(4096, '\0') << "JSON";
    QTest::newRow("not UTF-8") << QByteArray(good).replace("\"a\"", "\"\xE9\"") << "JSON";
}

void LumaphoneGlossaryStoreTest::aFileThatCannotBeDecodedIsReported()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, named);
    write(glossaryFile(), bytes);
    const auto store = open();
    QVERIFY(store->terms().isEmpty());
    QVERIFY(store->lastErrorMessage());
    QVERIFY2(store->lastErrorMessage()->contains(named), qPrintable(*store->lastErrorMessage()));
    QCOMPARE(glossaryBytes(), bytes);
    QCOMPARE(glossaryFolder(), test::strings({"glossary.json"}));
}

void LumaphoneGlossaryStoreTest::aFolderInPlaceOfTheFileIsReportedAndKept()
{
    write(path("glossary/inside"), "kept");
    createFolder(glossaryFile());
    const auto store = open();
    QVERIFY(store->lastErrorMessage());
    store->add(preserved(QStringLiteral("a")));
    QVERIFY(!store->lastErrorMessage());
    QVERIFY(QDir(path("glossary/glossary.damaged.json")).exists());
    QCOMPARE(test::sources(open()->terms()), test::strings({"a"}));
}

void LumaphoneGlossaryStoreTest::aDamagedFileIsKeptAsideBeforeItIsOverwritten()
{
    write(glossaryFile(), "damaged");
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    store->add(preserved(QStringLiteral("b")));
    QVERIFY(!store->lastErrorMessage());
    QCOMPARE(glossaryFolder(), test::strings({"glossary.damaged.json", "glossary.json"}));
    QCOMPARE(readFile(path("glossary/glossary.damaged.json")), QByteArray("damaged"));
    QCOMPARE(test::sources(open()->terms()), test::strings({"a", "b"}));
}

void LumaphoneGlossaryStoreTest::everyDamagedFileIsKeptAside()
{
    for (const char *bytes : {"first", "second", "third"}) {
        write(glossaryFile(), bytes);
        open()->add(preserved(QStringLiteral("a")));
    }
    QCOMPARE(readFile(path("glossary/glossary.damaged.json")), QByteArray("first"));
    QCOMPARE(readFile(path("glossary/glossary.damaged-2.json")), QByteArray("second"));
    QCOMPARE(readFile(path("glossary/glossary.damaged-3.json")), QByteArray("third"));
    QCOMPARE(glossaryFolder().size(), 4);
}

void LumaphoneGlossaryStoreTest::aFileThatWasLoadedIsNotKeptAside()
{
    open()->add(preserved(QStringLiteral("a")));
    open()->add(preserved(QStringLiteral("b")));
    QCOMPARE(glossaryFolder(), test::strings({"glossary.json"}));
}

void LumaphoneGlossaryStoreTest::aDamagedFileThatWasMendedIsNotKeptAside()
{
    write(glossaryFile(), "damaged");
    const auto store = open();
    write(glossaryFile(), LumaphoneGlossaryDocument {}.encoded());
    store->load();
    store->add(preserved(QStringLiteral("a")));
    QCOMPARE(glossaryFolder(), test::strings({"glossary.json"}));
}

void LumaphoneGlossaryStoreTest::aFolderThatCannotBeCreatedIsReported()
{
    replaceFile(path("glossary"), "a file", Durability::renamed);
    const auto store = open();
    QVERIFY(store->terms().isEmpty());
    QVERIFY(store->lastErrorMessage());
    QVERIFY2(store->lastErrorMessage()->contains(path("glossary")), qPrintable(*store->lastErrorMessage()));
}

void LumaphoneGlossaryStoreTest::aFailedSaveKeepsTheList()
{
    const auto store = open();
    QVERIFY(QDir(path("glossary")).removeRecursively());
    replaceFile(path("glossary"), "a file", Durability::renamed);
    store->add(preserved(QStringLiteral("a")));
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    QVERIFY(store->lastErrorMessage());
}

void LumaphoneGlossaryStoreTest::aSuccessfulSaveClearsTheMessage()
{
    replaceFile(path("glossary"), "a file", Durability::renamed);
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    QVERIFY(store->lastErrorMessage());
    removeFile(path("glossary"));
    store->add(preserved(QStringLiteral("b")));
    QVERIFY(!store->lastErrorMessage());
    QCOMPARE(test::sources(open()->terms()), test::strings({"a", "b"}));
}

void LumaphoneGlossaryStoreTest::importedTermsAreAppendedInFileOrder()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("m")));
    write(path("a.csv"), "z,1\nm,2\na,3,preserve");
    store->importTerms(path("a.csv"));
    QCOMPARE(test::lines(store->terms()),
        test::strings({"m||preserve||true|false", "z|1|translate||true|false", "a|3|preserve||true|false"}));
    QCOMPARE(open()->terms(), store->terms());
}

void LumaphoneGlossaryStoreTest::importedSourcesAreComparedWithoutCase_data()
{
    QTest::addColumn<QString>("existing");
    QTest::addColumn<QString>("imported");
    QTest::addColumn<bool>("isNew");
    QTest::newRow("the same") << "Codex"
                              << "Codex" << false;
    QTest::newRow("other case") << "Codex"
                                << "cODEX" << false;
    QTest::newRow("blanks around the imported one") << "Codex"
                                                    << "\u3000codex " << false;
    QTest::newRow("accented capitals") << "ÉCOLE"
                                       << "école" << false;
    QTest::newRow("decomposed") << "ÉCOLE"
                                << "e\u0301cole" << false;
    QTest::newRow("Greek") << "ΑΘΗΝΑ"
                           << "αθηνα" << false;
    QTest::newRow("full width") << "ＡＢ"
                                << "ａｂ" << false;
    QTest::newRow("an accent makes another source") << "ecole"
                                                    << "école" << true;
    QTest::newRow("width makes another source") << "ＡＢ"
                                                << "ab" << true;
    QTest::newRow("voiced kana") << "ハ"
                                 << "パ" << true;
    QTest::newRow("sharp s is not folded") << "STRASSE"
                                           << "straße" << true;
    QTest::newRow("inner blanks count") << "a b"
                                        << "a  b" << true;
}

void LumaphoneGlossaryStoreTest::importedSourcesAreComparedWithoutCase()
{
    QFETCH(QString, existing);
    QFETCH(QString, imported);
    const auto store = open();
    store->add(preserved(existing));
    write(path("a.csv"), imported.toUtf8() + ",x");
    store->importTerms(path("a.csv"));
    QTEST(store->terms().size() == 2, "isNew");
}

void LumaphoneGlossaryStoreTest::importedTermsAreNotComparedWithEachOther()
{
    const auto store = open();
    write(path("a.csv"), "a,1\nA,2\na,1");
    store->importTerms(path("a.csv"));
    QCOMPARE(test::sources(store->terms()), test::strings({"a", "A", "a"}));
    store->importTerms(path("a.csv"));
    QCOMPARE(store->terms().size(), 3);
}

void LumaphoneGlossaryStoreTest::theStoredSourceIsComparedAsItIs()
{
    write(glossaryFile(), LumaphoneGlossaryDocument {{preserved(QStringLiteral(" a"))}}.encoded());
    const auto store = open();
    write(path("a.csv"), "a,1");
    store->importTerms(path("a.csv"));
    QCOMPARE(test::sources(store->terms()), test::strings({" a", "a"}));
}

void LumaphoneGlossaryStoreTest::importedTermsAreCleanedAndKeepTheirIdentity()
{
    LumaphoneGlossaryTerm term = translated(QStringLiteral(" a\n"), QStringLiteral("\tb "));
    term.note = QStringLiteral(" n ");
    write(path("a.json"), LumaphoneGlossaryDocument {{test::disabled(term)}}.encoded());
    const auto store = open();
    store->importTerms(path("a.json"));
    QCOMPARE(test::lines(store->terms()), test::strings({"a|b|translate|n|false|false"}));
    QCOMPARE(store->terms().front().id, term.id);
}

void LumaphoneGlossaryStoreTest::aFailedImportChangesNothing()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("a")));
    write(glossaryFile(), "untouched");
    write(path("a.txt"), "b,c");
    write(path("a.json"), "{");
    write(path("a.csv"), "\xFF");
    QVERIFY(test::thrownBy<LumaphoneGlossaryError>([&] { store->importTerms(path("a.txt")); }));
    QVERIFY(test::thrownBy<json::DecodingError>([&] { store->importTerms(path("a.json")); }));
    QVERIFY(test::thrownBy<PlatformError>([&] { store->importTerms(path("a.csv")); }));
    QVERIFY(test::thrownBy<FileError>([&] { store->importTerms(path("missing.csv")); }));
    QCOMPARE(test::sources(store->terms()), test::strings({"a"}));
    QVERIFY(!store->lastErrorMessage());
    QCOMPARE(glossaryBytes(), QByteArray("untouched"));
}

void LumaphoneGlossaryStoreTest::anExportIsImportedWithTheSameTerms()
{
    const auto store = open();
    store->add(preserved(QStringLiteral("say \"hi\""), QStringLiteral("C:\\")));
    store->add(test::disabled(translated(QStringLiteral("東京"), QStringLiteral("Tokyo: # 1"))));
    store->add(test::caseSensitive(translated(QStringLiteral("same"), QStringLiteral("same"))));
    store->exportYAML(path("export.yaml"));
    LumaphoneGlossaryStore other(path("other"), {}, test::countedUuids());
    other.importTerms(path("export.yaml"));
    QCOMPARE(test::lines(other.terms()), test::lines(store->terms()));
    QCOMPARE(other.terms().front().id, test::countedUuid(1));
}

void LumaphoneGlossaryStoreTest::anExportThatCannotBeWrittenThrows()
{
    const auto store = open();
    QVERIFY(test::thrownBy<FileError>([&] { store->exportYAML(path("no/such/folder.yaml")); }));
    QVERIFY(!store->lastErrorMessage());
}

void LumaphoneGlossaryStoreTest::propertiesNotifyOnlyOfChanges()
{
    const auto store = open();
    QSignalSpy terms(store.get(), &LumaphoneGlossaryStore::termsChanged);
    QSignalSpy message(store.get(), &LumaphoneGlossaryStore::lastErrorMessageChanged);
    store->add(preserved(QStringLiteral("a")));
    QCOMPARE(terms.size(), 1);
    store->update(store->terms().front());
    store->load();
    QCOMPARE(terms.size(), 1);
    QCOMPARE(message.size(), 0);
    write(glossaryFile(), "damaged");
    store->load();
    store->load();
    QCOMPARE(terms.size(), 2);
    QCOMPARE(message.size(), 1);
    QVERIFY(store->property("terms").value<QList<LumaphoneGlossaryTerm>>().isEmpty());
    QCOMPARE(store->property("lastErrorMessage").value<std::optional<QString>>(), store->lastErrorMessage());
}

void LumaphoneGlossaryStoreTest::theGlossaryFileIsShownWhetherItExistsOrNot()
{
    const auto store = open();
    QVERIFY(QDir(path("glossary")).removeRecursively());
    test::waitFor(store->openGlossaryFolder());
    QVERIFY(QDir(path("glossary")).exists());
    QCOMPARE(m_revealed, QStringList {glossaryFile()});
}

void LumaphoneGlossaryStoreTest::showingTheFileReportsNoError()
{
    const auto store = open();
    QVERIFY(QDir(path("glossary")).removeRecursively());
    replaceFile(path("glossary"), "a file", Durability::renamed);
    test::waitFor(store->openGlossaryFolder());
    QCOMPARE(m_revealed, QStringList {glossaryFile()});
    QVERIFY(!store->lastErrorMessage());
}

LUMAPHONE_TEST(LumaphoneGlossaryStoreTest)

} // namespace lumaphoneglossarystoretest

#include "LumaphoneGlossaryStoreTest.moc"
