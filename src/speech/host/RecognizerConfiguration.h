#pragma once

#include "speech/host/ConfigurationBlock.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <cstddef>

namespace lumaphone::host {

/// Where a configuration of the library has what every recogniser needs. Both kinds begin alike.
struct RecognizerLayout
{
    static constexpr std::size_t sampleRate = 0;
    static constexpr std::size_t featureDimension = 4;
    static constexpr std::size_t firstOfModel = 8;
    std::size_t tokens;
    std::size_t threadCount;
    std::size_t provider;
    std::size_t decodingMethod;
};

/// The configuration of a recogniser on the processor, but for the network's files.
ConfigurationBlock recognizerConfiguration(
    const RecognizerLayout &layout, const Network &network, int threads);

} // namespace lumaphone::host
