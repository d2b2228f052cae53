// Compiled for AVX-512 with VNNI. No function of the standard library is used here: the linker might keep
// this unit's copy of it for processors that cannot run it.
#include "translation/engine/KernelsForProcessors.h"

#include <immintrin.h>

#include <cstddef>

namespace lumaphone::engine {
namespace {

using std::size_t;

// How far ahead rows are asked for that the processor does not guess, because they are scattered or because
// four are read at a time.
constexpr int rowsAhead = 12;

__m512i load(const void *bytes)
{
    return _mm512_loadu_si512(bytes);
}

void quantize(const float *inputs, int count, float multiplier, std::int8_t *codes)
{
    const __m512 factor = _mm512_set1_ps(multiplier);
    const __m512 least = _mm512_set1_ps(-127.0F);
    const __m512 most = _mm512_set1_ps(127.0F);
    for (int index = 0; index < count; index += 16) {
        const __m512 scaled = _mm512_mul_ps(_mm512_loadu_ps(inputs + index), factor);
        // The second operand wins over what is not a number.
        const __m512i rounded = _mm512_cvtps_epi32(_mm512_min_ps(_mm512_max_ps(scaled, least), most));
        _mm_storeu_si128(
            static_cast<__m128i *>(static_cast<void *>(codes + index)), _mm512_cvtepi32_epi8(rounded));
    }
}

/// The totals of four groups of sixteen sums.
__m128i totals(__m512i a, __m512i b, __m512i c, __m512i d)
{
    const auto half = [](__m512i sums) {
        return _mm256_add_epi32(_mm512_castsi512_si256(sums), _mm512_extracti64x4_epi64(sums, 1));
    };
    const __m256i quarters
        = _mm256_hadd_epi32(_mm256_hadd_epi32(half(a), half(b)), _mm256_hadd_epi32(half(c), half(d)));
    return _mm_add_epi32(_mm256_castsi256_si128(quarters), _mm256_extracti128_si256(quarters, 1));
}

// The instruction wants one factor without a sign: Σ a·w = Σ (a + 128)·w - Σ 128·w. The second sum is shared
// by all rows.

/// `Rows` inputs against four rows of weights.
template<int Rows>
void multiplyFour(const std::int8_t *codes, int depth, const std::int8_t *const (&weights)[4], int outputs,
    std::int32_t *products)
{
    const __m512i shift = _mm512_set1_epi8(-128);
    __m512i sums[Rows][4];
    for (auto &row : sums) {
        for (auto &sum : row)
            sum = _mm512_setzero_si512();
    }
    __m512i shifted[4];
    for (auto &sum : shifted)
        sum = _mm512_setzero_si512();
    for (int k = 0; k < depth; k += 64) {
        __m512i inputs[Rows];
        for (size_t row = 0; row < size_t(Rows); ++row)
            inputs[row] = _mm512_xor_si512(load(codes + row * size_t(depth) + k), shift);
        for (size_t output = 0; output < 4; ++output) {
            const __m512i loaded = load(weights[output] + k);
            shifted[output] = _mm512_dpbusd_epi32(shifted[output], shift, loaded);
            for (size_t row = 0; row < size_t(Rows); ++row)
                sums[row][output] = _mm512_dpbusd_epi32(sums[row][output], inputs[row], loaded);
        }
    }
    for (size_t row = 0; row < size_t(Rows); ++row) {
        const auto difference = [&](size_t output) {
            return _mm512_sub_epi32(sums[row][output], shifted[output]);
        };
        _mm_storeu_si128(static_cast<__m128i *>(static_cast<void *>(products + row * size_t(outputs))),
            totals(difference(0), difference(1), difference(2), difference(3)));
    }
}

__m512i sumsOfOne(const std::int8_t *codes, int depth, const std::int8_t *weights)
{
    const __m512i shift = _mm512_set1_epi8(-128);
    __m512i sums = _mm512_setzero_si512();
    __m512i shifted = _mm512_setzero_si512();
    for (int k = 0; k < depth; k += 64) {
        const __m512i loaded = load(weights + k);
        shifted = _mm512_dpbusd_epi32(shifted, shift, loaded);
        sums = _mm512_dpbusd_epi32(sums, _mm512_xor_si512(load(codes + k), shift), loaded);
    }
    return _mm512_sub_epi32(sums, shifted);
}

/// Asks for a row that will be needed soon.
template<class Byte> void fetch(const Byte *row, int length)
{
    for (int k = 0; k < length; k += 64)
        _mm_prefetch(row + k, _MM_HINT_T0);
}

/// One input against four rows of weights, one row after the other: here reading takes nearly all the time,
/// and processors read fastest in the order of the memory.
void multiplyFourInOrder(
    const std::int8_t *codes, int depth, const std::int8_t *const (&weights)[4], std::int32_t *products)
{
    __m512i sums[4];
    for (size_t output = 0; output < 4; ++output)
        sums[output] = sumsOfOne(codes, depth, weights[output]);
    _mm_storeu_si128(
        static_cast<__m128i *>(static_cast<void *>(products)), totals(sums[0], sums[1], sums[2], sums[3]));
}

void multiplyOne(const std::int8_t *codes, int depth, const std::int8_t *weights, std::int32_t *product)
{
    *product = _mm512_reduce_add_epi32(sumsOfOne(codes, depth, weights));
}

void multiply(const std::int8_t *codes, int rows, int depth, const std::int8_t *weights,
    const std::uint32_t *selected, int outputs, std::int32_t *products)
{
    const auto rowOf = [&](int output) {
        return weights + size_t(selected ? selected[output] : std::uint32_t(output)) * size_t(depth);
    };
    const bool isInOrder = rows == 1 && !selected;
    int output = 0;
    for (; output + 4 <= outputs; output += 4) {
        const int later = output + rowsAhead;
        for (int ahead = later; !isInOrder && ahead < later + 4 && ahead < outputs; ++ahead)
            fetch(rowOf(ahead), depth);
        const std::int8_t *const four[4]
            = {rowOf(output), rowOf(output + 1), rowOf(output + 2), rowOf(output + 3)};
        int row = 0;
        for (; row + 4 <= rows; row += 4)
            multiplyFour<4>(codes + size_t(row) * size_t(depth), depth, four, outputs,
                products + size_t(row) * size_t(outputs) + output);
        for (; row < rows; ++row)
            multiplyFourInOrder(codes + size_t(row) * size_t(depth), depth, four,
                products + size_t(row) * size_t(outputs) + output);
    }
    for (; output < outputs; ++output) {
        for (int row = 0; row < rows; ++row)
            multiplyOne(codes + size_t(row) * size_t(depth), depth, rowOf(output),
                products + size_t(row) * size_t(outputs) + output);
    }
}

__m512i sumsOfDigits(const std::int8_t *codes, int depth, const std::uint8_t *pairs)
{
    const __m512i lowerHalf = _mm512_set1_epi8(0xF);
    __m512i lower = _mm512_setzero_si512();
    __m512i upper = _mm512_setzero_si512();
    for (int k = 0; k < depth; k += 128, pairs += 64) {
        const __m512i loaded = load(pairs);
        lower = _mm512_dpbusd_epi32(lower, _mm512_and_si512(loaded, lowerHalf), load(codes + k));
        upper = _mm512_dpbusd_epi32(upper, _mm512_andnot_si512(lowerHalf, loaded), load(codes + k + 64));
    }
    // The upper digits stand where they are worth sixteen times as much.
    return _mm512_add_epi32(lower, _mm512_srai_epi32(upper, 4));
}

void multiplyDigits(const std::int8_t *codes, int depth, const std::uint8_t *digits,
    const std::uint32_t *selected, int outputs, std::int32_t *products)
{
    const int length = depth / 2;
    const auto rowOf = [&](int output) {
        return digits + size_t(selected ? selected[output] : std::uint32_t(output)) * size_t(length);
    };
    int output = 0;
    for (; output + 4 <= outputs; output += 4) {
        const int later = output + rowsAhead;
        for (int ahead = later; selected && ahead < later + 4 && ahead < outputs; ++ahead)
            fetch(rowOf(ahead), length);
        __m512i sums[4];
        for (int row = 0; row < 4; ++row)
            sums[size_t(row)] = sumsOfDigits(codes, depth, rowOf(output + row));
        _mm_storeu_si128(static_cast<__m128i *>(static_cast<void *>(products + output)),
            totals(sums[0], sums[1], sums[2], sums[3]));
    }
    for (; output < outputs; ++output)
        products[output] = _mm512_reduce_add_epi32(sumsOfDigits(codes, depth, rowOf(output)));
}

constexpr Kernels kernels = {"AVX-512 VNNI", 0, quantize, multiply, multiplyDigits};

} // namespace

const Kernels &avx512VnniKernels()
{
    return kernels;
}

} // namespace lumaphone::engine
