#include "speech/host/RecognizerConfiguration.h"

#include "speech/host/Segmenter.h"

namespace lumaphone::host {

ConfigurationBlock recognizerConfiguration(
    const RecognizerLayout &layout, const Network &network, int threads)
{
    ConfigurationBlock block;
    block.setInteger(RecognizerLayout::sampleRate, static_cast<std::int32_t>(samplesPerSecond));
    block.setInteger(RecognizerLayout::featureDimension, 80);
    block.setText(layout.tokens, network.tokens);
    block.setInteger(layout.threadCount, threads);
    block.setText(layout.provider, "cpu");
    block.setText(layout.decodingMethod, "greedy_search");
    return block;
}

} // namespace lumaphone::host
