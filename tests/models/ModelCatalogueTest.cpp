#include "models/ModelCatalogue.h"

#include "base/AtomicFile.h"
#include "models/ModelError.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace modelcataloguetest {

using namespace lumaphone;

namespace {

// The meta-object compiler takes two slashes in a raw text for a comment.
const QByteArray sound
    = R"({"models": [{"id": "xx-yy", "kind": "translation", "title": "X", "languages": ["xx", "yy"],
    "licence": {"text": "free", "mustBeAccepted": false},
    "downloads": [{"url": "https:\/\/example.org/a/model.bin.gz", "compression": "gzip",
        "files": [{"role": "model", "name": "model.bin", "size": 5,
            "sha256": "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"}]}]}]})";

const QString hash = test::sha256Of("known");

/// A speech model that is fetched in one piece.
QByteArray listingWith(const ModelDownload &download)
{
    ModelEntry entry;
    entry.id = "speech";
    entry.kind = ModelKind::speech;
    entry.title = "S";
    entry.languages = QStringList {"ja"};
    entry.licence = {"ask first", true};
    entry.downloads = {download};
    return test::listingOf({entry});
}

ModelDownload archive(const QString &sha256, const QList<ModelFile> &files)
{
    return {QUrl("https://example.org/speech.tar.bz2"), ModelCompression::tarBz2, {}, sha256, files};
}

} // namespace

class ModelCatalogueTest : public QObject
{
    Q_OBJECT

private slots:
    void theProgramKnowsItsModels()
    {
        const ModelCatalogue catalogue = ModelCatalogue::builtIn();
        QStringList ids;
        for (const ModelEntry &entry : catalogue.entries()) {
            ids.append(entry.id);
            QVERIFY(!entry.title.isEmpty());
            QVERIFY(!entry.licence.text.isEmpty());
        }
        QCOMPARE(ids,
            (QStringList {"en-zh-Hant", "ja-en", "ko-en", "silero-vad", "english-speech", "sense-voice"}));
    }

    void filesCarryWhatIsKnownOfThem()
    {
        const ModelCatalogue catalogue = ModelCatalogue::builtIn();
        const ModelEntry &english = catalogue.entry("en-zh-Hant");
        QCOMPARE(english.kind, ModelKind::translation);
        QCOMPARE(english.files().size(), 4);
        const ModelFile model = english.files().constFirst();
        QCOMPARE(model.role, QStringLiteral("model"));
        QCOMPARE(model.size, std::optional<qint64>(43849787));
        QCOMPARE(
            model.sha256, QStringLiteral("559ab90d723a58c1f1e2ab7cc12137bc667af5ba3e325e3eb30b5cdc930db520"));
        QVERIFY(!english.knownDownloadSize());
        QVERIFY(!english.licence.mustBeAccepted);

        const ModelEntry &speech = catalogue.entry("sense-voice");
        QCOMPARE(speech.kind, ModelKind::speech);
        QVERIFY(speech.licence.mustBeAccepted);
        QCOMPARE(speech.knownDownloadSize(), std::optional<qint64>(163002883));
        for (const ModelDownload &download : speech.downloads) {
            QCOMPARE(download.sha256.size(), 64);
        }
    }

