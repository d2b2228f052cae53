#pragma once

#include <cstdint>

namespace lumaphone {

/// The speech host hears 16 kHz sound; positions and durations are counted in its samples.
constexpr std::int64_t samplesPerSecond = 16000;

} // namespace lumaphone
