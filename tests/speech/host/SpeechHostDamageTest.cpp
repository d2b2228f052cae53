#include "speech/host/HostedSpeech.h"
#include "support/FilePermissions.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

namespace speechhostdamagetest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

SpeechInstallation installation()
{
    return toyInstallation(QStringLiteral(LUMAPHONE_SPEECH_HOST), QStringLiteral(LUMAPHONE_SPEECH_RUNTIME));
}

QString errorWith(const SpeechInstallation &broken)
{
    return test::errorWith(
        broken, {SpokenLanguage::japanese, SpokenLanguage::english}, speak(toyPhrases().front()));
}

/// `part`: "network", "tokens" or "detector".
SpeechInstallation installationWith(const QString &part, const QString &path)
{
    SpeechInstallation changed = installation();
    if (part == "network") {
        changed.network.files = {encodedPath(path)};
    } else if (part == "tokens") {
        changed.network.tokens = encodedPath(path);
    } else {
        changed.voiceDetector = path;
    }
    return changed;
}

const QString network = QStringLiteral("語音辨識模型缺少或已損壞，請移除後重新安裝。");
const QString detector = QStringLiteral("語音偵測模型缺少或已損壞，請移除後重新安裝。");
const QString ended = QStringLiteral("語音辨識程式在載入模型時結束，模型可能已損壞，請移除後重新安裝。");

} // namespace

class SpeechHostDamageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(obeyFilePermissions()); }

    void aSoundInstallationWorks() { QCOMPARE(errorWith(installation()), QString()); }

    void damagedNetworksAreToldAndTheProgramLives_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        const QByteArray whole = contents(toySpeechFile("toy-sense.onnx"));
        QByteArray flipped = whole;
        for (qsizetype i = 1000; i < flipped.size(); i += 997) {
            flipped[i] = char(~flipped[i]);
        }
        QByteArray untyped = whole;
        untyped.replace("lfr_window_size", "lfr_window_sizy");
        QTest::newRow("empty") << QByteArray() << network;
        QTest::newRow("text") << QByteArray("<html>not found</html>") << network;
        QTest::newRow("cut off") << whole.left(whole.size() / 2) << network;
        QTest::newRow("changed bytes") << flipped << network;
        QTest::newRow("without its window") << untyped << ended;
        QTest::newRow("another network") << contents(toySpeechFile("toy-vad.onnx")) << ended;
    }
    void damagedNetworksAreToldAndTheProgramLives()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        const QTemporaryDir folder;
        const QString path = folder.filePath("網路.onnx");
        write(path, bytes);
        SpeechInstallation broken = installation();
        broken.network.files = {encodedPath(path)};
        const QString error = errorWith(broken);
        QVERIFY2(error.startsWith(expected), qPrintable(error));
    }

    void missingFilesAreTold_data()
    {
        QTest::addColumn<QString>("part");
        QTest::newRow("network") << "network";
        QTest::newRow("tokens") << "tokens";
        QTest::newRow("voice detector") << "detector";
    }
    void missingFilesAreTold()
    {
        QFETCH(QString, part);
        const QString error = errorWith(installationWith(part, "/nowhere/file"));
        QVERIFY2(error.contains("移除後重新安裝"), qPrintable(error));
    }

    void aFolderInAFilesPlaceIsTold_data()
    {
        QTest::addColumn<QString>("part");
        QTest::newRow("network") << "network";
        QTest::newRow("tokens") << "tokens";
        QTest::newRow("voice detector") << "detector";
    }
    void aFolderInAFilesPlaceIsTold()
    {
        QFETCH(QString, part);
        const QTemporaryDir folder;
        const QString error = errorWith(installationWith(part, folder.path()));
        QVERIFY2(error.contains("移除後重新安裝"), qPrintable(error));
    }

    void filesThatMustNotBeReadAreTold_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("file");
        QTest::newRow("network") << "network" << toySpeechFile("toy-sense.onnx");
        QTest::newRow("tokens") << "tokens" << toySpeechFile("tokens.txt");
        QTest::newRow("voice detector") << "detector" << toySpeechFile("toy-vad.onnx");
    }
    void filesThatMustNotBeReadAreTold()
    {
        QFETCH(QString, part);
        QFETCH(QString, file);
        const QTemporaryDir folder;
        const QString path = folder.filePath("檔案");
        write(path, contents(file));
        QVERIFY(QFile::setPermissions(path, {}));
        QCOMPARE(errorWith(installationWith(part, path)),
            QStringLiteral("沒有讀取語音辨識檔案的權限，請檢查檔案權限後再試一次。（%1）").arg(path));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        QCOMPARE(errorWith(installationWith(part, path)), QString());
    }

    void aLibraryThatMustNotBeReadIsTold()
    {
        const QTemporaryDir folder;
        const QString onnx = QStringLiteral("libonnxruntime.so");
        const QString api = QStringLiteral("libsherpa-onnx-c-api.so");
        for (const QString &name : {onnx, api}) {
            QVERIFY(QFile::copy(QStringLiteral(LUMAPHONE_SPEECH_RUNTIME "/") + name, folder.filePath(name)));
        }
        SpeechInstallation copied = installation();
        copied.runtimeFolder = folder.path();
        QCOMPARE(errorWith(copied), QString());
        for (const QString &name : {api, onnx}) {
            QVERIFY(QFile::setPermissions(folder.filePath(name), {}));
            const QString error = errorWith(copied);
            QVERIFY2(error.startsWith("無法載入語音辨識執行庫"), qPrintable(error));
            QVERIFY2(error.contains(name + ": cannot open shared object file: Permission denied"),
                qPrintable(error));
        }
    }

    void aDamagedVoiceDetectorIsTold_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray whole = contents(toySpeechFile("toy-vad.onnx"));
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << whole.left(whole.size() / 2);
        QTest::newRow("another network") << contents(toySpeechFile("toy-sense.onnx"));
    }
    void aDamagedVoiceDetectorIsTold()
    {
        QFETCH(QByteArray, bytes);
        const QTemporaryDir folder;
        const QString path = folder.filePath("vad.onnx");
        write(path, bytes);
        SpeechInstallation broken = installation();
        broken.voiceDetector = path;
        const QString error = errorWith(broken);
        QVERIFY2(error.startsWith(detector) || error == ended, qPrintable(error));
    }

    void tooFewTokensAreTold()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("tokens.txt");
        write(path, contents(toySpeechFile("tokens.txt")).left(40));
        SpeechInstallation broken = installation();
        broken.network.tokens = encodedPath(path);
        QVERIFY(errorWith(broken).contains("移除後重新安裝"));
    }

    void aMissingLibraryIsTold_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("expected");
        const QString missing
            = QStringLiteral("無法載入語音辨識執行庫 libsherpa-onnx-c-api.so，請重新安裝 Lumaphone。");
        QTest::newRow("no folder") << "/nowhere" << missing;
        QTest::newRow("without the functions") << LUMAPHONE_TEST_RUNTIMES "/empty-runtime" << missing;
        QTest::newRow("too old") << LUMAPHONE_TEST_RUNTIMES "/old-runtime"
                                 << "語音辨識執行庫的版本 1.12.34 太舊，需要 1.12.35 以上的版本。";
    }
    void aMissingLibraryIsTold()
    {
        QFETCH(QString, folder);
        QFETCH(QString, expected);
        SpeechInstallation broken = installation();
        broken.runtimeFolder = folder;
        const QString error = errorWith(broken);
        QVERIFY2(error.startsWith(expected), qPrintable(error));
    }
};

LUMAPHONE_TEST(SpeechHostDamageTest)

} // namespace speechhostdamagetest

#include "SpeechHostDamageTest.moc"