    void aPairLeadsDirectlyOrThroughEnglish_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QStringList>("legs");
        QTest::newRow("direct") << "en"
                                << "zh-Hant" << QStringList {"en-zh-Hant"};
        QTest::newRow("Japanese") << "ja"
                                  << "zh-Hant" << QStringList {"ja-en", "en-zh-Hant"};
        QTest::newRow("Korean") << "ko"
                                << "zh-Hant" << QStringList {"ko-en", "en-zh-Hant"};
        QTest::newRow("to English") << "ja"
                                    << "en" << QStringList {"ja-en"};
        QTest::newRow("other way round") << "zh-Hant"
                                         << "ja" << QStringList {};
        QTest::newRow("unknown target") << "ja"
                                        << "fr" << QStringList {};
        QTest::newRow("empty") << ""
                               << "" << QStringList {};
    }
    void aPairLeadsDirectlyOrThroughEnglish()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QStringList, legs);
        const ModelCatalogue catalogue = ModelCatalogue::builtIn();
        QStringList found;
        for (const ModelEntry *leg : catalogue.translationLegs(source, target)) {
            found.append(leg->id);
        }
        QCOMPARE(found, legs);
    }

    void everyFileThatAnEngineReadsIsKnown()
    {
        const ModelCatalogue catalogue = ModelCatalogue::builtIn();
        for (const ModelEntry &entry : catalogue.entries()) {
            const QList<ModelFile> files = entry.files();
            for (const ModelFile &file : files) {
                QVERIFY2(file.isLicence() || (file.size && file.sha256.size() == 64), qPrintable(file.name));
            }
        }
    }

    void englishSpeechIsPartOfTheProgram()
    {
        const ModelCatalogue catalogue = ModelCatalogue::builtIn();
        const ModelEntry &entry = catalogue.entry("english-speech");
        QVERIFY(entry.isBundled);
        QVERIFY(entry.downloads.isEmpty());
        QCOMPARE(entry.languages, QStringList {"en"});
        for (const char *role : {"encoder", "decoder", "tokens", "vad", "licence"}) {
            QVERIFY2(entry.hasRole(role), role);
        }
        QVERIFY(!entry.hasRole("model"));
        QCOMPARE(entry.knownSize(), qint64(7937661 + 20243286 + 549354 + 1807522 + 1791));
        for (const ModelEntry &other : catalogue.entries()) {
            QCOMPARE(other.isBundled, &other == &entry);
        }
    }

    void aBundledModelIsListedWithItsFiles()
    {
        ModelEntry bundled;
        bundled.id = "own-speech";
        bundled.kind = ModelKind::speech;
        bundled.languages = QStringList {"en"};
        bundled.isBundled = true;
        bundled.bundledFiles = {{"encoder", "encoder.onnx", 5, hash}};
        const ModelCatalogue catalogue = ModelCatalogue::fromJson(test::listingOf({bundled}), "own");
        QCOMPARE(catalogue.entry("own-speech").files().constFirst().name, QStringLiteral("encoder.onnx"));

        bundled.bundledFiles[0].sha256.clear();
        QVERIFY(
            test::thrownBy<ModelError>([&] { ModelCatalogue::fromJson(test::listingOf({bundled}), "own"); }));
        bundled.bundledFiles[0] = {"encoder", "encoder.onnx", {}, hash};
        QVERIFY(
            test::thrownBy<ModelError>([&] { ModelCatalogue::fromJson(test::listingOf({bundled}), "own"); }));
        bundled.bundledFiles.clear();
        QVERIFY(
            test::thrownBy<ModelError>([&] { ModelCatalogue::fromJson(test::listingOf({bundled}), "own"); }));
    }

    void whatTheProgramBringsIsThereWithAnyCatalogue()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("catalogue.json");
        replaceFile(path, sound, Durability::renamed);
        qputenv("LUMAPHONE_MODEL_CATALOGUE", path.toUtf8());
        const ModelCatalogue catalogue = ModelCatalogue::configured();
        qunsetenv("LUMAPHONE_MODEL_CATALOGUE");
        QCOMPARE(catalogue.entries().size(), 2);
        QCOMPARE(catalogue.entries()[0].id, QStringLiteral("xx-yy"));
        QVERIFY(catalogue.entry("english-speech").isBundled);
        QCOMPARE(ModelCatalogue::configured().entries().size(), ModelCatalogue::builtIn().entries().size());
    }

    void whatTheProgramBringsCannotBeListedAnew()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("catalogue.json");
        replaceFile(path, QByteArray(sound).replace("xx-yy", "english-speech"), Durability::renamed);
        qputenv("LUMAPHONE_MODEL_CATALOGUE", path.toUtf8());
        const auto error = test::thrownBy<ModelError>(&ModelCatalogue::configured);
        qunsetenv("LUMAPHONE_MODEL_CATALOGUE");
        QVERIFY(error);
        QCOMPARE(error->errorDescription(),
            QStringLiteral("無法讀取模型目錄 %1：有兩個 english-speech").arg(path));
    }

    void aLicenceIsKnownByItsArchive()
    {
        const ModelCatalogue catalogue = ModelCatalogue::fromJson(
            listingWith(archive(hash, {{"model", "model.onnx", 5, hash}, {"licence", "LICENSE", {}, {}}})),
            "own");
        const QList<ModelFile> files = catalogue.entry("speech").files();
        QCOMPARE(files[0].sha256, hash);
        QVERIFY(!files[0].isLicence());
        QVERIFY(files[1].isLicence());
        QCOMPARE(files[1].sha256, QString());
    }

    void whatNobodyVouchesForIsRefused_data()
    {
        QTest::addColumn<ModelDownload>("download");
        QTest::addColumn<QString>("reason");
        const ModelFile model {"model", "model.onnx", 5, hash};
        const ModelFile licence {"licence", "LICENSE", {}, {}};
        const auto single = [](ModelCompression compression, const ModelFile &file) {
            return ModelDownload {QUrl("https://example.org/file"), compression, {}, hash, {file}};
        };
        QTest::newRow("a file without a hash") << single(ModelCompression::gzip,
            {"model", "model.onnx", 5, {}}) << "model.onnx 缺少完整的 SHA-256";
        QTest::newRow("the hash's first digits")
            << single(ModelCompression::gzip, {"model", "model.onnx", 5, "559ab90d"})
            << "「559ab90d」不是完整的 SHA-256（64 個十六進位數字）";
        QTest::newRow("a file in an archive that is known")
            << archive(hash, {model, {"tokens", "tokens.txt", {}, {}}}) << "tokens.txt 缺少完整的 SHA-256";
        QTest::newRow("a licence in an archive that is not known")
            << archive({}, {model, licence}) << "LICENSE 缺少完整的 SHA-256";
        QTest::newRow("a licence of its own")
            << single(ModelCompression::none, licence) << "LICENSE 缺少完整的 SHA-256";
    }
    void whatNobodyVouchesForIsRefused()
    {
        QFETCH(ModelDownload, download);
        QFETCH(QString, reason);
        const auto error
            = test::thrownBy<ModelError>([&] { ModelCatalogue::fromJson(listingWith(download), "own"); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("無法讀取模型目錄 own：") + reason);
    }

    void anUnknownModelIsNamed()
    {
        const auto error = test::thrownBy<ModelError>([] { ModelCatalogue::builtIn().entry("nobody"); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::unknownModel);
        QCOMPARE(error->errorDescription(), QStringLiteral("沒有名為「nobody」的模型。"));
    }

    void aFileOfOnesOwnIsRead()
    {
        const ModelCatalogue catalogue = ModelCatalogue::fromJson(sound, "own");
        QCOMPARE(catalogue.entries().size(), 1);
        QCOMPARE(catalogue.entry("xx-yy").downloads.constFirst().name(), QStringLiteral("model.bin.gz"));
    }

    void whatCannotBeIsRefused_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("no list") << QByteArray("\"models\"") << QByteArray("\"model\"");
        QTest::newRow("name that leaves its folder")
            << QByteArray("\"name\": \"model.bin\"") << QByteArray("\"name\": \"../model.bin\"");
        QTest::newRow("hidden name") << QByteArray("\"xx-yy\"") << QByteArray("\".xx\"");
        QTest::newRow("address of a file")
            << QByteArray("https:\\/\\/example.org") << QByteArray("file:///etc");
        QTest::newRow("address without a name") << QByteArray("model.bin.gz") << QByteArray();
        QTest::newRow("hash of other digits") << QByteArray("\"01234567") << QByteArray("\"0123wxyz");
        QTest::newRow("hash of too many digits") << QByteArray("\"01234567") << QByteArray("\"012345678");
        QTest::newRow("hash with a line break") << QByteArray("abcdef\"}") << QByteArray("abcdef\\n\"}");
        QTest::newRow("negative size") << QByteArray("\"size\": 5") << QByteArray("\"size\": -5");
        QTest::newRow("size that no disk has")
            << QByteArray("\"size\": 5") << QByteArray("\"size\": 9000000000000000000");
        QTest::newRow("unknown kind") << QByteArray("\"translation\"") << QByteArray("\"picture\"");
        QTest::newRow("unknown compression") << QByteArray("\"gzip\"") << QByteArray("\"rar\"");
        QTest::newRow("one language") << QByteArray("[\"xx\", \"yy\"]") << QByteArray("[\"xx\"]");
        QTest::newRow("no text as language") << QByteArray("[\"xx\", \"yy\"]") << QByteArray("[\"xx\", 1]");
        QTest::newRow("no licence") << QByteArray("\"licence\"") << QByteArray("\"license\"");
        QTest::newRow("no JSON") << QByteArray("]}]}") << QByteArray();
        QTest::newRow("the same file twice") << QByteArray("\"size\": 5") << QByteArray(R"("sha256":
                "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"}]},
                {"url": "https:\/\/example.org/b", "compression": "none",
                "files": [{"role": "other", "name": "model.bin", "size": 5)");
    }
    void whatCannotBeIsRefused()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QVERIFY(sound.contains(before));
        const QByteArray changed = QByteArray(sound).replace(before, after);
        const auto error = test::thrownBy<ModelError>([&] { ModelCatalogue::fromJson(changed, "own"); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::catalogueUnreadable);
        QVERIFY(error->errorDescription().startsWith("無法讀取模型目錄 own："));
    }
};

LUMAPHONE_TEST(ModelCatalogueTest)

} // namespace modelcataloguetest

#include "ModelCatalogueTest.moc"
