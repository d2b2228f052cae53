#pragma once

#include "translation/engine/Kernels.h"

namespace lumaphone::engine {

/// What saturating kernels add to every code.
constexpr int saturatingShift = 127;

// Defined in units that are compiled for these processors. Look before you call.
#ifdef LUMAPHONE_ENGINE_X86
const Kernels &avx2Kernels();
const Kernels &avx2SaturatingKernels();
const Kernels &avx512VnniKernels();
#endif

} // namespace lumaphone::engine
