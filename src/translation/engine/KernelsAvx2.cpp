// Compiled for AVX2. No function of the standard library is used here: the linker might keep
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

__m256i load(const void *bytes)
{
    return _mm256_loadu_si256(static_cast<const __m256i *>(bytes));
}

void quantize(const float *inputs, int count, float multiplier, std::int8_t *codes)
{
    const __m256 factor = _mm256_set1_ps(multiplier);
    const __m256 least = _mm256_set1_ps(-127.0F);
    const __m256 most = _mm256_set1_ps(127.0F);
    const __m256i inOrder = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    for (int index = 0; index < count; index += 32) {
        __m256i parts[4];
        for (int part = 0; part < 4; ++part) {
            const __m256 scaled = _mm256_mul_ps(_mm256_loadu_ps(inputs + (index + 8 * part)), factor);
            // The second operand wins over what is not a number.
            parts[size_t(part)] = _mm256_cvtps_epi32(_mm256_min_ps(_mm256_max_ps(scaled, least), most));
        }
        const __m256i packed = _mm256_packs_epi16(
            _mm256_packs_epi32(parts[0], parts[1]), _mm256_packs_epi32(parts[2], parts[3]));
        _mm256_storeu_si256(static_cast<__m256i *>(static_cast<void *>(codes + index)),
            _mm256_permutevar8x32_epi32(packed, inOrder));
    }
}

struct Exact
{
    /// Adds 32 products to eight sums. |w| ≤ 128 and |a| ≤ 127 keep two products within 16 bits.
    static __m256i add(__m256i sums, __m256i codes, __m256i weights)
    {
        const __m256i pairs
            = _mm256_maddubs_epi16(_mm256_abs_epi8(weights), _mm256_sign_epi8(codes, weights));
        return _mm256_add_epi32(sums, _mm256_madd_epi16(pairs, _mm256_set1_epi16(1)));
    }
};

struct Saturating
{
    static __m256i add(__m256i sums, __m256i codes, __m256i weights)
    {
        const __m256i pairs
            = _mm256_maddubs_epi16(_mm256_add_epi8(codes, _mm256_set1_epi8(saturatingShift)), weights);
        return _mm256_add_epi32(sums, _mm256_madd_epi16(pairs, _mm256_set1_epi16(1)));
    }
};

/// The four totals of four groups of eight sums.
__m128i totals(__m256i a, __m256i b, __m256i c, __m256i d)
{
    const __m256i sums = _mm256_hadd_epi32(_mm256_hadd_epi32(a, b), _mm256_hadd_epi32(c, d));
    return _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
}

std::int32_t total(__m256i sums)
{
    return _mm_cvtsi128_si32(totals(sums, sums, sums, sums));
}

/// `Rows` inputs against four rows of weights.
template<class Arithmetic, int Rows>
void multiplyFour(const std::int8_t *codes, int depth, const std::int8_t *const (&weights)[4], int outputs,
    std::int32_t *products)
{
    __m256i sums[Rows][4];
    for (auto &row : sums) {
        for (auto &sum : row)
            sum = _mm256_setzero_si256();
    }
    for (int k = 0; k < depth; k += 32) {
        for (size_t output = 0; output < 4; ++output) {
            const __m256i loaded = load(weights[output] + k);
            for (size_t row = 0; row < size_t(Rows); ++row)
                sums[row][output]
                    = Arithmetic::add(sums[row][output], load(codes + row * size_t(depth) + k), loaded);
        }
    }
    for (size_t row = 0; row < size_t(Rows); ++row)
        _mm_storeu_si128(static_cast<__m128i *>(static_cast<void *>(products + row * size_t(outputs))),
            totals(sums[row][0], sums[row][1], sums[row][2], sums[row][3]));
}

template<class Arithmetic> __m256i sumsOfOne(const std::int8_t *codes, int depth, const std::int8_t *weights)
{
    __m256i even = _mm256_setzero_si256();
    __m256i odd = _mm256_setzero_si256();
    for (int k = 0; k < depth; k += 64) {
        even = Arithmetic::add(even, load(codes + k), load(weights + k));
        odd = Arithmetic::add(odd, load(codes + k + 32), load(weights + k + 32));
    }
    return _mm256_add_epi32(even, odd);
}

