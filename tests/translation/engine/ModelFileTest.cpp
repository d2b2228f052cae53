#include "translation/engine/ModelFile.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/ModelGenerator.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cstring>

namespace modelfiletest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

std::span<const std::byte> bytesOf(const std::string &text)
{
    return std::as_bytes(std::span(text.data(), text.size()));
}

const QString name = QStringLiteral("some model.bin");

/// The case of the error that reading ends in.
std::optional<EngineError::Case> faultOf(const std::string &bytes)
{
    try {
        const ModelFile file(bytesOf(bytes), name);
        return std::nullopt;
    } catch (const EngineError &error) {
        if (!error.errorDescription().contains(name) || error.subject().isEmpty())
            qFatal("the error names neither the file nor the reason");
        return error.which();
    }
}

std::string withNumber(std::string bytes, std::size_t position, std::uint64_t number)
{
    std::memcpy(bytes.data() + position, &number, sizeof number);
    return bytes;
}

std::string padded(std::string data)
{
    data.resize((data.size() + 255) / 256 * 256);
    return data;
}

// Header: version and count; then each entry's name length, type, dimensions and data length.
constexpr std::size_t countPosition = 8;
constexpr std::size_t firstEntry = 16;

} // namespace

class ModelFileTest : public QObject
{
    Q_OBJECT

private slots:
    void tensorsAreFoundByName()
    {
        const std::string bytes = writeModelFile(
            {{"a", 0x404, {1, 3}, padded(std::string(12, '\1'))}, {"b", 0x101, {2, 2}, std::string("wxyz")}});
        const ModelFile file(bytesOf(bytes), name);
        QCOMPARE(file.tensorCount(), std::size_t(2));
        QVERIFY(!file.find("c"));
        const Tensor *a = file.find("a");
        QVERIFY(a);
        QCOMPARE(a->type, TensorType::float32);
        QCOMPARE(a->shape, (std::vector<std::int32_t> {1, 3}));
        QCOMPARE(a->elements, std::uint64_t(3));
        const Tensor *b = file.find("b");
        QVERIFY(b);
        QCOMPARE(std::memcmp(b->data.data(), "wxyz", 4), 0);
        const auto offset = reinterpret_cast<const char *>(a->data.data()) - bytes.data();
        QCOMPARE(offset % 256, 0);
    }

    void weightsAreNotCopied()
    {
        const std::string bytes = generateModel({});
        const ModelFile file(bytesOf(bytes), name);
        const auto *data = reinterpret_cast<const char *>(file.find("Wemb")->data.data());
        QVERIFY(data > bytes.data() && data < bytes.data() + bytes.size());
    }

    void everyTruncationIsNoticed()
    {
        const std::string bytes = generateModel({});
        const std::size_t headerEnd = 16000; // every byte of the header, then in steps
        for (std::size_t size = 0; size < bytes.size(); size += size < headerEnd ? 1 : 997) {
            const auto fault = faultOf(bytes.substr(0, size));
            QVERIFY2(fault.has_value(), qPrintable(QString::number(size)));
        }
        QCOMPARE(faultOf(bytes.substr(0, bytes.size() - 1)), EngineError::Case::truncated);
        QCOMPARE(faultOf(bytes), std::nullopt);
    }

    void everyEnlargementIsNoticed()
    {
        const std::string bytes = generateModel({});
        for (const std::size_t more : {1, 3, 256, 100000})
            QCOMPARE(faultOf(bytes + std::string(more, '\0')), EngineError::Case::damaged);
    }

    void anyBitFlippedInTheHeaderDoesNoHarm()
    {
        const std::string bytes = writeModelFile({{"first", 0x4101, {2, 64}, padded(std::string(132, '\2'))},
            {"second", 0x404, {1, 3}, padded(std::string(12, '\1'))}, {"third", 0x101, {4}, "wxyz"}});
        const std::size_t header = bytes.size() - 4 - 512;
        int refused = 0;
        for (std::size_t bit = 0; bit < header * 8; ++bit) {
            std::string flipped = bytes;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
            refused += faultOf(flipped).has_value();
        }
        QVERIFY(refused > 300);
    }

