#include "translation/engine/Kernels.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

namespace kernelstest {

using namespace lumaphone::engine;

namespace {

std::vector<std::int8_t> randomBytes(std::size_t count, int least, int most, std::mt19937 &random)
{
    std::uniform_int_distribution<int> byte(least, most);
    std::vector<std::int8_t> bytes(count);
    for (std::int8_t &value : bytes)
        value = std::int8_t(byte(random));
    return bytes;
}

std::vector<std::int32_t> plainProducts(const std::vector<std::int8_t> &codes, int rows, int depth,
    const std::vector<std::int8_t> &weights, const std::vector<std::uint32_t> &selected)
{
    std::vector<std::int32_t> products;
    for (int row = 0; row < rows; ++row) {
        for (const std::uint32_t output : selected) {
            std::int32_t sum = 0;
            for (int k = 0; k < depth; ++k)
                sum += codes[std::size_t(row * depth + k)]
                    * weights[output * std::size_t(depth) + std::size_t(k)];
            products.push_back(sum);
        }
    }
    return products;
}

struct Extremes
{
    const char *name;
    int leastCode;
    int mostCode;
    int leastWeight;
    int mostWeight;
};

std::vector<std::uint32_t> rowsInOrder(int count)
{
    std::vector<std::uint32_t> rows(static_cast<std::size_t>(count));
    std::iota(rows.begin(), rows.end(), 0U);
    return rows;
}

/// Among twice as many.
std::vector<std::uint32_t> scatteredRows(int count)
{
    std::vector<std::uint32_t> rows = rowsInOrder(count);
    for (std::uint32_t &row : rows)
        row = row * 2 + 1 - row % 2;
    return rows;
}

} // namespace

class KernelsTest : public QObject
{
    Q_OBJECT

private slots:
    void allKernelsGiveThePlainSums_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("outputs");
        QTest::newRow("one row, one block") << 1 << 64 << 8;
        QTest::newRow("one row, deep") << 1 << 2048 << 16;
        QTest::newRow("a row pair") << 2 << 384 << 12;
        QTest::newRow("three rows, outputs that are no group") << 3 << 128 << 7;
        QTest::newRow("five rows, one output") << 5 << 192 << 1;
        QTest::newRow("a caption's rows") << 17 << 512 << 24;
        QTest::newRow("one row, many outputs") << 1 << 192 << 91;
        QTest::newRow("six rows, many outputs") << 6 << 64 << 90;
    }

    void allKernelsGiveThePlainSums()
    {
        QFETCH(int, rows);
        QFETCH(int, depth);
        QFETCH(int, outputs);
        std::mt19937 random(7);
        const Extremes extremes[] = {{"all values", -127, 127, -128, 127}, {"greatest", 127, 127, 127, 127},
            {"opposed", -127, -127, 127, 127}, {"least weight", 127, 127, -128, -128},
            {"least of both", -127, -127, -128, -128}};
        for (const Extremes &extreme : extremes) {
            const auto codes
                = randomBytes(std::size_t(rows * depth), extreme.leastCode, extreme.mostCode, random);
            const auto weights = randomBytes(
                std::size_t(outputs * depth) * 2, extreme.leastWeight, extreme.mostWeight, random);
            const std::vector<std::uint32_t> inOrder = rowsInOrder(outputs);
            const std::vector<std::uint32_t> scattered = scatteredRows(outputs);
            for (const Kernels *kernels : availableKernels()) {
                std::vector<std::int32_t> products(std::size_t(rows * outputs), -1);
                kernels->multiply(
                    codes.data(), rows, depth, weights.data(), nullptr, outputs, products.data());
                QVERIFY2(products == plainProducts(codes, rows, depth, weights, inOrder), kernels->name);
                kernels->multiply(
                    codes.data(), rows, depth, weights.data(), scattered.data(), outputs, products.data());
                QVERIFY2(products == plainProducts(codes, rows, depth, weights, scattered), kernels->name);
            }
        }
    }

