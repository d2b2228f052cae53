#include "models/ModelUnpacker.h"

#include "models/ModelError.h"
#include "support/Coroutines.h"
#include "support/FileSizeLimit.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace modelunpackertest {

using namespace lumaphone;
using test::gzipped;
using test::sha256Of;
using test::tarBz2;

namespace {

const QByteArray weights = test::noise(700'000, 1);

ModelDownload single(ModelCompression compression, const QString &sha256 = {})
{
    return {QUrl("https://example.org/model.bin"), compression, {}, {},
        {{"model", "model.bin", weights.size(), sha256}}};
}

ModelDownload archive()
{
    return {QUrl("https://example.org/model.tar.bz2"), ModelCompression::tarBz2, {}, {},
        {{"model", "model.onnx", {}, {}}, {"tokens", "tokens.txt", 3, sha256Of("a b")}}};
}

} // namespace

class ModelUnpackerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_scratch->path()).mkpath("模型 é"));
    }

    void filesComeOutAsTheyWentIn_data()
    {
        QTest::addColumn<ModelCompression>("compression");
        QTest::addColumn<QByteArray>("published");
        QTest::newRow("as it is") << ModelCompression::none << weights;
        QTest::newRow("gzip") << ModelCompression::gzip << gzipped(weights);
        QTest::newRow("two gzip members")
            << ModelCompression::gzip << gzipped(weights.first(1000)) + gzipped(weights.sliced(1000));
        QTest::newRow("unpacked on the way") << ModelCompression::gzip << weights;
    }
    void filesComeOutAsTheyWentIn()
    {
        QFETCH(ModelCompression, compression);
        QFETCH(QByteArray, published);
        const QList<RecordedFile> files = unpack(single(compression, sha256Of(weights)), published);
        QCOMPARE(files.size(), 1);
        QCOMPARE(files[0].name, QStringLiteral("model.bin"));
        QCOMPARE(files[0].size, weights.size());
        QCOMPARE(files[0].sha256, sha256Of(weights));
        QCOMPARE(contents("model.bin"), weights);
    }

    void anArchiveGivesTheFilesThatAreWanted()
    {
        const QByteArray packed = tarBz2(
            {{"folder/model.onnx", weights}, {"folder/sample.wav", "RIFF"}, {"folder/tokens.txt", "a b"}});
        const QList<RecordedFile> files = unpack(archive(), packed);
        QCOMPARE(files.size(), 2);
        QCOMPARE(contents("model.onnx"), weights);
        QCOMPARE(contents("tokens.txt"), QByteArray("a b"));
        QCOMPARE(QDir(target()).entryList(QDir::Files).size(), 2);
    }

    void whatIsNotRightIsRefused_data()
    {
        QTest::addColumn<ModelDownload>("download");
        QTest::addColumn<QByteArray>("published");
        QTest::addColumn<ModelError::Case>("error");
        const auto row = [](const char *name, const ModelDownload &download, const QByteArray &published,
                             ModelError::Case error) {
            QTest::newRow(name) << download << published << error;
        };
        using enum ModelError::Case;
        constexpr auto none = ModelCompression::none;
        constexpr auto gzip = ModelCompression::gzip;
        row("another hash", single(none, sha256Of("x")), weights, wrongContents);
        row("the hash's first digits", single(none, sha256Of(weights).first(8)), weights, wrongContents);
        row("the hash of the packed form", single(gzip, sha256Of(gzipped(weights))), gzipped(weights),
            wrongContents);
        row("shorter", single(none), weights.chopped(1), wrongSize);
        row("longer", single(gzip), gzipped(weights + 'x'), wrongSize);
        row("much longer than said", single(gzip), gzipped(QByteArray(50'000'000, 'x')), wrongSize);
        row("cut gzip", single(gzip), gzipped(weights).chopped(9), damagedArchive);
        QByteArray flipped = gzipped(weights);
        flipped[flipped.size() - 6] = char(flipped[flipped.size() - 6] ^ 1); // in the checksum
        row("damaged gzip", single(gzip), flipped, damagedArchive);
        row("nothing", single(none), {}, wrongSize);

        ModelDownload sized = archive();
        sized.size = 5;
        const QByteArray good = tarBz2({{"model.onnx", "m"}, {"tokens.txt", "a b"}});
        row("archive of another size", sized, good, wrongSize);
        ModelDownload hashed = archive();
        hashed.sha256 = sha256Of("x");
        row("archive of another hash", hashed, good, wrongContents);
        row("archive without a file", archive(), tarBz2({{"model.onnx", "m"}}), fileMissing);
        row("file of another hash", archive(), tarBz2({{"model.onnx", "m"}, {"tokens.txt", "a c"}}),
            wrongContents);
        row("no archive", archive(), weights, damagedArchive);
        row("cut archive", archive(),
            tarBz2({{"model.onnx", weights}, {"tokens.txt", "a b"}}).chopped(100'000), damagedArchive);
        row("path upwards", archive(), tarBz2({{"a/../../model.onnx", "m"}, {"tokens.txt", "a b"}}),
            damagedArchive);
        row("path from the root", archive(), tarBz2({{"/tmp/model.onnx", "m"}, {"tokens.txt", "a b"}}),
            damagedArchive);
        row("unwanted path upwards", archive(), tarBz2({{"../x", "m"}, {"model.onnx", "m"}}), damagedArchive);
        row("symbolic link", archive(), tarBz2({{"model.onnx", "->/etc/passwd"}, {"tokens.txt", "a b"}}),
            damagedArchive);
        row("the same file twice", archive(),
            tarBz2({{"model.onnx", "m"}, {"b/model.onnx", "m"}, {"tokens.txt", "a b"}}), damagedArchive);
    }
    void whatIsNotRightIsRefused()
    {
        QFETCH(ModelDownload, download);
        QFETCH(QByteArray, published);
        QFETCH(ModelError::Case, error);
        const auto thrown = test::thrownBy<ModelError>([&] { unpack(download, published); });
        QVERIFY(thrown);
        QCOMPARE(int(thrown->errorCase()), int(error));
        QVERIFY(QDir(m_scratch->path()).entryList(QDir::Files).size() <= 1); // nothing beside the source
    }

    void aFullDiskIsSaid()
    {
        write("source", gzipped(weights));
        const test::FileSizeLimit limit(100'000);
        const auto error = test::thrownBy<ModelError>(
            [&] { unpackModel(single(ModelCompression::gzip), path("source"), target()); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::diskFull);
        QCOMPARE(error->errorDescription(), QStringLiteral("磁碟空間不足，無法寫入 model.bin。"));
    }

    void progressRunsToTheEnd()
    {
        write("source", weights);
        QList<qint64> steps;
        unpackModel(single(ModelCompression::none), path("source"), target(), [&](qint64 done, qint64 total) {
            QCOMPARE(total, weights.size());
            QVERIFY(steps.isEmpty() || done >= steps.last());
            steps.append(done);
        });
        QVERIFY(steps.size() > 2);
        QCOMPARE(steps.last(), weights.size());
    }

    void itEndsWhenItIsStopped()
    {
        write("source", weights);
        std::stop_source stop;
        const auto error = test::thrownBy<ModelError>([&] {
            unpackModel(
                single(ModelCompression::none), path("source"), target(),
                [&stop](qint64, qint64) { stop.request_stop(); }, stop.get_token());
        });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::cancelled);
    }

private:
    QString path(const QString &name) const { return m_scratch->filePath(name); }
    QString target() const { return path("模型 é"); }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    QByteArray contents(const QString &name) const
    {
        QFile file(target() + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QList<RecordedFile> unpack(const ModelDownload &download, const QByteArray &published) const
    {
        write("source", published);
        return unpackModel(download, path("source"), target());
    }

    std::unique_ptr<QTemporaryDir> m_scratch;
};

LUMAPHONE_TEST(ModelUnpackerTest)

} // namespace modelunpackertest

#include "ModelUnpackerTest.moc"
