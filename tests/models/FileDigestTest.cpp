#include "models/FileDigest.h"

#include "base/AtomicFile.h"
#include "models/ModelError.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace filedigesttest {

using namespace lumaphone;

class FileDigestTest : public QObject
{
    Q_OBJECT

private slots:
    void knownTextsHaveTheirKnownDigests_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("sha256");
        QTest::newRow("nothing") << QByteArray()
                                 << "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
        QTest::newRow("a short text")
            << QByteArray("abc") << "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
        QTest::newRow("a million letters") << QByteArray(
            1'000'000, 'a') << "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0";
    }
    void knownTextsHaveTheirKnownDigests()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, sha256);
        const QTemporaryDir folder;
        replaceFile(folder.filePath("file"), bytes, Durability::renamed);
        const FileDigest expected {bytes.size(), sha256};
        QVERIFY(digestOf(folder.filePath("file")) == expected);
    }

    void piecesMakeTheSameDigest()
    {
        const QByteArray bytes = test::noise(1000, 5);
        RunningDigest digest;
        for (qsizetype at = 0; at < bytes.size(); at += 7) {
            digest.add(QByteArrayView(bytes).sliced(at, std::min<qsizetype>(7, bytes.size() - at)));
            QCOMPARE(digest.result().sha256, test::sha256Of(bytes.first(digest.size())));
        }
        QCOMPARE(digest.size(), bytes.size());
    }

    void whatCannotBeReadIsSaid()
    {
        QVERIFY(test::thrownBy<FileError>([] { digestOf("/nowhere/file"); }));
    }

    void itEndsWhenItIsStopped()
    {
        const QTemporaryDir folder;
        replaceFile(folder.filePath("file"), "bytes", Durability::renamed);
        std::stop_source stop;
        stop.request_stop();
        const auto error
            = test::thrownBy<ModelError>([&] { digestOf(folder.filePath("file"), stop.get_token()); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::cancelled);
    }
};

LUMAPHONE_TEST(FileDigestTest)

} // namespace filedigesttest

#include "FileDigestTest.moc"
