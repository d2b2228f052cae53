#include "translation/engine/OutputSearch.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace outputsearchtest {

using namespace lumaphone::engine;

namespace {

constexpr int none = -1;

/// An output layer that keeps its own weights.
struct OwnLayer
{
    std::vector<std::int8_t> weights;
    std::vector<float> bias;
    AffineLayer layer;

    OwnLayer(int words, int depth)
        : weights(std::size_t(words) * std::size_t(depth))
        , bias(std::size_t(words))
        , layer {{weights.data(), depth, words, 40.0F, 30.0F}, bias}
    {
    }
    OwnLayer(const OwnLayer &) = delete;
    OwnLayer &operator=(const OwnLayer &) = delete;

    int depth() const { return layer.matrix.depth; }
    int words() const { return layer.matrix.outputs; }
    std::span<std::int8_t> row(int word)
    {
        return std::span(weights).subspan(std::size_t(word) * std::size_t(depth()), std::size_t(depth()));
    }
};

using Fill = void (*)(OwnLayer &, std::mt19937 &);

void fillNormal(std::span<std::int8_t> weights, double spread, std::mt19937 &random)
{
    std::normal_distribution<double> normal(0, spread);
    for (std::int8_t &weight : weights)
        weight = std::int8_t(std::lround(std::clamp(normal(random), -127.0, 127.0)));
}

void fillUniform(std::span<std::int8_t> weights, int least, int most, std::mt19937 &random)
{
    std::uniform_int_distribution<int> byte(least, most);
    for (std::int8_t &weight : weights)
        weight = std::int8_t(byte(random));
}

void ordinary(OwnLayer &layer, std::mt19937 &random)
{
    fillNormal(layer.weights, 40, random);
    std::normal_distribution<float> normal(0, 0.3F);
    for (float &bias : layer.bias)
        bias = normal(random);
}

void rowsOfDifferentLength(OwnLayer &layer, std::mt19937 &random)
{
    for (int word = 0; word < layer.words(); ++word)
        fillNormal(layer.row(word), 1 + word % 60, random);
}

void everyByte(OwnLayer &layer, std::mt19937 &random)
{
    fillUniform(layer.weights, -128, 127, random);
}

void lopsided(OwnLayer &layer, std::mt19937 &random)
{
    for (int word = 0; word < layer.words(); ++word)
        fillUniform(layer.row(word), word % 2 == 0 ? -128 : 90, word % 2 == 0 ? -100 : 127, random);
}

void extremes(OwnLayer &layer, std::mt19937 &random)
{
    fillUniform(layer.weights, 0, 1, random);
    for (std::int8_t &weight : layer.weights)
        weight = weight == 0 ? std::int8_t(-128) : std::int8_t(127);
}

void tiny(OwnLayer &layer, std::mt19937 &random)
{
    fillUniform(layer.weights, -1, 1, random);
}

void zeros(OwnLayer &, std::mt19937 &)
{
}

void zerosAndBias(OwnLayer &layer, std::mt19937 &random)
{
    std::normal_distribution<float> normal(-5, 1);
    for (float &bias : layer.bias)
        bias = normal(random);
}

void equalRows(OwnLayer &layer, std::mt19937 &random)
{
    fillNormal(layer.row(0), 40, random);
    for (int word = 1; word < layer.words(); ++word)
        std::copy(layer.row(0).begin(), layer.row(0).end(), layer.row(word).begin());
}

void rowsThreeTimes(OwnLayer &layer, std::mt19937 &random)
{
    ordinary(layer, random);
    const int third = layer.words() / 3;
    for (int word = third; word < 3 * third; ++word) {
        std::copy(layer.row(word % third).begin(), layer.row(word % third).end(), layer.row(word).begin());
        layer.bias[std::size_t(word)] = layer.bias[std::size_t(word % third)];
    }
}

void nearlyEqualRows(OwnLayer &layer, std::mt19937 &random)
{
    equalRows(layer, random);
    for (int word = 0; word < layer.words(); ++word)
        layer.row(word)[random() % std::size_t(layer.depth())] += random() % 2 == 0 ? 1 : -1;
}

void negativeScores(OwnLayer &layer, std::mt19937 &random)
{
    ordinary(layer, random);
    for (float &bias : layer.bias)
        bias -= 1e5F;
}

void biasBeyondProducts(OwnLayer &layer, std::mt19937 &random)
{
    ordinary(layer, random);
    std::uniform_real_distribution<float> uniform(-1e9F, 1e9F);
    for (float &bias : layer.bias)
        bias = uniform(random);
}

std::vector<float> inputs(int kind, const OwnLayer &layer, std::mt19937 &random)
{
    std::vector<float> values(std::size_t(layer.depth()), 0.0F);
    std::normal_distribution<float> normal(0, 1);
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (kind == 0)
            values[k] = 0;
        else if (kind == 1)
            values[k] = random() % 2 == 0 ? 1e9F : -1e9F;
        else if (kind == 2)
            values[k] = std::numeric_limits<float>::quiet_NaN();
        else if (kind == 3) // in the direction of a row
            values[k] = static_cast<float>(layer.weights[7 * values.size() + k]) / 32;
        else
            values[k] = normal(random);
    }
    return values;
}