    void allKernelsGiveThePlainSumsOfDigits_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("outputs");
        QTest::newRow("one block") << 128 << 8;
        QTest::newRow("outputs that are no group") << 384 << 7;
        QTest::newRow("deep") << 2048 << 1;
        QTest::newRow("many outputs") << 512 << 91;
    }

    void allKernelsGiveThePlainSumsOfDigits()
    {
        QFETCH(int, depth);
        QFETCH(int, outputs);
        std::mt19937 random(8);
        const Extremes extremes[] = {{"all values", -127, 127, 0, 15}, {"greatest", 127, 127, 15, 15},
            {"least", -127, -127, 15, 15}, {"zeros", -127, 127, 0, 0}};
        for (const Extremes &extreme : extremes) {
            const auto codes = randomBytes(std::size_t(depth), extreme.leastCode, extreme.mostCode, random);
            const auto digits = randomBytes(
                std::size_t(outputs * depth) * 2, extreme.leastWeight, extreme.mostWeight, random);
            std::vector<std::uint8_t> pairs(digits.size() / 2);
            for (std::size_t index = 0; index < digits.size(); ++index)
                pairs[index / 128 * 64 + index % 64] |= std::uint8_t(digits[index] << index / 64 % 2 * 4);
            const std::vector<std::uint32_t> inOrder = rowsInOrder(outputs);
            const std::vector<std::uint32_t> scattered = scatteredRows(outputs);
            for (const Kernels *kernels : availableKernels()) {
                std::vector<std::int32_t> products(std::size_t(outputs), -1);
                kernels->multiplyDigits(codes.data(), depth, pairs.data(), nullptr, outputs, products.data());
                QVERIFY2(products == plainProducts(codes, 1, depth, digits, inOrder), kernels->name);
                kernels->multiplyDigits(
                    codes.data(), depth, pairs.data(), scattered.data(), outputs, products.data());
                QVERIFY2(products == plainProducts(codes, 1, depth, digits, scattered), kernels->name);
            }
        }
    }

    void saturatingKernelsAgreeAndDifferFromExactOnes()
    {
        std::mt19937 random(11);
        const int depth = 256;
        const int outputs = 40;
        const auto codes = randomBytes(depth * 3, -127, 127, random);
        const auto weights = randomBytes(depth * outputs, -128, 127, random);
        std::vector<std::int32_t> plain(3 * outputs);
        std::vector<std::int32_t> fast(3 * outputs);
        std::vector<std::int32_t> exact(3 * outputs);
        portableSaturatingKernels().multiply(
            codes.data(), 3, depth, weights.data(), nullptr, outputs, plain.data());
        fastestSaturatingKernels().multiply(
            codes.data(), 3, depth, weights.data(), nullptr, outputs, fast.data());
        portableKernels().multiply(codes.data(), 3, depth, weights.data(), nullptr, outputs, exact.data());
        QVERIFY(plain == fast);
        int bounded = 0;
        for (int index = 0; index < 3 * outputs; ++index) {
            std::int32_t shift = 0;
            for (int k = 0; k < depth; ++k)
                shift
                    += portableSaturatingKernels().shift * weights[std::size_t(index % outputs * depth + k)];
            bounded += plain[std::size_t(index)] - shift != exact[std::size_t(index)];
        }
        QVERIFY(bounded > 0);
    }

    void aPairBeyondSixteenBitsIsHeldThere()
    {
        std::vector<std::int8_t> codes(64, -127);
        std::vector<std::int8_t> weights(64, 0);
        codes[0] = codes[1] = 127;
        weights[0] = weights[1] = 127;
        for (const Kernels *kernels : {&portableSaturatingKernels(), &fastestSaturatingKernels()}) {
            std::int32_t product = 0;
            kernels->multiply(codes.data(), 1, 64, weights.data(), nullptr, 1, &product);
            QCOMPARE(product, 32767);
            weights[0] = weights[1] = -127;
            kernels->multiply(codes.data(), 1, 64, weights.data(), nullptr, 1, &product);
            QCOMPARE(product, -32768);
            weights[0] = weights[1] = 127;
        }
    }

    void roundingIsHalfToEvenAndBounded()
    {
        std::vector<float> inputs(64, 0.0F);
        const float special[] = {0.5F, 1.5F, 2.5F, -0.5F, -1.5F, 126.5F, 127.4F, 500.0F, -500.0F, 0.49999997F,
            std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
            std::numeric_limits<float>::quiet_NaN(), 1e-40F, -3.2F};
        const std::int8_t expected[] = {0, 2, 2, 0, -2, 126, 127, 127, -127, 0, 127, -127, -127, 0, -3};
        std::copy(std::begin(special), std::end(special), inputs.begin());
        for (const Kernels *kernels : availableKernels()) {
            std::vector<std::int8_t> codes(64, 99);
            kernels->quantize(inputs.data(), 64, 1.0F, codes.data());
            for (std::size_t index = 0; index < std::size(expected); ++index)
                QVERIFY2(codes[index] == expected[index], kernels->name);
            QCOMPARE(codes[63], std::int8_t(0));
        }
    }

    void allKernelsRoundAlike()
    {
        std::mt19937 random(3);
        std::normal_distribution<float> normal(0, 2);
        std::vector<float> inputs(4096);
        for (float &input : inputs)
            input = normal(random);
        std::vector<std::int8_t> plain(inputs.size());
        portableKernels().quantize(inputs.data(), int(inputs.size()), 31.7F, plain.data());
        for (const Kernels *kernels : availableKernels()) {
            std::vector<std::int8_t> codes(inputs.size());
            kernels->quantize(inputs.data(), int(inputs.size()), 31.7F, codes.data());
            QVERIFY2(codes == plain, kernels->name);
        }
    }
};

LUMAPHONE_TEST(KernelsTest)

} // namespace kernelstest

#include "KernelsTest.moc"
