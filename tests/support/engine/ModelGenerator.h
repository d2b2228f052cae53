#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumaphone::engine::test {

/// What a generated model looks like. The defaults make a model of some hundred kilobytes.
struct ModelShape
{
    int width = 64;
    int innerWidth = 128;
    int encoderDepth = 2;
    int decoderDepth = 2;
    int heads = 8;
    int targetWords = 1000;
    int sourceWords = 0; ///< 0: one vocabulary for both languages
    unsigned seed = 1;
    // Gains of the layers over their inputs. The recurrent ones make the words differ; high ones elsewhere
    // would magnify every rounding from layer to layer.
    double recurrentGain = 4;
    double attentionGain = 1.3;
    double feedForwardGain = 1;
    double embeddingGain = 3;
    double spread = 40; ///< standard deviation of the 8-bit weights
    double endBias = 0; ///< makes sentences end sooner
    int greatestWeight = 127; ///< 127 is what the format's own writer leaves behind
    std::vector<std::string> extraSettings; ///< lines that replace or follow the usual ones
};

/// The true shapes of published students.
ModelShape smallStudent(); ///< 256/1536, 6+2 layers, 32,000 words
ModelShape middleStudent(); ///< 384/1536, 6+4 layers, 32,000 words
ModelShape largeStudent(); ///< 512/2048, 6+2 layers, 64,000 words

/// The bytes of a ".bin" model with random weights. The same shape gives the same bytes.
std::string generateModel(const ModelShape &shape);

/// One tensor of a file that writeModelFile writes.
struct GeneratedTensor
{
    std::string name;
    std::uint64_t type;
    std::vector<std::int32_t> shape;
    std::string data; ///< with its padding
};

/// The bytes of a ".bin" file with these tensors.
std::string writeModelFile(const std::vector<GeneratedTensor> &tensors);

/// The bytes of a shortlist: `listLength` random target words for each source word, words below `always` for
/// all.
std::string generateShortlist(int sourceWords, int targetWords, int always, int listLength, unsigned seed);

} // namespace lumaphone::engine::test
