#include "translation/engine/DigitMatrix.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lumaphone::engine {
namespace {

constexpr int rowsAtATime = 1024;
constexpr int greatestDigit = 15;
/// With this step the digits reach every 8-bit number.
constexpr int greatestStep = 16;
constexpr std::size_t byteValues = 256;

std::size_t valueIndex(int weight)
{
    return std::size_t(weight) + 128;
}

} // namespace

/// The digits of every weight for every step.
struct DigitMatrix::Splitter
{
    struct Digits
    {
        std::uint8_t high;
        std::uint8_t low;
        std::uint16_t error; ///< the square of twice what the low digit is worth
    };
    using Step = std::array<Digits, byteValues>;

    std::array<Step, greatestStep + 1> steps = {};

    Splitter()
    {
        for (int step = 1; step <= greatestStep; ++step) {
            const auto last = std::min(127, leastWeight(step) + greatestDigit * (step + 1));
            for (int weight = std::max(-128, leastWeight(step)); weight <= last; ++weight)
                steps[std::size_t(step)][valueIndex(weight)] = digitsOf(weight, step);
        }
    }

    static Digits digitsOf(int weight, int step)
    {
        Digits best = {0, 0, std::numeric_limits<std::uint16_t>::max()};
        for (int high = 0; high <= greatestDigit; ++high) {
            const int low = weight - leastWeight(step) - step * high;
            const int twice = 2 * weight - step * (2 * high - greatestDigit);
            if (low >= 0 && low <= greatestDigit && twice * twice < best.error)
                best = {std::uint8_t(high), std::uint8_t(low), std::uint16_t(twice * twice)};
        }
        return best;
    }

    int error(const std::int8_t *weights, int depth, int step) const
    {
        const Step &digits = steps[std::size_t(step)];
        int sum = 0;
        for (int k = 0; k < depth; ++k)
            sum += digits[valueIndex(weights[k])].error;
        return sum;
    }
};

DigitMatrix::DigitMatrix(
    const QuantizedMatrix &matrix, WorkerTeam &team, const std::function<void(int first, int count)> &release)
    : m_depth(matrix.depth)
    , m_high(std::size_t(matrix.outputs) * std::size_t(matrix.depth) / (2 * digitsInHalf))
    , m_low(m_high.size())
    , m_steps(std::size_t(matrix.outputs))
    , m_leftOut(std::size_t(matrix.outputs))
{
    Q_ASSERT(takes(m_depth));
    const Splitter splitter;
    team.run((rows() + rowsAtATime - 1) / rowsAtATime, [&](int, int piece) {
        const int first = piece * rowsAtATime;
        const int count = std::min(rowsAtATime, rows() - first);
        for (int row = first; row < first + count; ++row)
            splitRow(splitter, matrix.weights + std::size_t(row) * std::size_t(m_depth), row);
        release(first, count);
    });
}

const std::uint8_t *DigitMatrix::digits(const std::vector<Group> &groups, int row) const
{
    return groups[std::size_t(row) * std::size_t(m_depth) / (2 * digitsInHalf)].pairs.data();
}

void DigitMatrix::copyRow(int row, float *weights) const
{
    const int step = m_steps[std::size_t(row)];
    const std::uint8_t *highPairs = high(row);
    const std::uint8_t *lowPairs = low(row);
    constexpr int half = int(digitsInHalf);
    for (int k = 0; k < m_depth; ++k) {
        const int pair = k / (2 * half) * half + k % half;
        const int shift = k / half % 2 * 4;
        weights[k] = static_cast<float>(step * (highPairs[pair] >> shift & greatestDigit)
            + (lowPairs[pair] >> shift & greatestDigit) + leastWeight(step));
    }
}

void DigitMatrix::splitRow(const Splitter &splitter, const std::int8_t *weights, int row)
{
    const auto [least, most] = std::minmax_element(weights, weights + m_depth);
    int step = 1;
    while (leastWeight(step) > *least || leastWeight(step) + greatestDigit * (step + 1) < *most)
        ++step;
    // The least step that reaches all weights may be a little too short for the outer ones.
    int error = splitter.error(weights, m_depth, step);
    if (step < greatestStep) {
        const int longer = splitter.error(weights, m_depth, step + 1);
        if (longer < error) {
            error = longer;
            ++step;
        }
    }
    const Splitter::Step &digits = splitter.steps[std::size_t(step)];
    const std::size_t firstGroup = std::size_t(row) * std::size_t(m_depth) / (2 * digitsInHalf);
    for (std::size_t k = 0; k < std::size_t(m_depth); ++k) {
        const std::size_t group = firstGroup + k / (2 * digitsInHalf);
        const std::size_t pair = k % digitsInHalf;
        const int shift = k / digitsInHalf % 2 == 0 ? 0 : 4;
        const Splitter::Digits digit = digits[valueIndex(weights[k])];
        m_high[group].pairs[pair] |= std::uint8_t(digit.high << shift);
        m_low[group].pairs[pair] |= std::uint8_t(digit.low << shift);
    }
    m_steps[std::size_t(row)] = std::uint8_t(step);
    // No row of high digits is longer than this, nor is a product with it more than this times the input.
    const double longest = greatestStep * 7.5 * std::sqrt(double(m_depth));
    constexpr double rounding = 1.0 / (1 << 20);
    m_leftOut[std::size_t(row)]
        = static_cast<float>((0.5 * std::sqrt(double(error)) + longest * rounding) * (1 + rounding));
}

} // namespace lumaphone::engine
