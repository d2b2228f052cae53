#include "cli/GlossaryCommand.h"

#include "cli/CollectedStreams.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace glossarycommandtest {

using namespace lumaphone;
using namespace lumaphone::cli;

class GlossaryCommandTest : public QObject
{
    Q_OBJECT

private:
    struct Fixture
    {
        QTemporaryDir folder;
        LumaphoneGlossaryStore store {folder.path(), {}};
        test::CollectedStreams printed;

        ExitStatus add(const GlossaryAdd &command)
        {
            return runGlossaryAdd(command, store, &QUuid::createUuid, printed.streams);
        }
        QByteArray list()
        {
            printed.output.clear();
            runGlossaryList(store, printed.streams);
            return printed.output;
        }
    };

private slots:
    void termsAreAddedAndListed()
    {
        Fixture f;
        QCOMPARE(
            f.add({"Lumaphone", {}, LumaphoneGlossaryTermMode::preserve, "the product", false}), exitSuccess);
        QCOMPARE(f.add({"tea", "茶", LumaphoneGlossaryTermMode::translate, {}, true}), exitSuccess);
        QCOMPARE(f.list(), QByteArray("on\tpreserve\tLumaphone\t\tthe product\non\ttranslate\ttea\t茶\t\n"));
        QVERIFY(f.store.terms().at(1).caseSensitive);
        QVERIFY(LumaphoneGlossaryStore(f.folder.path(), {}).terms() == f.store.terms());
    }

    void aTermIsSwitchedOffAndOn()
    {
        Fixture f;
        f.add({"tea", "茶", LumaphoneGlossaryTermMode::translate, {}, false});
        QCOMPARE(runGlossarySetEnabled({"tea", false}, f.store, f.printed.streams), exitSuccess);
        QCOMPARE(f.list(), QByteArray("off\ttranslate\ttea\t茶\t\n"));
        QCOMPARE(runGlossarySetEnabled({"tea", true}, f.store, f.printed.streams), exitSuccess);
        QCOMPARE(f.list(), QByteArray("on\ttranslate\ttea\t茶\t\n"));
    }

    void aTermIsRemoved()
    {
        Fixture f;
        f.add({"tea", "茶", LumaphoneGlossaryTermMode::translate, {}, false});
        QCOMPARE(runGlossaryRemove({"tea"}, f.store, f.printed.streams), exitSuccess);
        QCOMPARE(f.list(), QByteArray());
    }

    void aTermThatIsNotThereIsSaid()
    {
        Fixture f;
        QCOMPARE(runGlossaryRemove({"coffee"}, f.store, f.printed.streams), exitFailure);
        QCOMPARE(runGlossarySetEnabled({"coffee", true}, f.store, f.printed.streams), exitFailure);
        QCOMPARE(f.printed.messages.count("coffee"), 2);
    }

    void aTermIsAddedOnce()
    {
        Fixture f;
        f.add({"é", "one", LumaphoneGlossaryTermMode::translate, {}, false});
        QCOMPARE(f.add({"e\u0301", "two", LumaphoneGlossaryTermMode::translate, {}, false}), exitFailure);
        QCOMPARE(f.store.terms().size(), 1);
        QVERIFY(f.printed.messages.contains("已經有"));
    }

    void aGlossaryThatCannotBeReadIsNotWrittenOver()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("glossary.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{ damaged");
        file.close();
        LumaphoneGlossaryStore store(folder.path(), {});
        test::CollectedStreams printed;
        QCOMPARE(runGlossaryAdd({"tea", {}, LumaphoneGlossaryTermMode::preserve, {}, false}, store,
                     &QUuid::createUuid, printed.streams),
            exitFailure);
        QVERIFY(!printed.messages.isEmpty());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("{ damaged"));
    }
};

LUMAPHONE_TEST(GlossaryCommandTest)

} // namespace glossarycommandtest

#include "GlossaryCommandTest.moc"
