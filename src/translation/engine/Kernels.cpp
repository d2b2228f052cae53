#include "translation/engine/Kernels.h"

#include "translation/engine/KernelsForProcessors.h"

#include <algorithm>
#include <cmath>

namespace lumaphone::engine {
namespace {

void quantize(const float *inputs, int count, float multiplier, std::int8_t *codes)
{
    for (int index = 0; index < count; ++index) {
        const float scaled = inputs[index] * multiplier;
        // Comparisons in this order send what is not a number to the lower bound.
        const float raised = scaled > -127.0F ? scaled : -127.0F;
        codes[index] = static_cast<std::int8_t>(std::nearbyint(std::min(raised, 127.0F)));
    }
}

template<class Byte>
const Byte *rowOf(const Byte *rows, const std::uint32_t *selected, int output, int rowLength)
{
    return rows + std::size_t(selected ? selected[output] : std::uint32_t(output)) * std::size_t(rowLength);
}

void multiply(const std::int8_t *codes, int rows, int depth, const std::int8_t *weights,
    const std::uint32_t *selected, int outputs, std::int32_t *products)
{
    for (int output = 0; output < outputs; ++output) {
        const std::int8_t *row = rowOf(weights, selected, output, depth);
        for (int index = 0; index < rows; ++index) {
            const std::int8_t *input = codes + std::size_t(index) * std::size_t(depth);
            std::int32_t sum = 0;
            for (int k = 0; k < depth; ++k)
                sum += std::int16_t(input[k]) * std::int16_t(row[k]);
            products[std::size_t(index) * std::size_t(outputs) + std::size_t(output)] = sum;
        }
    }
}

void multiplySaturating(const std::int8_t *codes, int rows, int depth, const std::int8_t *weights,
    const std::uint32_t *selected, int outputs, std::int32_t *products)
{
    for (int output = 0; output < outputs; ++output) {
        const std::int8_t *row = rowOf(weights, selected, output, depth);
        for (int index = 0; index < rows; ++index) {
            const std::int8_t *input = codes + std::size_t(index) * std::size_t(depth);
            std::int32_t sum = 0;
            for (int k = 0; k < depth; k += 2) {
                const int pair
                    = (input[k] + saturatingShift) * row[k] + (input[k + 1] + saturatingShift) * row[k + 1];
                sum += std::clamp(pair, -32768, 32767);
            }
            products[std::size_t(index) * std::size_t(outputs) + std::size_t(output)] = sum;
        }
    }
}

void multiplyDigits(const std::int8_t *codes, int depth, const std::uint8_t *digits,
    const std::uint32_t *selected, int outputs, std::int32_t *products)
{
    for (int output = 0; output < outputs; ++output) {
        const std::uint8_t *pairs = rowOf(digits, selected, output, depth / 2);
        std::int32_t sum = 0;
        for (int k = 0; k < depth; k += 128, pairs += 64) {
            for (int pair = 0; pair < 64; ++pair)
                sum += codes[k + pair] * (pairs[pair] & 0xF) + codes[k + 64 + pair] * (pairs[pair] >> 4);
        }
        products[output] = sum;
    }
}

constexpr Kernels portable = {"portable", 0, quantize, multiply, multiplyDigits};
constexpr Kernels portableSaturating
    = {"portable, saturating", saturatingShift, quantize, multiplySaturating, nullptr};

#ifdef LUMAPHONE_ENGINE_X86
bool hasAvx2()
{
    return __builtin_cpu_supports("avx2");
}

bool hasAvx512Vnni()
{
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw")
        && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vnni") && hasAvx2();
}
#endif

} // namespace

const Kernels &portableKernels()
{
    return portable;
}

const Kernels &portableSaturatingKernels()
{
    return portableSaturating;
}

std::vector<const Kernels *> availableKernels()
{
    std::vector<const Kernels *> available = {&portable};
#ifdef LUMAPHONE_ENGINE_X86
    if (hasAvx2())
        available.push_back(&avx2Kernels());
    if (hasAvx512Vnni())
        available.push_back(&avx512VnniKernels());
#endif
    return available;
}

const Kernels &fastestKernels()
{
#ifdef LUMAPHONE_ENGINE_X86
    if (hasAvx512Vnni())
        return avx512VnniKernels();
    if (hasAvx2())
        return avx2Kernels();
#endif
    return portable;
}

const Kernels &fastestSaturatingKernels()
{
#ifdef LUMAPHONE_ENGINE_X86
    if (hasAvx2())
        return avx2SaturatingKernels();
#endif
    return portableSaturating;
}

} // namespace lumaphone::engine
