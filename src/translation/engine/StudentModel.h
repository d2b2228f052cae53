#pragma once

#include "translation/engine/ModelFile.h"
#include "translation/engine/ModelSettings.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

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

/// y = x W + b. Layers without a bias have an empty one.
struct AffineLayer
{
    QuantizedMatrix matrix;
    std::span<const float> bias;
};

struct LayerNorm
{
    std::span<const float> scale;
    std::span<const float> bias;
};

struct AttentionLayer
{
    AffineLayer query;
    AffineLayer key;
    AffineLayer value;
    AffineLayer output;
    LayerNorm norm;
};

struct FeedForwardLayer
{
    AffineLayer inner;
    AffineLayer outer;
    LayerNorm norm;
};

struct EncoderLayer
{
    AttentionLayer attention;
    FeedForwardLayer feedForward;
};

struct DecoderLayer
{
    AffineLayer input; ///< of the recurrent unit
    AffineLayer forget; ///< its gate
    LayerNorm recurrentNorm;
    AttentionLayer attention; ///< over the encoded sentence
    FeedForwardLayer feedForward;
};

/// The vectors of a vocabulary; a real element is weight / multiplier.
struct EmbeddingTable
{
    const std::int8_t *weights = nullptr;
    int rows = 0;
    float multiplier = 1;
};

/// The weights of a Marian student: a Transformer encoder and a decoder of SSRU layers. They lie in the model
/// file.
class StudentModel
{
public:
    /// Finds and checks everything the architecture needs. Throws EngineError.
    explicit StudentModel(ModelFile file);

    const QString &path() const { return m_file.path(); }
    const ModelSettings &settings() const { return m_settings; }
    const EmbeddingTable &source() const { return m_source; }
    const EmbeddingTable &target() const { return m_target; }
    /// Whether one vocabulary serves both languages.
    bool isShared() const { return m_shared; }
    const std::vector<EncoderLayer> &encoder() const { return m_encoder; }
    const std::vector<DecoderLayer> &decoder() const { return m_decoder; }
    /// From the decoder to one score per word.
    const AffineLayer &output() const { return m_output; }

private:
    const Tensor &tensor(const std::string &name, TensorType type, int rows, int columns) const;
    float scalar(const std::string &name) const;
    std::span<const float> floats(const std::string &name, int count) const;
    QuantizedMatrix matrix(const std::string &name, int depth, int outputs) const;
    AffineLayer affine(const std::string &prefix, const std::string &suffix, int depth, int outputs) const;
    LayerNorm norm(const std::string &prefix) const;
    AttentionLayer attention(const std::string &prefix) const;
    FeedForwardLayer feedForward(const std::string &prefix) const;
    EmbeddingTable embedding(const std::string &name) const;
    AffineLayer outputLayer(const std::string &embeddingName);

    ModelFile m_file;
    ModelSettings m_settings;
    bool m_shared = false;
    EmbeddingTable m_source;
    EmbeddingTable m_target;
    std::vector<EncoderLayer> m_encoder;
    std::vector<DecoderLayer> m_decoder;
    AffineLayer m_output;
    std::vector<std::int8_t> m_requantized; ///< empty unless the output needs weights of another scale
};

} // namespace lumaphone::engine
