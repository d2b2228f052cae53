#pragma once

#include "translation/engine/QuantizedMatrix.h"
#include "translation/engine/WorkerTeam.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace lumaphone::engine {

/// A matrix of 8-bit weights in two digits of four bits each, which lie apart:
/// weight = step · high + low + leastWeight(step), with a step for each row. Whoever reads only the high
/// digits knows a product with the row up to the length of the input times the row's `leftOut`, from half the
/// bytes.
class DigitMatrix
{
public:
    /// Whether rows of so many weights can be split.
    static bool takes(int depth) { return depth % int(2 * digitsInHalf) == 0; }
    /// The weight whose digits are both zero.
    static std::int32_t leastWeight(std::int32_t step) { return -(15 * (step + 1) + 1) / 2; }

    /// Splits `matrix`, which is not needed afterwards. Any member of the team tells `release` which rows
    /// have been read.
    DigitMatrix(const QuantizedMatrix &matrix, WorkerTeam &team,
        const std::function<void(int first, int count)> &release);

    /// The weights of one row.
    void copyRow(int row, float *weights) const;

    int depth() const { return m_depth; }
    int rows() const { return int(m_steps.size()); }
    /// As Kernels::multiplyDigits wants them.
    const std::uint8_t *high(int row) const { return digits(m_high, row); }
    const std::uint8_t *low(int row) const { return digits(m_low, row); }
    const std::uint8_t *steps() const { return m_steps.data(); }
    /// The length of what each row loses with its low digits if step · (high - 7.5) is taken for the weight,
    /// and a little for the rounding of floats.
    const float *leftOut() const { return m_leftOut.data(); }

private:
    static constexpr std::size_t digitsInHalf = 64;
    struct alignas(digitsInHalf) Group
    {
        std::array<std::uint8_t, digitsInHalf> pairs;
    };
    struct Splitter;

    const std::uint8_t *digits(const std::vector<Group> &groups, int row) const;
    void splitRow(const Splitter &splitter, const std::int8_t *weights, int row);

    int m_depth;
    std::vector<Group> m_high;
    std::vector<Group> m_low;
    std::vector<std::uint8_t> m_steps;
    std::vector<float> m_leftOut;
};

} // namespace lumaphone::engine
