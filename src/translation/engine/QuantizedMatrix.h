#pragma once

#include <cstdint>

namespace lumaphone::engine {

/// A matrix of 8-bit weights, one row of `depth` weights per output. A real weight is weight /
/// weightMultiplier.
struct QuantizedMatrix
{
    const std::int8_t *weights = nullptr;
    int depth = 0; ///< inputs, a multiple of 64
    int outputs = 0;
    float weightMultiplier = 1;
    float inputMultiplier = 1; ///< inputs are multiplied by this before they are rounded to 8 bits
};

} // namespace lumaphone::engine