/// Asks for a row that will be needed soon.
template<class Byte> void fetch(const Byte *row, int length)
{
    for (int k = 0; k < length; k += 64)
        _mm_prefetch(row + k, _MM_HINT_T0);
}

/// One input against four rows of weights, one row after the other: here reading takes nearly all the time,
/// and processors read fastest in the order of the memory.
template<class Arithmetic>
void multiplyFourInOrder(
    const std::int8_t *codes, int depth, const std::int8_t *const (&weights)[4], std::int32_t *products)
{
    __m256i sums[4];
    for (size_t output = 0; output < 4; ++output)
        sums[output] = sumsOfOne<Arithmetic>(codes, depth, weights[output]);
    _mm_storeu_si128(
        static_cast<__m128i *>(static_cast<void *>(products)), totals(sums[0], sums[1], sums[2], sums[3]));
}

template<class Arithmetic>
void multiplyOne(const std::int8_t *codes, int depth, const std::int8_t *weights, std::int32_t *product)
{
    *product = total(sumsOfOne<Arithmetic>(codes, depth, weights));
}

template<class Arithmetic>
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
        for (; row + 2 <= rows; row += 2)
            multiplyFour<Arithmetic, 2>(codes + size_t(row) * size_t(depth), depth, four, outputs,
                products + size_t(row) * size_t(outputs) + output);
        if (row < rows)
            multiplyFourInOrder<Arithmetic>(codes + size_t(row) * size_t(depth), depth, four,
                products + size_t(row) * size_t(outputs) + output);
    }
    for (; output < outputs; ++output) {
        for (int row = 0; row < rows; ++row)
            multiplyOne<Arithmetic>(codes + size_t(row) * size_t(depth), depth, rowOf(output),
                products + size_t(row) * size_t(outputs) + output);
    }
}

__m256i sumsOfDigits(const std::int8_t *codes, int depth, const std::uint8_t *pairs)
{
    const __m256i lowerHalf = _mm256_set1_epi8(0xF);
    const __m256i one = _mm256_set1_epi16(1);
    __m256i sums = _mm256_setzero_si256();
    for (int k = 0; k < depth; k += 128, pairs += 64) {
        // Eight products of at most 15 · 128 fit in 16 bits.
        __m256i few = _mm256_setzero_si256();
        for (int half = 0; half < 64; half += 32) {
            const __m256i loaded = load(pairs + half);
            const __m256i lower = _mm256_and_si256(loaded, lowerHalf);
            const __m256i upper = _mm256_and_si256(_mm256_srli_epi16(loaded, 4), lowerHalf);
            few = _mm256_add_epi16(few, _mm256_maddubs_epi16(lower, load(codes + k + half)));
            few = _mm256_add_epi16(few, _mm256_maddubs_epi16(upper, load(codes + k + 64 + half)));
        }
        sums = _mm256_add_epi32(sums, _mm256_madd_epi16(few, one));
    }
    return sums;
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
        __m256i sums[4];
        for (int row = 0; row < 4; ++row)
            sums[size_t(row)] = sumsOfDigits(codes, depth, rowOf(output + row));
        _mm_storeu_si128(static_cast<__m128i *>(static_cast<void *>(products + output)),
            totals(sums[0], sums[1], sums[2], sums[3]));
    }
    for (; output < outputs; ++output)
        products[output] = total(sumsOfDigits(codes, depth, rowOf(output)));
}

constexpr Kernels exact = {"AVX2", 0, quantize, multiply<Exact>, multiplyDigits};
constexpr Kernels saturating = {"AVX2, saturating", saturatingShift, quantize, multiply<Saturating>, nullptr};

} // namespace

const Kernels &avx2Kernels()
{
    return exact;
}

const Kernels &avx2SaturatingKernels()
{
    return saturating;
}

} // namespace lumaphone::engine
