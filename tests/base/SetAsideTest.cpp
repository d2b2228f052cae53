#include "base/SetAside.h"

#include "base/AtomicFile.h"
#include "support/Coroutines.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace lumaphone;
using namespace lumaphone::test;

class SetAsideTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFileGetsAFreeName();
    void aMissingFileIsAnError();
};

void SetAsideTest::everyFileGetsAFreeName()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.json"));
    QStringList names;
    for (const QByteArray bytes : {"1", "2", "3"}) {
        replaceFile(path, bytes, Durability::Renamed);
        const QString aside = setAside(path);
        QCOMPARE(readFile(aside).value_or("(gone)"), bytes);
        names.append(QDir(folder.path()).relativeFilePath(aside));
        QVERIFY(!QFile::exists(path));
    }
    QCOMPARE(
        names.join(QLatin1Char(' ')), QStringLiteral("a.json.damaged a.json.damaged-2 a.json.damaged-3"));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("a.json.damaged"))).value_or("(gone)"), QByteArray("1"));
}

void SetAsideTest::aMissingFileIsAnError()
{
    const QTemporaryDir folder;
    QVERIFY(thrownBy<FileError>([&] { setAside(folder.filePath(QStringLiteral("gone"))); }));
}

QTEST_GUILESS_MAIN(SetAsideTest)
#include "SetAsideTest.moc"