    void hostileHeadersAreRefused_data()
    {
        using enum EngineError::Case;
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("fault");
        const std::string good = writeModelFile({{"tensor", 0x101, {4}, "wxyz"}});
        const auto row = [](const char *title, const std::string &bytes, EngineError::Case fault) {
            QTest::newRow(title) << QByteArray::fromStdString(bytes) << int(fault);
        };
        row("empty", "", truncated);
        row("another format", "PK\3\4" + std::string(60, 'x'), notRecognised);
        row("another version", withNumber(good, 0, 2), notRecognised);
        row("no tensors", withNumber(good, countPosition, 0), damaged);
        row("too many tensors", withNumber(good, countPosition, 1ULL << 60), damaged);
        row("more tensors than there are", withNumber(good, countPosition, 9000), damaged);
        row("name without letters", withNumber(good, firstEntry, 1), damaged);
        row("endless name", withNumber(good, firstEntry, ~0ULL), damaged);
        row("unknown type", withNumber(good, firstEntry + 8, 0x999), damaged);
        row("no dimensions", withNumber(good, firstEntry + 16, 0), damaged);
        row("many dimensions", withNumber(good, firstEntry + 16, 1ULL << 40), damaged);
        row("data beyond the file", withNumber(good, firstEntry + 24, 1ULL << 50), truncated);
        row("data that overflows", withNumber(good, firstEntry + 24, ~0ULL), truncated);
        row("less data than the shape", withNumber(good, firstEntry + 24, 3), damaged);
        row("a size of zero", writeModelFile({{"tensor", 0x101, {4, 0}, "wxyz"}}), damaged);
        row("a negative size", writeModelFile({{"tensor", 0x101, {-4}, "wxyz"}}), damaged);
        row("sizes that overflow",
            writeModelFile({{"tensor", 0x101, {0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF}, "wxyz"}}),
            damaged);
        row("a name twice", writeModelFile({{"tensor", 0x101, {4}, "wxyz"}, {"tensor", 0x101, {4}, "wxyz"}}),
            damaged);
        row("a name with an end inside", writeModelFile({{std::string("ten\0or", 6), 0x101, {4}, "wxyz"}}),
            damaged);
        row("data out of line",
            writeModelFile({{"odd", 0x101, {3}, "xyz"}, {"tensor", 0x404, {1}, std::string(4, '\0')}}),
            damaged);
        row("endless padding", withNumber(good, firstEntry + 32 + 7 + 4, ~0ULL), damaged);
    }

    void hostileHeadersAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, fault);
        QCOMPARE(int(faultOf(bytes.toStdString()).value()), fault);
    }

    void filesThatCannotBeReadAreNamed()
    {
        const GeneratedFolder folder;
        const auto faultOfPath = [](const QString &path) {
            try {
                const ModelFile file(path);
                return std::optional<EngineError::Case>();
            } catch (const EngineError &error) {
                return std::optional(error.which());
            }
        };
        QCOMPARE(faultOfPath(folder.path(QStringLiteral("missing.bin"))), EngineError::Case::unreadable);
        QCOMPARE(faultOfPath(folder.path(QStringLiteral("."))), EngineError::Case::unreadable);
        QCOMPARE(faultOfPath(QStringLiteral("/dev/zero")), EngineError::Case::unreadable);
        QCOMPARE(faultOfPath(folder.write(QStringLiteral("empty.bin"), "")), EngineError::Case::truncated);
        const QString path = folder.write(QStringLiteral("模型 ✓.bin"), generateModel({}));
        QCOMPARE(faultOfPath(path), std::nullopt);
    }
};

LUMAPHONE_TEST(ModelFileTest)

} // namespace modelfiletest

#include "ModelFileTest.moc"