bool isSame(const BestWord &a, const BestWord &b)
{
    return a.word == b.word && (a.word == none || a.score == b.score);
}

/// A search by weights and one by digits.
struct Searches
{
    const Kernels &kernels;
    WorkerTeam team;
    DigitMatrix digits;
    AffineLayer split;
    OutputSearch byWeights;
    OutputSearch byDigits;

    Searches(const OwnLayer &own, const Kernels &chosen, int threads)
        : kernels(chosen)
        , team(threads)
        , digits(own.layer.matrix, team, [](int, int) {})
        , split {own.layer.matrix, own.layer.bias, &digits}
        , byWeights(own.layer, own.bias.data(), chosen, team)
        , byDigits(split, own.bias.data(), chosen, team)
    {
        // Digits alone must do.
        split.matrix.weights = nullptr;
    }
};

/// Without kernels, blocks and threads.
BestWord plainBest(const OwnLayer &own, const std::vector<float> &input, int words, int excluded)
{
    const QuantizedMatrix &matrix = own.layer.matrix;
    std::vector<std::int8_t> codes(input.size());
    portableKernels().quantize(input.data(), matrix.depth, matrix.inputMultiplier, codes.data());
    BestWord best;
    for (int word = 0; word < std::min(words, matrix.outputs); ++word) {
        std::int32_t product = 0;
        for (int k = 0; k < matrix.depth; ++k)
            product += codes[std::size_t(k)] * own.weights[std::size_t(word * matrix.depth + k)];
        const float score
            = static_cast<float>(product) * (1.0F / (matrix.inputMultiplier * matrix.weightMultiplier))
            + own.bias[std::size_t(word)];
        if (word != excluded && (best.word == none || score > best.score))
            best = {word, score};
    }
    return best;
}

} // namespace

class OutputSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void digitsFindWhatWeightsFind_data()
    {
        QTest::addColumn<Fill>("fill");
        QTest::newRow("ordinary") << Fill(ordinary);
        QTest::newRow("rows of different length") << Fill(rowsOfDifferentLength);
        QTest::newRow("every byte") << Fill(everyByte);
        QTest::newRow("lopsided") << Fill(lopsided);
        QTest::newRow("extremes") << Fill(extremes);
        QTest::newRow("tiny") << Fill(tiny);
        QTest::newRow("zeros") << Fill(zeros);
        QTest::newRow("zeros and bias") << Fill(zerosAndBias);
        QTest::newRow("equal rows") << Fill(equalRows);
        QTest::newRow("rows three times") << Fill(rowsThreeTimes);
        QTest::newRow("nearly equal rows") << Fill(nearlyEqualRows);
        QTest::newRow("negative scores") << Fill(negativeScores);
        QTest::newRow("bias beyond products") << Fill(biasBeyondProducts);
    }

    void digitsFindWhatWeightsFind()
    {
        QFETCH(Fill, fill);
        std::mt19937 random(17);
        for (const auto &[words, depth] : {std::pair(8, 128), std::pair(1603, 128), std::pair(600, 384)}) {
            OwnLayer own(words, depth);
            fill(own, random);
            std::vector<std::unique_ptr<Searches>> all;
            for (const Kernels *kernels : availableKernels()) {
                for (const int threads : {1, 2})
                    all.push_back(std::make_unique<Searches>(own, *kernels, threads));
            }
            for (int kind = 0; kind < 8; ++kind) {
                const std::vector<float> input = inputs(kind, own, random);
                const int best = plainBest(own, input, words, none).word;
                for (const int excluded : {none, best, 1, words}) {
                    for (const int limit : {words, words + 9, words / 2 + 1, best + 1, 1, 0}) {
                        const BestWord expected = plainBest(own, input, limit, excluded);
                        for (const auto &searches : all) {
                            QVERIFY2(
                                isSame(searches->byWeights.best(input.data(), {}, limit, excluded), expected),
                                searches->kernels.name);
                            QVERIFY2(
                                isSame(searches->byDigits.best(input.data(), {}, limit, excluded), expected),
                                searches->kernels.name);
                        }
                    }
                }
            }
        }
    }

    void namedCandidatesAreTheOnlyOnes()
    {
        std::mt19937 random(3);
        OwnLayer own(1000, 256);
        ordinary(own, random);
        std::vector<std::uint32_t> all(1000);
        for (std::uint32_t word = 0; word < 1000; ++word)
            all[word] = word;
        const std::vector<std::uint32_t> few = {5, 9, 40, 41, 42, 700, 998, 999};
        for (const Kernels *kernels : availableKernels()) {
            Searches searches(own, *kernels, 2);
            searches.split.matrix.weights = own.weights.data();
            OutputSearch &search = searches.byDigits;
            for (int round = 0; round < 10; ++round) {
                const std::vector<float> input = inputs(9, own, random);
                QVERIFY(isSame(search.best(input.data(), all, 1000, 1), plainBest(own, input, 1000, 1)));
                const BestWord found = search.best(input.data(), few, 1000, 9);
                QVERIFY(found.word != 9);
                QVERIFY(std::binary_search(few.begin(), few.end(), std::uint32_t(found.word)));
            }
        }
    }

    void digitsMakeTheWeights_data() { digitsFindWhatWeightsFind_data(); }

    void digitsMakeTheWeights()
    {
        QFETCH(Fill, fill);
        std::mt19937 random(5);
        OwnLayer own(2100, 256);
        fill(own, random);
        WorkerTeam team(2);
        std::vector<std::atomic<int>> released(std::size_t(own.words()));
        const DigitMatrix digits(own.layer.matrix, team, [&](int first, int count) {
            for (int row = first; row < first + count; ++row)
                ++released[std::size_t(row)];
        });
        QCOMPARE(digits.rows(), own.words());
        for (int row = 0; row < own.words(); ++row) {
            QCOMPARE(released[std::size_t(row)].load(), 1);
            const int step = digits.steps()[row];
            std::vector<float> copied(std::size_t(own.depth()));
            digits.copyRow(row, copied.data());
            QVERIFY(std::equal(copied.begin(), copied.end(), own.row(row).begin()));
            double squares = 0;
            for (int k = 0; k < own.depth(); ++k) {
                const int pair = k / 128 * 64 + k % 64;
                const int shift = k / 64 % 2 * 4;
                const int high = digits.high(row)[pair] >> shift & 0xF;
                const int low = digits.low(row)[pair] >> shift & 0xF;
                const int weight = own.row(row)[std::size_t(k)];
                QCOMPARE(step * high + low + DigitMatrix::leastWeight(step), weight);
                squares += std::pow(weight - step * (high - 7.5), 2);
            }
            QVERIFY(std::sqrt(squares) < double(digits.leftOut()[row]));
            QVERIFY(double(digits.leftOut()[row]) < std::sqrt(squares) * 1.0001 + 0.01);
        }
    }

    void highDigitsSayNearlyAll()
    {
        std::mt19937 random(6);
        OwnLayer own(60, 512);
        rowsOfDifferentLength(own, random);
        WorkerTeam team(1);
        const DigitMatrix digits(own.layer.matrix, team, [](int, int) {});
        for (int row = 4; row < 45; ++row) {
            double squares = 0;
            for (const std::int8_t weight : own.row(row))
                squares += weight * weight;
            QVERIFY(double(digits.leftOut()[row]) < 0.17 * std::sqrt(squares));
        }
    }
};

LUMAPHONE_TEST(OutputSearchTest)

} // namespace outputsearchtest

#include "OutputSearchTest.moc"
