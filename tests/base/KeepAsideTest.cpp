#include "base/AtomicFile.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace keepasidetest {

using namespace lumaphone;

class KeepAsideTest : public QObject
{
    Q_OBJECT

private slots:
    void theSecondNameTellsOfTheDamage_data();
    void theSecondNameTellsOfTheDamage();
    void theFileKeepsItsNameUntilItIsReplaced();
    void namesThatAreTakenAreLeftAlone();
    void aFolderIsRenamed();
    void nothingHappensWithoutAFile();
    void aFileBelowAFileIsAnError();
};

void KeepAsideTest::theSecondNameTellsOfTheDamage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("second");
    QTest::newRow("an extension") << "index.json"
                                  << "index.damaged.json";
    QTest::newRow("two extensions") << "index.old.json"
                                    << "index.old.damaged.json";
    QTest::newRow("no extension") << "index"
                                  << "index.damaged";
    QTest::newRow("Chinese") << "術語 表.json"
                             << "術語 表.damaged.json";
}

void KeepAsideTest::theSecondNameTellsOfTheDamage()
{
    QFETCH(QString, name);
    QFETCH(QString, second);
    const QTemporaryDir folder;
    replaceFile(folder.filePath(name), "damaged", Durability::renamed);
    keepAside(folder.filePath(name));
    QCOMPARE(readFile(folder.filePath(second)), QByteArray("damaged"));
}

void KeepAsideTest::theFileKeepsItsNameUntilItIsReplaced()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("index.json"));
    replaceFile(path, "damaged", Durability::renamed);
    keepAside(path);
    QCOMPARE(readFile(path), QByteArray("damaged"));
    replaceFile(path, "new", Durability::renamed);
    QCOMPARE(readFile(path), QByteArray("new"));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("index.damaged.json"))), QByteArray("damaged"));
}

void KeepAsideTest::namesThatAreTakenAreLeftAlone()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("index.json"));
    for (const char *bytes : {"1", "2", "3"}) {
        replaceFile(path, bytes, Durability::renamed);
        keepAside(path);
    }
    QCOMPARE(readFile(folder.filePath(QStringLiteral("index.damaged.json"))), QByteArray("1"));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("index.damaged-2.json"))), QByteArray("2"));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("index.damaged-3.json"))), QByteArray("3"));
}

void KeepAsideTest::aFolderIsRenamed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("index.json"));
    createFolder(path + QStringLiteral("/inside"));
    keepAside(path);
    QVERIFY(!QDir(path).exists());
    QVERIFY(QDir(folder.filePath(QStringLiteral("index.damaged.json/inside"))).exists());
}

void KeepAsideTest::nothingHappensWithoutAFile()
{
    const QTemporaryDir folder;
    keepAside(folder.filePath(QStringLiteral("index.json")));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void KeepAsideTest::aFileBelowAFileIsAnError()
{
    const QTemporaryDir folder;
    replaceFile(folder.filePath(QStringLiteral("a")), "file", Durability::renamed);
    const QString path = folder.filePath(QStringLiteral("a/index.json"));
    QVERIFY(test::thrownBy<FileError>([&] { keepAside(path); }));
}

LUMAPHONE_TEST(KeepAsideTest)

} // namespace keepasidetest

#include "KeepAsideTest.moc"
