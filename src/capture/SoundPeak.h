#pragma once

#include "platform/AudioSampleBuffer.h"

namespace lumaphone {

/// How far the loudest sample of a buffer is from silence: from 0 to 1, which is full scale. 0 for a buffer
/// without samples or without a description.
double soundPeak(const AudioSampleBuffer &buffer);

} // namespace lumaphone
