#include "models/ModelInstaller.h"

#include "base/AtomicFile.h"
#include "base/FileLock.h"
#include "models/ModelError.h"
#include "support/Coroutines.h"
#include "support/FilePermissions.h"
#include "support/FileServer.h"
#include "support/FileSizeLimit.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace modelinstallertest {

using namespace lumaphone;
using test::gzipped;
using test::sha256Of;

namespace {

const QByteArray weights = test::noise(300'000, 7);
const QByteArray words = "words of both languages";
const QByteArray tokens = "a b c";

/// A speech model as it is published.
QByteArray archive(const QByteArray &licence = "terms")
{
    return test::tarBz2({{"s/model.onnx", weights}, {"s/tokens.txt", tokens}, {"s/LICENSE", licence}});
}

/// A translation model of two files, a speech model in an archive and one for which no disk is large enough.
QByteArray listing(const QString &server)
{
    const QString text = QStringLiteral(R"({"models": [
    {"id": "ja-en", "kind": "translation", "title": "日文", "languages": ["ja", "en"],
     "licence": {"text": "free", "mustBeAccepted": false},
     "downloads": [{"url": "%1/model.bin.gz", "compression": "gzip", "files": [%2]},
      {"url": "%1/vocab.spm.gz", "compression": "gzip", "files": [%3]}]},
    {"id": "speech", "kind": "speech", "title": "語音", "languages": ["ja"],
     "licence": {"text": "ask first", "mustBeAccepted": true},
     "downloads": [{"url": "%1/speech.tar.bz2", "compression": "tar.bz2", "sha256": "%4",
        "files": [%5, %6, {"role": "licence", "name": "LICENSE"}]}]},
    {"id": "vast", "kind": "speech", "title": "大模型", "languages": ["ja"],
     "licence": {"text": "free", "mustBeAccepted": false},
     "downloads": [{"url": "%1/vast.onnx", "compression": "none", "size": 1000000000000000,
        "files": [%7]}]}]})");
    using test::listedFile;
    return text
        .arg(server, listedFile("model", "model.bin", weights),
            listedFile("sourceVocabulary", "vocab.spm", words), sha256Of(archive()),
            listedFile("model", "model.onnx", weights), listedFile("tokens", "tokens.txt", tokens),
            listedFile("model", "vast.onnx", weights))
        .toUtf8();
}

} // namespace

class ModelInstallerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<test::FileServer>();
        m_server->put("/model.bin.gz", gzipped(weights));
        m_server->put("/vocab.spm.gz", gzipped(words));
        m_store = std::make_unique<ModelStore>(m_scratch->filePath("模型 モデル/Models"),
            ModelCatalogue::fromJson(listing(m_server->url({})), "test"));
        m_installer = std::make_unique<ModelInstaller>(*m_store, m_mainQueue, m_options);
        m_progress.clear();
    }

    void aModelArrivesWhole()
    {
        install("ja-en");
        QCOMPARE(state("ja-en"), ModelState::installed);
        QCOMPARE(contents("ja-en", "model.bin"), weights);
        QCOMPARE(contents("ja-en", "vocab.spm"), words);
        m_store->verify(entry("ja-en"));
        // Nothing else is left but the lock.
        QCOMPARE(QDir(m_store->folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            (QStringList {".ja-en.lock", "ja-en"}));
    }

    void anArchiveArrivesUnpacked()
    {
        m_server->put("/speech.tar.bz2", archive());
        install("speech", LicenceConsent::accepted);
        QCOMPARE(contents("speech", "model.onnx"), weights);
        QCOMPARE(contents("speech", "tokens.txt"), tokens);
        QCOMPARE(contents("speech", "LICENSE"), QByteArray("terms"));
        m_store->verify(entry("speech"));
    }

    void anotherLicenceMakesAnotherArchive()
    {
        m_server->put("/speech.tar.bz2", archive("other terms"));
        const ModelError error = failure("speech", LicenceConsent::accepted);
        QCOMPARE(error.errorCase(), ModelError::Case::wrongContents);
        QCOMPARE(error.subject(), QStringLiteral("speech.tar.bz2"));
        QVERIFY(!m_store->installed(entry("speech")));
    }

    void progressIsToldFromTheFirstByteToTheLast()
    {
        install("ja-en");
        QVERIFY(m_progress.size() >= 4);
        QCOMPARE(m_progress.first().phase, ModelProgress::Phase::downloading);
        qint64 last = 0;
        for (const ModelProgress &progress : std::as_const(m_progress)) {
            if (progress.phase == ModelProgress::Phase::downloading) {
                QVERIFY(progress.done >= last);
                last = progress.done;
            }
        }
        QCOMPARE(last, gzipped(weights).size() + gzipped(words).size());
        QCOMPARE(m_progress.last().phase, ModelProgress::Phase::unpacking);
        QCOMPARE(m_progress.last().done, *m_progress.last().total);
    }

    void whatIsInstalledIsNotFetchedAgain()
    {
        install("ja-en");
        const auto requests = m_server->requests().size();
        install("ja-en");
        QCOMPARE(m_server->requests().size(), requests);
    }

    void aLicenceIsAskedForFirst()
    {
        const auto error = failure("speech");
        QCOMPARE(error.errorCase(), ModelError::Case::licenceNotAccepted);
        QVERIFY(m_server->requests().isEmpty());
        QCOMPARE(state("speech"), ModelState::missing);
    }

    void aCutDownloadGoesOnWhereItEnded()
    {
        m_server->cuts = 2;
        m_server->cutAfter = 100'000;
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
        const auto requests = m_server->requestsFor("/model.bin.gz");
        QVERIFY(!requests.first().hasHeader("Range"));
        QVERIFY(requests.last().header("Range").startsWith("bytes="));
        QCOMPARE(requests.last().header("If-Range"), QByteArray("\"first\""));
    }

    void aLaterInstallationGoesOnToo()
    {
        interrupt();
        QCOMPARE(state("ja-en"), ModelState::partial);
        const auto before = m_server->requestsFor("/model.bin.gz").size();

        m_installer = std::make_unique<ModelInstaller>(*m_store, m_mainQueue, m_options);
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
        const auto requests = m_server->requestsFor("/model.bin.gz");
        QVERIFY(requests.size() > before); // perhaps more than once, on a busy machine
        QVERIFY(requests.last().header("Range").mid(6).chopped(1).toLongLong() > 0);
    }

    void anotherFileAtTheSameAddressBeginsAnew()
    {
        interrupt();
        m_server->tag = "\"second\"";
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void aServerWithoutRangesOrTagsIsReadFromTheStart_data()
    {
        QTest::addColumn<bool>("knowsRanges");
        QTest::addColumn<QByteArray>("tag");
        QTest::newRow("no ranges") << false << QByteArray("\"first\"");
        QTest::newRow("no tag") << true << QByteArray();
        QTest::newRow("weak tag") << true << QByteArray("W/\"first\"");
    }
    void aServerWithoutRangesOrTagsIsReadFromTheStart()
    {
        QFETCH(bool, knowsRanges);
        QFETCH(QByteArray, tag);
        m_server->knowsRanges = knowsRanges;
        m_server->tag = tag;
        m_server->cuts = 1;
        m_server->cutAfter = 100'000;
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void aLeftoverLongerThanTheFileIsThrownAway()
    {
        interrupt();
        QFile leftover(m_store->partialFolder(entry("ja-en")) + "/0.download");
        QVERIFY(leftover.open(QIODevice::Append));
        leftover.write(QByteArray(500'000, 'x'));
        leftover.close();
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void whatDoesNotWorkIsSaid_data()
    {
        QTest::addColumn<std::function<void(test::FileServer &)>>("misbehave");
        QTest::addColumn<ModelError::Case>("error");
        QTest::addColumn<QString>("text");
        using Misbehave = std::function<void(test::FileServer &)>;
        using Case = ModelError::Case;
        QTest::newRow("not found") << Misbehave([](test::FileServer &server) { server.status = 404; })
                                   << Case::refused << "無法下載 model.bin.gz：伺服器回應 HTTP 404。";
        QTest::newRow("server error") << Misbehave([](test::FileServer &server) { server.status = 503; })
                                      << Case::refused << "無法下載 model.bin.gz：伺服器回應 HTTP 503。";
        QTest::newRow("dead server") << Misbehave([](test::FileServer &server) { server.close(); })
                                     << Case::unreachable << "無法下載 model.bin.gz：";
        QTest::newRow("stalled") << Misbehave([](test::FileServer &server) { server.muteAfter = 1000; })
                                 << Case::stalled
                                 << "下載 model.bin.gz 時伺服器沒有回應。已下載的部分會保留，可稍後繼續。";
        QTest::newRow("always cut") << Misbehave([](test::FileServer &server) { server.cuts = 1000; })
                                    << Case::interrupted
                                    << "下載 model.bin.gz 時連線中斷。已下載的部分會保留，可稍後繼續。";
        QTest::newRow("another size")
            << Misbehave([](test::FileServer &server) { server.put("/model.bin.gz", gzipped("small")); })
            << Case::wrongSize << "model.bin 的大小不對（應為 300000，實際為 5）。請重新安裝。";
        QTest::newRow("another hash") << Misbehave([](test::FileServer &server) {
            server.put("/model.bin.gz", gzipped(test::noise(weights.size(), 8)));
        }) << Case::wrongContents << "model.bin 的內容不對（SHA-256 不符）。請重新安裝。";
        QTest::newRow("damaged") << Misbehave(
            [](test::FileServer &server) { server.put("/model.bin.gz", gzipped(weights).chopped(8)); })
                                 << Case::damagedArchive << "無法解開 model.bin.gz：";
    }
    void whatDoesNotWorkIsSaid()
    {
        QFETCH(std::function<void(test::FileServer &)>, misbehave);
        QFETCH(ModelError::Case, error);
        QFETCH(QString, text);
        misbehave(*m_server);
        if (error == ModelError::Case::stalled) {
            const ModelInstallerOptions impatient {std::chrono::milliseconds(300), 3};
            m_installer = std::make_unique<ModelInstaller>(*m_store, m_mainQueue, impatient);
        }
        const ModelError thrown = failure("ja-en");
        QCOMPARE(int(thrown.errorCase()), int(error));
        QVERIFY2(thrown.errorDescription().startsWith(text), qPrintable(thrown.errorDescription()));
        QCOMPARE(state("ja-en"), ModelState::partial);
        QVERIFY(!m_store->installed(entry("ja-en")));
    }

    void aWrongFileIsNotKept()
    {
        m_server->put("/model.bin.gz", gzipped(test::noise(weights.size(), 8)));
        QCOMPARE(failure("ja-en").errorCase(), ModelError::Case::wrongContents);
        m_server->put("/model.bin.gz", gzipped(weights)); // with the same tag
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void aFullDiskIsSaidAndCostsNothing()
    {
        {
            const test::FileSizeLimit limit(100'000);
            const ModelError error = failure("ja-en");
            QCOMPARE(error.errorCase(), ModelError::Case::diskFull);
        }
        QCOMPARE(state("ja-en"), ModelState::partial);
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void whatCannotFitIsNotFetched()
    {
        const ModelError error = failure("vast");
        QCOMPARE(error.errorCase(), ModelError::Case::diskFull);
        QCOMPARE(error.errorDescription(), QStringLiteral("磁碟空間不足，無法寫入 大模型。"));
        QVERIFY(m_server->requests().empty());
    }

    void aFolderThatMustNotBeWrittenIsSaid()
    {
        QVERIFY(test::obeyFilePermissions());
        install("ja-en"); // which makes the folder
        m_store->remove(entry("ja-en"));
        const QFile::Permissions whole = QFile(m_store->folder()).permissions();
        QVERIFY(QFile::setPermissions(m_store->folder(), QFile::ReadOwner | QFile::ExeOwner));
        const auto error = test::thrownBy<FileError>([this] { install("ja-en"); });
        QVERIFY(QFile::setPermissions(m_store->folder(), whole));
        QVERIFY(error);
        QVERIFY2(
            error->errorDescription().startsWith(m_store->folder()), qPrintable(error->errorDescription()));
        QVERIFY2(
            error->errorDescription().endsWith("Permission denied"), qPrintable(error->errorDescription()));
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void aCancelledInstallationCanGoOn()
    {
        m_server->muteAfter = 100'000;
        std::stop_source stop;
        const auto onProgress = [&stop](const ModelProgress &progress) {
            if (progress.done >= 100'000) {
                stop.request_stop();
            }
        };
        const auto error = test::thrownBy<ModelError>([&] {
            test::waitFor(m_installer->install("ja-en", LicenceConsent::none, onProgress, stop.get_token()));
        });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::cancelled);
        QCOMPARE(state("ja-en"), ModelState::partial);
        m_server->muteAfter.reset();
        install("ja-en");
        QVERIFY(m_server->requestsFor("/model.bin.gz").last().hasHeader("Range"));
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void itEndsAtOnceIfItWasCancelledBefore()
    {
        std::stop_source stop;
        stop.request_stop();
        const auto error = test::thrownBy<ModelError>([&] {
            test::waitFor(m_installer->install("ja-en", LicenceConsent::none, {}, stop.get_token()));
        });
        QVERIFY(error);
        QVERIFY(m_server->requests().isEmpty());
    }

    void twoAtOnceDoNoHarm()
    {
        const auto lock
            = FileLock::tryTake((QDir().mkpath(m_store->folder()), m_store->lockPath(entry("ja-en"))));
        QVERIFY(lock);
        QCOMPARE(failure("ja-en").errorCase(), ModelError::Case::busy);
        QVERIFY(m_server->requests().isEmpty());
    }

    void aDamagedModelIsReplaced()
    {
        install("ja-en");
        QFile file(m_store->modelFolder(entry("ja-en")) + "/model.bin");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QCOMPARE(state("ja-en"), ModelState::damaged);
        install("ja-en");
        QCOMPARE(contents("ja-en", "model.bin"), weights);
    }

    void aFolderServesAsWell_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<bool>("isPacked");
        QTest::newRow("as published") << "model.bin.gz" << true;
        QTest::newRow("unpacked") << "model.bin" << false;
    }
    void aFolderServesAsWell()
    {
        QFETCH(QString, model);
        QFETCH(bool, isPacked);
        QVERIFY(QDir(m_scratch->path()).mkpath("下載 é"));
        write("下載 é/" + model, isPacked ? gzipped(weights) : weights);
        write("下載 é/vocab.spm", words);
        test::waitFor(m_installer->installFrom(m_scratch->filePath("下載 é"), "ja-en", LicenceConsent::none));
        QCOMPARE(contents("ja-en", "model.bin"), weights);
        QCOMPARE(contents("ja-en", "vocab.spm"), words);
        QVERIFY(m_server->requests().isEmpty());
        QVERIFY(QFile::exists(m_scratch->filePath("下載 é/" + model)));
        m_store->verify(entry("ja-en"));
    }

    void anArchiveOrItsFilesServeAsWell()
    {
        write("any name", archive());
        test::waitFor(
            m_installer->installFrom(m_scratch->filePath("any name"), "speech", LicenceConsent::accepted));
        QCOMPARE(contents("speech", "model.onnx"), weights);

        QVERIFY(QDir(m_scratch->path()).mkpath("s"));
        write("s/model.onnx", weights);
        write("s/tokens.txt", tokens);
        write("s/LICENSE", "terms in another place");
        test::waitFor(m_installer->installFrom(m_scratch->filePath("s"), "speech", LicenceConsent::accepted));
        QCOMPARE(contents("speech", "LICENSE"), QByteArray("terms in another place"));
        m_store->verify(entry("speech"));

        write("s/model.onnx", "newer");
        const auto error = test::thrownBy<ModelError>([this] {
            test::waitFor(
                m_installer->installFrom(m_scratch->filePath("s"), "speech", LicenceConsent::accepted));
        });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::wrongSize);
        QCOMPARE(contents("speech", "model.onnx"), weights);
    }

    void aFolderThatLacksAFileIsRefused()
    {
        write("model.bin", weights);
        const auto error = test::thrownBy<ModelError>([&] {
            test::waitFor(m_installer->installFrom(m_scratch->path(), "ja-en", LicenceConsent::none));
        });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::fileMissing);
        QVERIFY(error->errorDescription().contains("vocab.spm"));
        QCOMPARE(state("ja-en"), ModelState::missing);
    }

    void aWrongFolderLeavesTheInstalledModelAlone()
    {
        install("ja-en");
        write("model.bin", "other");
        write("vocab.spm", words);
        const auto error = test::thrownBy<ModelError>([&] {
            test::waitFor(m_installer->installFrom(m_scratch->path(), "ja-en", LicenceConsent::none));
        });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::wrongSize);
        QCOMPARE(contents("ja-en", "model.bin"), weights);
        QCOMPARE(state("ja-en"), ModelState::installed);
    }

private:
    const ModelEntry &entry(const QString &id) const { return m_store->catalogue().entry(id); }
    ModelState state(const QString &id) const { return m_store->state(entry(id)); }
    QByteArray contents(const QString &id, const QString &name) const
    {
        QFile file(m_store->modelFolder(entry(id)) + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_scratch->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void install(const QString &id, LicenceConsent consent = LicenceConsent::none)
    {
        test::waitFor(m_installer->install(
            id, consent, [this](const ModelProgress &progress) { m_progress.append(progress); }));
    }
    ModelError failure(const QString &id, LicenceConsent consent = LicenceConsent::none)
    {
        const auto error = test::thrownBy<ModelError>([&] { install(id, consent); });
        return error.value_or(ModelError(ModelError::Case::unknownModel, "it did not fail"));
    }

    /// Leaves an installation that was begun.
    void interrupt()
    {
        m_server->cuts = 1000; // the network library asks again by itself where a connection ends early
        m_server->cutAfter = 50'000;
        QCOMPARE(failure("ja-en").errorCase(), ModelError::Case::interrupted);
        m_server->cuts = 0;
    }

    // However busy the machine is, only what is meant to stall does.
    const ModelInstallerOptions m_options {std::chrono::minutes(1), 3};
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<test::FileServer> m_server;
    std::unique_ptr<ModelStore> m_store;
    std::unique_ptr<ModelInstaller> m_installer;
    QList<ModelProgress> m_progress;
};

LUMAPHONE_TEST(ModelInstallerTest)

} // namespace modelinstallertest

#include "ModelInstallerTest.moc"
