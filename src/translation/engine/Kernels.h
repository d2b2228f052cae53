#pragma once

#include <cstdint>
#include <vector>

namespace lumaphone::engine {

/// The integer arithmetic of 8-bit layers for one kind of processor. All exact kernels give the same
/// integers. Rows of inputs and of weights have a length that is a multiple of 64.
struct Kernels
{
    const char *name;

    /// Added to every code by multiply(); 0 for exact kernels.
    int shift;

    /// codes[i] = inputs[i] · multiplier, rounded half to even and held within ±127; what is not a number is
    /// -127.
    void (*quantize)(const float *inputs, int count, float multiplier, std::int8_t *codes);

    /// products[r · outputs + o] = Σ codes[r · depth + k] · weights[s(o) · depth + k], where s(o) is
    /// selected[o], or o where `selected` is null.
    void (*multiply)(const std::int8_t *codes, int rows, int depth, const std::int8_t *weights,
        const std::uint32_t *selected, int outputs, std::int32_t *products);

    /// The same for one input and for digits of 0 to 15 instead of weights, `depth` a multiple of 128. Of
    /// every 128 digits the first 64 are the lower halves of 64 bytes, the others the upper ones. Null for
    /// saturating kernels.
    void (*multiplyDigits)(const std::int8_t *codes, int depth, const std::uint8_t *digits,
        const std::uint32_t *selected, int outputs, std::int32_t *products);
};

/// Runs everywhere.
const Kernels &portableKernels();
/// The fastest kernels of this processor.
const Kernels &fastestKernels();
/// Every exact kernel that this processor runs, the portable one first.
std::vector<const Kernels *> availableKernels();

/// What the usual 16-bit kernels for this model format compute: codes are shifted to 0…254, and the sum of
/// two adjacent products is held within 16 bits. The result differs from the exact one where that bound is
/// hit. Only for comparisons with programs that work so.
const Kernels &portableSaturatingKernels();
/// The same integers from the fastest kernel of this processor.
const Kernels &fastestSaturatingKernels();

} // namespace lumaphone::engine
